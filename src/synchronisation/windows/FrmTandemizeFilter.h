// The dialog that edits the filter of a backup run.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "presentation/windows/Form.h"
#include "synchronisation/FiltroBackup.h"

namespace tandemize {

class FrmTandemizeFilter : public Form {
 public:
  // Shows what FilterBackup holds. OK stores it there and closes; the file of the profile is not touched.
  explicit FrmTandemizeFilter(QWidget* proprietaria);
  ~FrmTandemizeFilter() override;

 private:
  struct Controlli;
  void Collega();
  void MostraVoci(int selezionata);
  void AggiornaComandi();
  void AggiungiVoce();
  void RimuoviVoce();
  void SvuotaVoci();
  void Conferma();

  FiltroBackup filtro_;
  std::unique_ptr<Controlli> controlli_;
};

// Extensions of the file types that the host knows, as entries of a filter, in no order.
[[nodiscard]] std::vector<std::string> EstensioniDelSistema();

}  // namespace tandemize

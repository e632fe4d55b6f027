// Parses the text of a profile, or of its companion file, into the variables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "profile/ModelloBackup.h"
#include "profile/RigheProfilo.h"

namespace tandemize {

struct CampoOggetto;  // one field of an object and its key

// Reads one text, which must outlive the reader. Every step gives false when it failed; `Errore` then has the
// run-time's number.
class LettoreProfilo {
 public:
  explicit LettoreProfilo(std::string_view testo) : righe_(testo) {}

  [[nodiscard]] bool LeggiProfilo();
  [[nodiscard]] bool LeggiCompagno();

  [[nodiscard]] std::int32_t Errore() const { return errore_; }
  // Where it failed: the number of the line, from 1, and the key.
  [[nodiscard]] std::size_t Riga() const { return righe_.Numero(); }
  [[nodiscard]] std::string_view Chiave() const { return chiave_; }

 private:
  bool LeggiElenchi();
  bool LeggiOpzioni();
  bool LeggiOggetto();
  bool LeggiInizioOggetto();
  bool LeggiSequenzaOggetto(const ChiaveProfilo& chiave, std::vector<std::string> OggettoBackup::*elenco);
  template <std::size_t N>
  bool LeggiCampi(const std::array<CampoOggetto, N>& campi);
  template <typename Valore>
  bool LeggiSequenza(const ChiaveProfilo& chiave, std::vector<std::string>& elenco, Valore valore);
  template <typename Numero>
  bool Converti(const ChiaveProfilo& chiave, std::string_view testo, Numero& valore);
  bool Fallisce(std::int32_t errore, const ChiaveProfilo& chiave);

  [[nodiscard]] OggettoBackup& Oggetto() { return ArrayOggetti[numeroOggetto_]; }

  LettoreRighe righe_;
  std::string_view riga_;
  std::size_t numeroOggetto_ = 0;  // lines before the first object's go to the unused entry 0
  std::int32_t errore_ = 0;
  std::string_view chiave_;
};

}  // namespace tandemize

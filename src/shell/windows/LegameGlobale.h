// What joins the controls of the settings window to the model that holds their rules: each control is made
// here from the model's own value, shows it, and writes back what the user does.
#pragma once

#include <QObject>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/FrmGlobalSetting.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;
class QWidget;

namespace tandemize {

class LegameGlobale : public QObject {
 public:
  using C = ControlliGlobalSetting;
  using Azione = std::function<void()>;

  // `modello` must outlive the controls.
  LegameGlobale(FrmGlobalSetting& modello, QObject* parent);

  [[nodiscard]] FrmGlobalSetting& Modello() const { return modello_; }

  // The members of an option array, one for each caption. `scelta`, if given, is the engine's own rule for a
  // choice; otherwise the choice is just noted.
  std::vector<QRadioButton*> Opzioni(const char* nome, GruppoOpzioni C::*gruppo,
                                     const std::vector<std::string>& didascalie,
                                     std::function<void(int)> scelta = {});
  // A text box with the model's limits. `dopo` is called after each change by the user.
  QLineEdit* Casella(const char* nome, CasellaTesto C::*casella, const Azione& dopo = {});
  // The same, for characters of which `filtro` gives 0 for those that are not taken.
  QLineEdit* CasellaFiltrata(const char* nome, CasellaTesto C::*casella, int (*filtro)(int));
  QCheckBox* Spunta(const char* nome, std::string_view didascalia, CasellaSpunta C::*spunta,
                    const Azione& dopo = {});
  QComboBox* Combo(const char* nome, CasellaCombo C::*combo);
  // The label of a field: its buddy, and disabled together with it.
  QLabel* Etichetta(std::string_view testo, QWidget* campo);

  // A further way in which the model shows.
  void QuandoMostra(Azione mostra) { mostre_.push_back(std::move(mostra)); }
  // Brings every control to what the model holds. Nothing of it counts as a change by the user.
  void Mostra();
  [[nodiscard]] bool InMostra() const { return inMostra_; }
  // Lets the engine do something on behalf of the user, and shows what came of it.
  void Esegui(const Azione& azione);

 private:
  FrmGlobalSetting& modello_;
  std::vector<Azione> mostre_;
  bool inMostra_ = false;
};

}  // namespace tandemize

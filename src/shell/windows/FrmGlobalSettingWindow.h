// The window of the settings that belong to no profile. FrmGlobalSetting holds its rules.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "presentation/windows/Form.h"

namespace tandemize {

class FrmGlobalSettingWindow : public Form {
 public:
  // Loads the settings; if they could not be read a box tells it as soon as events run, and the window stays.
  explicit FrmGlobalSettingWindow(QWidget* proprietaria = nullptr);
  ~FrmGlobalSettingWindow() override;

  void SelezionaScheda(int scheda);
  // The size in which no page has to be scrolled.
  [[nodiscard]] QSize DimensionePreferita() const;

 protected:
  // Asks whether to drop changes that were not saved. While a server is tested it asks whether to stop that,
  // and the window stays; it stays too while the test tells how it went.
  bool QueryUnload() override;

 private:
  struct Controlli;
  void Riempi();
  void DaiTasti();                          // the access keys of headers and pages
  void MostraScheda(const QWidget& campo);  // the one that the field lies on
  void Cmd(int membro);
  void AbbandonaModifiche();
  void ProvaPosta();
  void ProvaServer();
  void DiciLinguaCambiata(int prima);

  std::unique_ptr<Controlli> controlli_;
};

inline constexpr int SchedaFtpGlobale = 4;  // number of the tab

// Shows the window, or the one that is loaded already. Modally it returns when the window is closed; if one
// is loaded already that one comes to the front at the tab, and the call returns at once.
void MostraFrmGlobalSetting();
void MostraFrmGlobalSettingModale(int scheda = 0);

// Called after settings with another language were saved: what is on the screen takes the new texts. Set by
// the main window; may be empty.
extern std::function<void()> LinguaCambiata;

// Asks for the profile of an advanced timer: its path, empty if the user gave up. The dialog, unless a test
// puts something else here.
extern std::function<std::string()> ScegliFileProfilo;

}  // namespace tandemize

// The mail window as an engine: it mails the collected log lines to the address of the settings, and says in
// the log what became of it. A display is optional; a run without a screen has none.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "mail/OggettiPosta.h"
#include "shell/Schermo.h"

namespace tandemize {

// What the window shows.
struct StatoPosta {
  std::string lblStatus = "Ready.";
  std::string TxtLog;                        // the server's replies; shown from their end
  int ProgBar = 0;                           // 0 to 100
  bool CmdInvia = true, CmdAnnulla = false;  // enabled
};

// The display of the window. Told of every change; `Chiudi` when the form unloads, which may come while the
// window is closed already.
class VistaPosta {
 public:
  VistaPosta() = default;
  virtual ~VistaPosta() = default;
  VistaPosta(const VistaPosta&) = delete;
  VistaPosta& operator=(const VistaPosta&) = delete;
  virtual void Mostra(const StatoPosta& stato) = 0;
  virtual void Chiudi() = 0;
};

class FrmSendEMail : private OggettiPosta {
 public:
  // `vista` may be null and must outlive the form otherwise.
  explicit FrmSendEMail(VistaPosta* vista = nullptr);
  ~FrmSendEMail() override;

  // The window has become the active one. The first time sending starts by itself, and this returns when the
  // mail is sent or has failed; later calls do nothing.
  void Activate();

  void CmdInvia_Click();
  void CmdAnnulla_Click();
  // The user closes the window: true if it may close.
  [[nodiscard]] bool QueryUnload();

  // Sends the mail, however long that takes, and logs the outcome. Does nothing while it is at work already.
  void InviaPosta();
  // Asks whether to abort. "Yes" is kept in the form alone and lets the window close; the dialogue runs on to
  // its own end.
  Risposta MessaggioDiAnnulla();
  void ResettaOggetti();

  [[nodiscard]] const StatoPosta& Stato() const { return stato_; }

 private:
  void lblStatus(std::string_view testo) override;
  void TxtLog(std::string_view testo) override;
  void ProgBar(int valore) override;
  void Aggiorna();
  void Pulsanti(bool invia, bool annulla);

  VistaPosta* vista_;
  StatoPosta stato_;
  std::int32_t annullamento_ = 0;  // the form's own abort state: 8 after "Yes"
  bool attivata_ = false, inInvio_ = false;
};

// Shows the window modally: sends the error notice, and returns when that is done. Never fails its caller.
// While one is shown a second call does nothing.
void MostraFrmSendEMail();

// How a program with windows shows the form, modally; the form's `Activate` is the display's to call. Empty:
// no display, as in the console program.
void UsaFinestraPosta(std::function<void()> mostra);

}  // namespace tandemize

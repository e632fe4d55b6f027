#include "mail/FrmSendEMail.h"

#include <utility>

#include "errors/ModuloLog.h"
#include "mail/ModuloEmail.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

// The lines of the body end in LF alone; only the headers and the closing line have CR LF.
constexpr char FineRiga = '\n';

std::function<void()> mostraFinestra;
bool finestraAperta = false;

// All collected lines but the spare one at the end of their list.
std::string Corpo() {
  std::string corpo = Messaggio(330) + " '" + NomeComputer() + "'";
  corpo += FineRiga;
  corpo += FineRiga;
  for (std::size_t i = 0; i + 1 < ListaLog.size(); ++i) {
    corpo += ListaLog[i];
    corpo += FineRiga;
  }
  return corpo;
}

std::string TestoEsito(std::int32_t status) {
  switch (status) {
    case StatoConnessione:
      return Messaggio(336);
    case StatoMittente:
      return Messaggio(334);
    case StatoDestinatario:
      return Messaggio(333);
    case StatoTempo:
      return Messaggio(337);
    case StatoMessaggio:
      return Messaggio(335);
    case StatoSenzaRete:
      return Messaggio(338);
    case StatoAnnullato:
      // No button leads here, only the end of the program, which is to be seen in the log.
      return InLingua("Il rapporto non è stato inviato: l'invio è stato interrotto.",
                      "The report was not sent: sending it was stopped.");
    default:
      return {};
  }
}

}  // namespace

FrmSendEMail::FrmSendEMail(VistaPosta* vista) : vista_(vista) {}

FrmSendEMail::~FrmSendEMail() = default;

void FrmSendEMail::Activate() {
  if (attivata_) return;
  attivata_ = true;
  Aggiorna();
  CmdInvia_Click();
}

void FrmSendEMail::CmdInvia_Click() {
  InviaPosta();
}

void FrmSendEMail::CmdAnnulla_Click() {
  MessaggioDiAnnulla();
}

bool FrmSendEMail::QueryUnload() {
  CmdAnnulla_Click();
  return annullamento_ == StatoAnnullato;
}

void FrmSendEMail::InviaPosta() {
  if (inInvio_) return;
  inInvio_ = true;
  ScriviLog(Messaggio(331), Intestazione);
  const std::string corpo = Corpo();
  Pulsanti(false, true);
  UsaOggettiPosta(this);
  SorvegliaArresto();
  std::int32_t status = StatoConnessione;
  SpedisciEmail(Email_Smtp, {AccountPredefinito(), Email_Email, Messaggio(332), corpo, {}}, status);
  UsaOggettiPosta(nullptr);
  Pulsanti(true, false);
  if (status == StatoSpedito)
    ScriviLog("OK", RigaOk);
  else
    ScriviLog(TestoEsito(status), BloccoErrore);
  ResettaOggetti();
  annullamento_ = 0;
  inInvio_ = false;
  if (vista_ != nullptr) vista_->Chiudi();
}

Risposta FrmSendEMail::MessaggioDiAnnulla() {
  const Risposta risposta = MsgBox("Are you sure to abort ?", StileSìNo);
  if (risposta == Risposta::Sì) {
    annullamento_ = StatoAnnullato;
    Pulsanti(true, false);
  }
  return risposta;
}

void FrmSendEMail::ResettaOggetti() {
  TxtLog("");
  ProgBar(0);
  lblStatus("Ready.");
}

void FrmSendEMail::lblStatus(std::string_view testo) {
  stato_.lblStatus = testo;
  Aggiorna();
}

void FrmSendEMail::TxtLog(std::string_view testo) {
  stato_.TxtLog = testo;
  Aggiorna();
}

void FrmSendEMail::ProgBar(int valore) {
  stato_.ProgBar = valore;
  Aggiorna();
}

void FrmSendEMail::Aggiorna() {
  if (vista_ != nullptr) vista_->Mostra(stato_);
}

void FrmSendEMail::Pulsanti(bool invia, bool annulla) {
  stato_.CmdInvia = invia;
  stato_.CmdAnnulla = annulla;
  Aggiorna();
}

void MostraFrmSendEMail() {
  if (finestraAperta) return;
  finestraAperta = true;
  if (mostraFinestra) {
    mostraFinestra();
  } else {
    FrmSendEMail form;
    form.Activate();
  }
  finestraAperta = false;
}

void UsaFinestraPosta(std::function<void()> mostra) {
  mostraFinestra = std::move(mostra);
}

}  // namespace tandemize

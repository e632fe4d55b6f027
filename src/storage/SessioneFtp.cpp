// The session's calls: what ends their waits, and what is remembered of the last that failed.
#include "storage/SessioneFtp.h"

#include "errors/ModuloGestioneErrori.h"
#include "platform/machine.h"
#include "shell/Schermo.h"
#include "storage/Guardia.h"
#include "storage/ModuloInternet.h"

namespace tandemize {

namespace {

ErroreFtp ultimo;
int pulizie = 0;
bool arrestoPrecedente = false;

bool Fermata() {
  arrestoPrecedente = arrestoPrecedente && AnnullamentoRichiesto;
  return OperazioneAnnullata() || platform::stopRequested() || (AnnullamentoRichiesto && !arrestoPrecedente);
}

bool Continua() {
  DoEvents();
  return pulizie > 0 || !Fermata();
}

}  // namespace

platform::FtpSession& SessioneFtp() {
  static platform::FtpSession sessione = [] {
    platform::FtpSession nuova;
    nuova.setKeepGoing(Continua);
    return nuova;
  }();
  return sessione;
}

PuliziaFtp::PuliziaFtp() {
  ++pulizie;
}
PuliziaFtp::~PuliziaFtp() {
  --pulizie;
}

const ErroreFtp& UltimoErroreFtp() {
  return ultimo;
}

platform::ErrorCode RicordaErroreFtp(platform::ErrorCode errore) {
  if (errore == platform::kNoError || errore == platform::kNoMoreFiles) return errore;
  ultimo.Numero = errore;
  ultimo.Parole = errore == platform::kFtpRefused ? SessioneFtp().lastReply() : std::string();
  return errore;
}

platform::ErrorCode ChiamaFtp(const std::function<platform::ErrorCode(platform::FtpSession&)>& chiamata) {
  return RicordaErroreFtp(HSessioneFtp == 0 ? ErroreSessioneChiusa : chiamata(SessioneFtp()));
}

std::string ConParoleDelServer(std::string dettaglio, platform::ErrorCode errore) {
  if (errore != platform::kFtpRefused || ultimo.Numero != errore || ultimo.Parole.empty()) return dettaglio;
  if (!dettaglio.empty()) dettaglio += '\r';
  return dettaglio.append("Server Reply: < ").append(ultimo.Parole).append(" >");
}

bool ConRiprovaFtp(const std::function<platform::ErrorCode(platform::FtpSession&)>& chiamata,
                   std::string_view routine, const std::string& dettaglio) {
  std::uint8_t tentativi = 0;
  for (;;) {
    const platform::ErrorCode errore = ChiamaFtp(chiamata);
    if (errore == platform::kNoError) break;
    if (errore == platform::kFtpStopped) return false;
    if (!ErroreRipetibileApi(tentativi, errore, routine, ConParoleDelServer(dettaglio, errore))) return false;
  }
  if (tentativi > 0) NotificaRipristino(FormAttivo());
  return true;
}

void ArrestiDaQui() {
  arrestoPrecedente = AnnullamentoRichiesto;
}

void AzzeraSessioneFtp() {
  ultimo = {};
  arrestoPrecedente = false;
  SessioneFtp().setLimits({});
}

}  // namespace tandemize

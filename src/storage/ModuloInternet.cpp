#include "storage/ModuloInternet.h"

#include <algorithm>
#include <iterator>

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "platform/sockets.h"
#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "storage/SessioneFtp.h"

namespace tandemize {

std::int32_t HInternet = 0, HSessioneFtp = 0;
std::vector<ServerInElenco> ServerConnessi(1);

namespace {

constexpr int IconaAvviso = 4;
constexpr std::uint16_t PortaFtp = 21;

bool NessunServer() {
  return FtpServers.empty() ||
         (FtpServers[0].Ftp_Description.empty() && FtpServers[0].Ftp_Server_Name.empty());
}

ServerFtp ServerScelto(std::int16_t indice) {
  if (indice == -1 && !FtpServers[0].Ftp_Description.empty()) indice = 0;
  const bool esiste = indice >= 0 && static_cast<std::size_t>(indice) < FtpServers.size();
  return esiste ? FtpServers[static_cast<std::size_t>(indice)] : ServerFtp();
}

// Closed handles have the number 0; each open one has a number of its own.
std::int32_t NuovoHandle() {
  static std::int32_t ultimo = 0;
  return ultimo = ultimo % INT32_MAX + 1;
}

void ChiudiHandle() {
  SessioneFtp().close();
  HInternet = HSessioneFtp = 0;
}

platform::ErrorCode ApriSessione(const ServerFtp& server) {
  ChiudiHandle();
  DoEvents();
  const platform::NetworkAddress indirizzo = platform::splitHostAndPort(server.Ftp_Server_Name, PortaFtp);
  const platform::ErrorCode errore =
      RicordaErroreFtp(SessioneFtp().connect({.host = indirizzo.ip,
                                              .port = indirizzo.port,
                                              .user = server.Ftp_User,
                                              .password = server.Ftp_Password,
                                              .passive = server.Ftp_PassiveMode != 0}));
  DoEvents();
  if (errore != platform::kNoError) {
    ChiudiHandle();
    return errore;
  }
  HInternet = NuovoHandle();
  HSessioneFtp = NuovoHandle();
  return errore;
}

std::string Citato(const std::string& valore) {
  return " '" + valore + "' ";
}

// Empty for a number that has no sentence of its own.
std::string TestoConnessione(platform::ErrorCode errore, const ServerFtp& server) {
  const std::string nome = Citato(server.Ftp_Server_Name);
  const auto rifiutato = [&nome](const std::string& prima, const std::string& valore) {
    return prima + Citato(valore) + Messaggio(345) + nome + Messaggio(346);
  };
  switch (errore) {
    case platform::kFtpTimedOut:
      return Messaggio(350) + nome + Messaggio(351);
    case platform::kFtpNameNotResolved:
      return Messaggio(352) + nome + Messaggio(353);
    case platform::kFtpWrongUser:
      return rifiutato(Messaggio(344), server.Ftp_User);
    case platform::kFtpWrongPassword:
      return rifiutato(Messaggio(347), server.Ftp_Password);
    case platform::kFtpLoginFailed:
      return Messaggio(348) + nome + Messaggio(349);
    default:
      return {};
  }
}

void MostraAvvisoNascosto(std::string_view testo) {
  MostraBalloon(FormAttivo(), testo, TitoloApplicazione, IconaAvviso, 0, false, true);
}

void RiferisciErroreNoto(platform::ErrorCode errore, const std::string& message, bool silent) {
  ErroreFatale(errore, "Connetti_Al_Server_FTP", 0, 0, "", message, 0);
  if (!silent && Errors_Alert_Mode == 0) MsgBox(message, StileInformazione);
  if (ApplicazioneNascosta) MostraAvvisoNascosto(message);
}

void RiferisciErroreRaro(platform::ErrorCode errore, const ServerFtp& server) {
  const std::string titolo = "La connessione al server '" + server.Ftp_Server_Name + "' non è riuscita.";
  ErroreFatale(errore, "Connetti_Al_Server_FTP", 0, 3, ConParoleDelServer(titolo, errore), "", 0);
}

void Elenca(const std::string& descrizione) {
  ServerConnessi.back() = {descrizione, HSessioneFtp};
  ServerConnessi.emplace_back();
}

// The text of the failure, which has then been reported. Numbers without a sentence of their own leave no
// trace in the list of servers.
std::string RiferisciFallita(platform::ErrorCode errore, const ServerFtp& server, bool silent) {
  std::string message = TestoConnessione(errore, server);
  if (message.empty()) {
    RiferisciErroreRaro(errore, server);
    return TestoErroreInternet(errore);
  }
  if (!InternetConnesso()) message = Messaggio(354);
  RiferisciErroreNoto(errore, message, silent);
  DisconnettiServer("");
  Elenca(server.Ftp_Description);
  return message;
}

}  // namespace

bool InternetConnesso() {
  return platform::networkUp();
}

bool ServerConnesso(std::string_view descrizione) {
  if (HInternet == 0 || HSessioneFtp == 0) return false;
  return descrizione.empty() || std::ranges::any_of(ServerConnessi, [descrizione](const ServerInElenco& s) {
           return s.Descrizione == descrizione;
         });
}

void DisconnettiServer(std::string_view descrizione) {
  ChiudiHandle();
  if (descrizione.empty()) {
    ServerConnessi.assign(1, {});
    return;
  }
  const std::string nome(descrizione);  // it may be a record's own, which is emptied on the way
  for (ServerInElenco& server : ServerConnessi)
    if (server.Descrizione == nome) server = {};
}

std::int32_t Connetti_Al_Server_FTP(std::int16_t serverIndex, std::string& message, bool& failed,
                                    bool silent) {
  message.clear();
  failed = false;
  if (NessunServer()) {
    MsgBox(Messaggio(342), StileInformazione);
    schermo().MousePointer(Puntatore::Normale);
    return -1;
  }
  if (!ApplicazioneNascosta) schermo().MousePointer(Puntatore::Clessidra);
  const ServerFtp server = ServerScelto(serverIndex);
  // The hourglass stays, until the next call that clears it.
  if (ServerConnesso(server.Ftp_Description)) return 0;
  ScriviLog(Messaggio(343) + " '" + server.Ftp_Description + "'", Intestazione);
  ArrestiDaQui();
  const platform::ErrorCode errore = ApriSessione(server);
  failed = errore != platform::kNoError;
  if (!failed) {
    Elenca(server.Ftp_Description);
    ScriviLog("", RigaOk);
  } else if (errore == platform::kFtpStopped) {
    // The stop has its own line in the log, and is no fault of the server.
    message = TestoErroreInternet(errore);
  } else {
    message = RiferisciFallita(errore, server, silent);
    ConnessioneFallita = true;
  }
  schermo().MousePointer(Puntatore::Normale);
  return errore;
}

void AvvisoConnessionePersa(bool failed, std::string_view message) {
  schermo().MousePointer(Puntatore::Normale);
  if (!failed) return;
  ConnessioneFallita = true;
  if (Errors_Alert_Mode != 0) return;
  if (ApplicazioneNascosta)
    MostraAvvisoNascosto(message);
  else if (MsgBox(Messaggio(341) + std::string(message), StileSìNoInformazione) != Risposta::No)
    return;
  // From here to the next reading of the settings the faults of this run are told at its end.
  Errors_Alert_Mode = 1;
}

void AzzeraInternet() {
  DisconnettiServer("");
  AzzeraSessioneFtp();
}

}  // namespace tandemize

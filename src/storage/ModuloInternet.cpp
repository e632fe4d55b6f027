#include "storage/ModuloInternet.h"

#include "errors/ModuloGestioneErrori.h"
#include "errors/ModuloLog.h"
#include "presentation/Avvisi.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr int IconaAvviso = 4;
constexpr std::int32_t ServerNonTrovato = 12007;  // what a machine without a network answers for any server

bool NessunServer() {
  return FtpServers.empty() ||
         (FtpServers[0].Ftp_Description.empty() && FtpServers[0].Ftp_Server_Name.empty());
}

ServerFtp ServerScelto(std::int16_t indice) {
  if (indice == -1 && !FtpServers[0].Ftp_Description.empty()) indice = 0;
  const bool esiste = indice >= 0 && static_cast<std::size_t>(indice) < FtpServers.size();
  return esiste ? FtpServers[static_cast<std::size_t>(indice)] : ServerFtp();
}

void MostraAvvisoNascosto(std::string_view testo) {
  MostraBalloon(FormAttivo(), testo, TitoloApplicazione, IconaAvviso, 0, false, true);
}

void RiferisciConnessioneFallita(const std::string& message, bool silent) {
  ErroreFatale(ServerNonTrovato, "Connetti_Al_Server_FTP", 0, 0, "", message, 0);
  if (!silent && Errors_Alert_Mode == 0) MsgBox(message, StileInformazione);
  if (ApplicazioneNascosta) MostraAvvisoNascosto(message);
}

}  // namespace

bool InternetConnesso() {
  return false;
}

bool ServerConnesso(std::string_view /*descrizione*/) {
  return false;
}

void DisconnettiServer(std::string_view /*descrizione*/) {}

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
  ScriviLog(Messaggio(343) + " '" + ServerScelto(serverIndex).Ftp_Description + "'", Intestazione);
  ScriviLog(InLingua("Questa versione non raggiunge ancora i server FTP.",
                     "This version reaches no FTP server yet."),
            BloccoErrore);
  failed = true;
  message = Messaggio(354);
  if (!message.empty()) RiferisciConnessioneFallita(message, silent);
  DisconnettiServer("");
  ConnessioneFallita = true;
  schermo().MousePointer(Puntatore::Normale);
  return ServerNonTrovato;
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

}  // namespace tandemize

#include "shell/FrmGlobalSetting.h"

#include <algorithm>

#include "platform/machine.h"
#include "platform/newfile.h"
#include "shell/ChiaviGlobalSetting.h"
#include "shell/LetturaGlobale.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/RigheGlobalSetting.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::uint8_t NessunaOpzione = 255;
constexpr std::uint32_t PermessiFile = 0600;  // the file holds passwords
constexpr int MessaggioOre = 184, MessaggioGiorni = 267, MessaggioSettimane = 268, MessaggioMesi = 269;
constexpr int MessaggioServerErrati = 407, MessaggioTimerCambiato = 408;
constexpr std::string_view ChiavePosta =
    "HKEY_CURRENT_USER\\Software\\Microsoft\\Internet Account Manager\\Accounts\\00000001";

std::string PercorsoFileGlobale() {
  return PercorsoApplicazione + std::string(NomeFileGlobale);
}

void ScriviServer(std::string& testo) {
  for (std::size_t i = 0; i + 1 < FtpServers.size(); ++i) {
    const ServerFtp& server = FtpServers[i];
    const std::string indice = std::to_string(i);
    AggiungiRiga(testo, "Ftp_Description" + indice, server.Ftp_Description);
    AggiungiRiga(testo, "Ftp_Server_Name" + indice, server.Ftp_Server_Name);
    AggiungiRiga(testo, "Ftp_User" + indice, server.Ftp_User);
    AggiungiRiga(testo, "Ftp_Password" + indice, server.Ftp_Password);
    AggiungiRiga(testo, "Ftp_PassiveMode" + indice, std::to_string(server.Ftp_PassiveMode));
  }
}

// The line of that number, from 1, without its end.
std::string_view RigaNumero(std::string_view testo, std::size_t numero) {
  for (; numero > 1; --numero) testo.remove_prefix(std::min(testo.find('\n'), testo.size() - 1) + 1);
  return testo.substr(0, testo.find("\r\n"));
}

bool Numerica(const ChiaveGlobale& chiave) {
  return !std::holds_alternative<std::string*>(chiave.Destinazione);
}

}  // namespace

void AggiungiRiga(std::string& testo, std::string_view chiave, std::string_view valore) {
  testo.append(chiave).append(" = ");
  for (const char c : valore) testo += c == '\r' || c == '\n' ? ' ' : c;
  testo += "\r\n";
}

bool CaricaImpostazioni(std::string& errore) {
  FrmGlobalSetting finestra;
  bool cambiato = false;
  const bool letto = finestra.OpenFileGlobal(PercorsoFileGlobale(), cambiato, false, true);
  errore = finestra.Errore();
  return letto;
}

bool FrmGlobalSetting::Carica() {
  bool cambiato = false;
  const bool letto = OpenFileGlobal(PercorsoFileGlobale(), cambiato, false, false);
  RiempiIntervalli();
  ParametriPostaPredefiniti();
  RiempiListFtp();
  ApplicaTipoTimer();
  ApplicaBuffer();
  return letto;
}

// A word that was chosen in the language before becomes that of now.
void FrmGlobalSetting::RiempiIntervalli() {
  const std::vector<std::string> parole{Messaggio(MessaggioOre), Messaggio(MessaggioGiorni),
                                        Messaggio(MessaggioSettimane), Messaggio(MessaggioMesi)};
  for (CasellaCombo* combo : {&comboTimer, &cmbintervallo}) {
    for (std::size_t i = 0; i < combo->Elementi.size() && i < parole.size(); ++i) {
      if (combo->Text != combo->Elementi[i]) continue;
      combo->Text = parole[i];
      break;
    }
    combo->Elementi = parole;
  }
}

void FrmGlobalSetting::ParametriPostaPredefiniti() {
  if (txtEmailSmtp.Text.empty()) txtEmailSmtp.Text = platform::registryValue(ChiavePosta, "SMTP Server");
}

void FrmGlobalSetting::ScegliBuffer(int membro) {
  OptAdvBuffer.Attiva = membro;
  ApplicaBuffer();
}

// The choice only enables the fields: their numbers stay and are used either way.
void FrmGlobalSetting::ApplicaBuffer() {
  for (CasellaTesto* casella : {&txtBufferLocal, &txtBufferLan, &txtBufferFtp})
    casella->Enabled = !OptAdvBuffer.Accesa(0);
}

void FrmGlobalSetting::Return_Opt_Value(std::string_view NomeControllo, std::uint8_t& Valore) const {
  Valore = NessunaOpzione;
  for (const ChiaveGlobale& chiave : ChiaviGlobali()) {
    const auto* gruppo = std::get_if<GruppoOpzioni ControlliGlobalSetting::*>(&chiave.Controllo);
    if (gruppo == nullptr || Maiuscolo(chiave.NomeControllo) != Maiuscolo(NomeControllo)) continue;
    if (const auto& attiva = (this->**gruppo).Attiva) Valore = static_cast<std::uint8_t>(*attiva);
    return;
  }
}

std::string FrmGlobalSetting::TestoControllo(const ChiaveGlobale& chiave) const {
  if (const auto* casella = std::get_if<CasellaTesto ControlliGlobalSetting::*>(&chiave.Controllo)) {
    const std::string& testo = (this->**casella).Text;
    // An emptied number field could not be read back.
    return testo.empty() && Numerica(chiave) ? "0" : testo;
  }
  if (const auto* combo = std::get_if<CasellaCombo ControlliGlobalSetting::*>(&chiave.Controllo))
    return (this->**combo).Text;
  if (const auto* spunta = std::get_if<CasellaSpunta ControlliGlobalSetting::*>(&chiave.Controllo))
    return std::to_string((this->**spunta).Value);
  std::uint8_t valore = 0;
  Return_Opt_Value(chiave.NomeControllo, valore);
  return std::to_string(valore);
}

std::string FrmGlobalSetting::ComponiFile() {
  // A program with a timer always starts hidden with the PC, one without never starts with it: a timed run
  // begins only while the program is hidden. What was chosen for the start does not outlast a save.
  OptStartPC.Attiva = OptTimer.Accesa(0) ? 0 : 2;
  std::string testo;
  bool serverScritti = false;
  for (const ChiaveGlobale& chiave : ChiaviGlobali()) {
    if (!DelServer(chiave)) {
      AggiungiRiga(testo, chiave.Chiave, TestoControllo(chiave));
    } else if (!serverScritti) {
      ScriviServer(testo);
      serverScritti = true;
    }
  }
  ScriviTimerAvanzati(testo);
  return testo;
}

platform::ErrorCode FrmGlobalSetting::SaveFileGlobal(const std::string& Percorso) {
  return platform::replaceFile(Percorso, ComponiFile(), PermessiFile);
}

// Why the text could not be read as a settings file, empty if it can. Keys are found anywhere in a line, so a
// value that holds the name of one is taken for that one's line too.
std::string FrmGlobalSetting::MotivoIllegibile(std::string_view testo) {
  FrmGlobalSetting prova;
  LetturaGlobale lettura{PercorsoFileGlobale(), false, true, true};
  if (prova.LeggiTesto(testo, lettura)) return {};
  const std::string_view riga = RigaNumero(testo, lettura.riga);
  const std::size_t separatore = riga.find(" = ");
  const std::string_view chiave = riga.substr(0, separatore);
  std::string motivo = InLingua("Le impostazioni non sono state salvate: il valore di '",
                                "The settings were not saved: the value of '") +
                       std::string(chiave) +
                       InLingua("' non potrebbe essere riletto", "' could not be read back");
  if (separatore == std::string_view::npos) return motivo + ".";
  const std::string_view valore = riga.substr(separatore + 3);
  if (!chiave.starts_with("Ftp_Password")) motivo += ": '" + std::string(valore) + "'";
  for (const ChiaveGlobale& altra : ChiaviGlobali())
    if (valore.find(altra.Chiave) != std::string_view::npos)
      return motivo + InLingua(". Contiene '", ". It holds '") + std::string(altra.Chiave) +
             InLingua("', il nome di un'impostazione.", "', the name of a setting.");
  return motivo + ".";
}

bool FrmGlobalSetting::Modificato() {
  AdottaDalFile();
  bool cambiato = false;
  return !OpenFileGlobal(PercorsoFileGlobale(), cambiato, true, false) || cambiato;
}

bool FrmGlobalSetting::SalvaERileggi() {
  const std::string percorso = PercorsoFileGlobale();
  AdottaDalFile();
  const std::string testo = ComponiFile();
  if (const std::string motivo = MotivoIllegibile(testo); !motivo.empty()) {
    MsgBox(motivo, StileCritico);
    return false;
  }
  if (const auto errore = platform::replaceFile(percorso, testo, PermessiFile);
      errore != platform::kNoError) {
    MsgBox(InLingua("Impossibile salvare il file '", "The file cannot be saved: '") + percorso +
               "': " + platform::systemErrorText(errore),
           StileCritico);
    return false;
  }
  bool cambiato = false;
  if (!OpenFileGlobal(percorso, cambiato, false, false)) {
    if (!errore_.empty()) MsgBox(errore_, StileCritico);
    return false;
  }
  RiempiIntervalli();
  RiempiListFtp();
  return true;
}

EsitoConferma FrmGlobalSetting::Conferma(int membro) {
  bool serverCorretti = true;
  VerificaDatiCorrettiFtp(serverCorretti);
  if (membro != 0) return EsitoConferma::Chiudi;
  if (!serverCorretti) {
    MsgBox(Messaggio(MessaggioServerErrati), StileInformazione);
    return EsitoConferma::VaiAlTabFtp;
  }
  if (!SalvaERileggi()) return EsitoConferma::RestaAperta;
  if (timerCambiato_) MsgBox(Messaggio(MessaggioTimerCambiato), StileInformazione);
  timerCambiato_ = false;
  return EsitoConferma::Chiudi;
}

}  // namespace tandemize

#include "shell/ModuloPrincipale.h"

#include <array>

#include "errors/ModuloLog.h"
#include "platform/files.h"
#include "platform/machine.h"
#include "profile/ModelloBackup.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Impostazioni.h"
#include "shell/Schermo.h"

namespace tandemize {

namespace {

constexpr std::string_view DataPredefinita = "dd/mm/yyyy", OraPredefinita = "H.mm.ss";
constexpr std::string_view NomeApplicazione = "Tandemize Backup";
constexpr std::string_view ChiaveInternazionale = "HKEY_CURRENT_USER\\Control Panel\\International";

}  // namespace

std::string PercorsoApplicazione, PercorsoGif, PercorsoIcone, FileProfilo;
std::string FormatoData{DataPredefinita}, FormatoOra{OraPredefinita};
std::string TitoloApplicazione{NomeApplicazione};
std::int16_t PiattaformaOS = 0;

bool ApplicazioneNascosta = false;
bool PartenzaAutomaticaAttiva = false;
bool TrasferimentoRiuscito = false;

namespace {

std::string CartellaDati(std::string_view nome) {
  return platform::findIgnoringCase(PercorsoApplicazione, nome) + "\\";
}

void ImpostaPercorsi(std::string_view cartella) {
  PercorsoApplicazione = cartella;
  if (!cartella.ends_with('\\')) PercorsoApplicazione += '\\';
  PercorsoGif = CartellaDati("Gif");
  PercorsoIcone = CartellaDati("Icon");
  FileProfilo = PercorsoApplicazione + std::string(NomeProfiloPredefinito);
}

std::string ValoreInternazionale(std::string_view nome, std::string_view predefinito) {
  const std::string valore = platform::registryValue(ChiaveInternazionale, nome);
  return valore.empty() ? std::string(predefinito) : valore;
}

// The rest of the start cannot rely on the settings being whole: a value that does not convert is told and
// the start goes on, so that the caller may choose between ending and what the variables hold.
[[nodiscard]] bool LeggiImpostazioniIniziali() {
  std::string errore;
  if (CaricaImpostazioni(errore)) return true;
  if (!errore.empty()) MsgBox(errore, StileCritico);
  return false;
}

bool EsisteSulDisco(std::string_view percorso) {
  platform::FileStatus stato;
  return platform::query(percorso, stato) == platform::kNoError;
}

}  // namespace

EsitoAvvio Sub_Main(std::string_view cartella) {
  ImpostaPercorsi(cartella);
  if (!ControllaFileNecessari()) return EsitoAvvio::FileMancante;
  FormatoData = ValoreInternazionale("sShortDate", DataPredefinita);
  FormatoOra = ValoreInternazionale("sTimeFormat", OraPredefinita);
  TitoloApplicazione = NomeApplicazione;
  const bool impostazioniLette = LeggiImpostazioniIniziali();
  if (StartUp_PC_Mode == 2) ApplicazioneNascosta = true;
  CreaListaLog();
  AzzeraArrayOggetti();
  PiattaformaOS = static_cast<std::int16_t>(VersioneWindows());
  return impostazioniLette ? EsitoAvvio::Pronto : EsitoAvvio::ImpostazioniErrate;
}

std::string FileNecessarioMancante() {
  struct FileNecessario {
    const std::string& cartella;
    std::string_view nome;
    bool maiuscoleIndifferenti;  // the program's own data; the host's letter case rules for the others
  };
  const std::array<FileNecessario, 8> elenco{{{PercorsoApplicazione, NomeProfiloPredefinito, false},
                                              {PercorsoApplicazione, "GlobalSetting.dat", false},
                                              {PercorsoApplicazione, "Lang_Ita.Dat", true},
                                              {PercorsoApplicazione, "Lang_Eng.Dat", true},
                                              {PercorsoGif, "Scansione.Gif", true},
                                              {PercorsoIcone, "Files.ico", true},
                                              {PercorsoIcone, "Folders.ico", true},
                                              {PercorsoIcone, "Drive.ico", true}}};
  std::string mancante;
  for (const FileNecessario& file : elenco) {
    const std::string percorso = file.maiuscoleIndifferenti
                                     ? platform::findIgnoringCase(file.cartella, file.nome)
                                     : file.cartella + std::string(file.nome);
    if (!EsisteSulDisco(percorso)) mancante = file.cartella + std::string(file.nome);
  }
  return mancante;
}

bool ControllaFileNecessari() {
  const std::string mancante = FileNecessarioMancante();
  if (mancante.empty()) return true;
  MsgBox("Errore di Avvio: il file '" + mancante + "' non è stato tovato.", StileCritico);
  schermo().FineProgramma(4);
  return false;
}

std::int64_t MemoriaFisicaLibera() {
  return platform::freePhysicalMemory();
}

std::int32_t VersioneWindows() {
  const int numero = platform::platformId();
  if (numero == 0) MsgBox("Error Getting Version Information", StileSemplice);
  return numero;
}

std::string NomeComputer() {
  return platform::computerName();
}

std::string TagliaAlNul(std::string_view testo) {
  return std::string(testo.substr(0, testo.find('\0')));
}

int SoloCifre(int tasto) {
  constexpr int cancella = 8, cifraZero = 48, cifraNove = 57;
  return tasto == cancella || (tasto >= cifraZero && tasto <= cifraNove) ? tasto : 0;
}

void AzzeraModuloPrincipale() {
  for (std::string* percorso : {&PercorsoApplicazione, &PercorsoGif, &PercorsoIcone, &FileProfilo})
    percorso->clear();
  FormatoData = DataPredefinita;
  FormatoOra = OraPredefinita;
  TitoloApplicazione = NomeApplicazione;
  PiattaformaOS = 0;
  ApplicazioneNascosta = PartenzaAutomaticaAttiva = TrasferimentoRiuscito = false;
}

}  // namespace tandemize

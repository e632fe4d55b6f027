// The pass from the profile to the list of things to do: scan, sort, comparison, report.
#include <algorithm>
#include <utility>

#include "errors/ModuloLog.h"
#include "platform/paths.h"
#include "presentation/Avvisi.h"
#include "presentation/FrmProgressBar.h"
#include "profile/ModuloProfilo.h"
#include "shell/Impostazioni.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "synchronisation/FrmTandemize.h"

namespace tandemize {

namespace {

constexpr int IconaEsito = 2;
constexpr std::int16_t SezioneSincronizzazione = -1;

std::uint8_t InUnByte(std::int32_t valore) {
  return static_cast<std::uint8_t>(std::clamp<std::int32_t>(valore, 0, 255));
}

// The profile's values as they were read, with the spare entry that the lists are written with.
ValoriSincronizzazione ValoriDelProfilo() {
  ValoriSincronizzazione valori;
  valori.percorsi = Backup_Path;
  valori.percorsi.emplace_back();
  valori.serverFtp = Backup_FTP;
  valori.serverFtp.emplace_back();
  valori.FixFileOption = InUnByte(FixFileOption);
  valori.FixScanAfterFix = FixScanAfterFix;
  valori.SourceNotChange = SourceNotChange;
  valori.EraseFile = EraseFile;
  valori.AutoTandemize = AutoTandemize;
  valori.FtpEnabled = FtpEnabled;
  valori.CompareMethod = CompareMethod;
  valori.TandemMode = TandemMode;
  return valori;
}

// Whether files of a later path are deleted because this one lacks them.
bool FaDaSorgente(std::size_t colonna) {
  return TandemMode == ModoSingolo ? colonna + 1 < ArrayScansione.Colonne() : colonna % 2 == 0;
}

// Both are paths of folders of this machine, and the first lies inside the second.
bool SiTrovaIn(const std::string& interno, const std::string& esterno) {
  const std::string qui = platform::toHost(interno), là = platform::toHost(esterno);
  return !qui.empty() && !là.empty() && qui != là && qui.starts_with(là == "/" ? là : là + "/");
}

}  // namespace

void FrmTandemize::FaseDiScansione() {
  fermata_ = false;
  scansione_ = EsitoScansione::Fallita;
  if (FormCaricato("FrmFileTransfer") || FormCaricato("FrmScan")) return;
  ErroreCrc = TroppeDifferenze = false;
  const bool salvato = anteprima_ || SalvaProfilo();
  ResettaGliArray();
  if (!salvato) return;
  Scansiona();
  if ((ErroreInCorso && !Errors_Try_Next) || ProcessoAnnullato)
    ResettaGliArray();
  else
    OrdinaEConfronta();
  GiudicaScansione();
  RiferisciScansione();
}

// What is done by values that the profile file does not hold could not be told from it later.
bool FrmTandemize::SalvaProfilo() {
  const platform::ErrorCode errore = ScriviFileProfilo(ValoriDelProfilo(), SezioneSincronizzazione);
  if (errore == platform::kNoError) return true;
  ErroreInCorso = true;
  ErroreFatale(errore, "FaseDiScansione", 0, 3, "",
               InLingua("Il profilo non può essere salvato: ", "The profile cannot be saved: ") +
                   FileProfilo + " (" + platform::systemErrorText(errore) + ")",
               0);
  return false;
}

void FrmTandemize::ResettaGliArray() {
  ArrayScansione.Azzera(static_cast<std::size_t>(PathCount));
  ArrayTrasferimento.Svuota();
}

void FrmTandemize::PreparaUnita() {
  if (!schermo().MostraUnita()) return;
  schermo().SvuotaRigheUnita();
  for (std::size_t i = 0; i < ArrayScansione.Colonne(); ++i) schermo().AggiornaInfo(i);
}

void FrmTandemize::Scansiona() {
  PreparaUnita();
  ErroreInCorso = ProcessoAnnullato = false;
  // What an earlier operation left of these would count against this one: a stop that no retry has used up
  // ends every CRC, a connection that was lost refuses the run.
  AnnullamentoRichiesto = ConnessioneFallita = false;
  if (SorgenteNellaDestinazione()) return;
  FrmScan scansione;
  scansione.Init(Percorsi(), *this, false, false, false, "");
  fermata_ = scansione.Fermata();
  ControllaSaltati(scansione);
}

// With the first path of a pair inside the second one, every file of the first is a file of the second under
// another name, which the first lacks: a deletion of such files would take the source away.
bool FrmTandemize::SorgenteNellaDestinazione() {
  if (EraseFile == 0) return false;
  const std::size_t passo = TandemMode == ModoSingolo ? 1 : 2;
  const auto numero = static_cast<std::size_t>(PathCount);
  for (std::size_t i = 0; i < numero; i += passo)
    for (std::size_t j = i + 1; j < (passo == 1 ? numero : std::min(i + 2, numero)); ++j) {
      if (!SiTrovaIn(Backup_Path[i], Backup_Path[j])) continue;
      ErroreInCorso = true;
      ErroreFatale(0, "FaseDiScansione", 2, 3, "",
                   InLingua("Il percorso di origine '", "The source path '") + Backup_Path[i] +
                       InLingua("' si trova dentro '", "' lies inside '") + Backup_Path[j] +
                       InLingua("', i cui file in più sarebbero eliminati.",
                                "', whose additional files would be deleted."),
                   0);
      return true;
    }
  return false;
}

// An optical drive whose disc could not be walked is passed over, and its column is empty. Taken as a source,
// that would have every file of the other side deleted.
void FrmTandemize::ControllaSaltati(const FrmScan& scansione) {
  if (EraseFile == 0) return;
  const std::vector<RigaPercorso> percorsi = Percorsi();
  for (const std::size_t colonna : scansione.Saltati()) {
    if (!FaDaSorgente(colonna)) continue;
    ErroreInCorso = true;
    ScriviLog(Messaggio(274) + " '" + percorsi[colonna].percorso + "'", BloccoErrore);
  }
}

void FrmTandemize::OrdinaEConfronta() {
  Confronto confronto(*this);
  {
    FrmProgressBar avanzamento(this, Messaggio(284), 100);
    confronto.OrdinaTutteLeUnita(avanzamento);
  }
  if (std::exchange(ProcessoAnnullato, false)) {
    fermata_ = true;
    ResettaGliArray();
    return;
  }
  MostraConfrontoInCorso(true);
  Confronta(confronto);
  // Only ArrayTrasferimento is needed from here on; the scan gives its memory back.
  ArrayScansione.Azzera(static_cast<std::size_t>(PathCount));
  MostraConfrontoInCorso(false);
  if (!std::exchange(ProcessoAnnullato, false)) return;
  fermata_ = true;
  if (schermo().MostraUnita()) schermo().SvuotaRigheUnita();
  ResettaGliArray();
}

void FrmTandemize::Confronta(Confronto& confronto) {
  MoltiDifferenze = false;
  confronto.ContaDifferenze();
  FrmProgressBar avanzamento(this, Messaggio(284), 100);
  if (!ErroreInCorso) confronto.VisualizzaRapporto(avanzamento);
  ErroreCrc |= confronto.ErroreCrc;
  TroppeDifferenze = confronto.TroppeDifferenze;
  MoltiDifferenze = confronto.MoltiDifferenze;
}

// Lists are hidden while they fill, which keeps filling fast.
void FrmTandemize::MostraConfrontoInCorso(bool inCorso) {
  if (inCorso && !ApplicazioneNascosta) schermo().MousePointer(Puntatore::Clessidra);
  if (!inCorso) schermo().MousePointer(Puntatore::Normale);
  if (!schermo().MostraUnita()) return;
  for (std::size_t i = 0; i < ArrayScansione.Colonne(); ++i)
    schermo().IntestazioneUnita(i, inCorso ? std::string_view(Messaggio(73)) : std::string_view());
  schermo().MostraRigheUnita(!inCorso);
}

void FrmTandemize::GiudicaScansione() {
  fermata_ = fermata_ || ProcessoAnnullato;
  scansione_ = fermata_                              ? EsitoScansione::Annullata
               : ErroreInCorso || ConnessioneFallita ? EsitoScansione::Fallita
                                                     : EsitoScansione::Completa;
}

// A stop of the sort or of the comparison has been cleared by now, and is told as nothing to do.
void FrmTandemize::RiferisciScansione() {
  if (ErroreCrc) return Avvisa(Messaggio(426));
  if (ProcessoAnnullato) return Avvisa(Messaggio(434));
  if (ErroreInCorso) return Avvisa(Messaggio(435));
  if (ArrayTrasferimento.Vuota() && !ConnessioneFallita)
    Avvisa(Messaggio(62));
  else if (DaEseguire())
    EseguiSincronizzazione(false);
  FineOperazione(ErroreInCorso, ErroreInCorso_Descrizione, ProcessoAnnullato);
}

bool FrmTandemize::DaEseguire() const {
  if (ApplicazioneNascosta || anteprima_) return false;
  return AutoTandemize != 0 || MsgBox(Messaggio(44), StileSìNo) == Risposta::Sì;
}

// Told in either state of the program: a notice shows in one of them only.
void FrmTandemize::Avvisa(std::string_view testo) const {
  MostraBalloon(Nome(), testo, Messaggio(66), IconaEsito, 0, false, ApplicazioneNascosta);
}

}  // namespace tandemize

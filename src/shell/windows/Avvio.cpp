#include "shell/windows/Avvio.h"

#include <QApplication>
#include <QLocale>
#include <QTimer>

#include "mail/windows/FrmSendEMailWindow.h"
#include "platform/machine.h"
#include "platform/paths.h"
#include "presentation/Avvisi.h"
#include "presentation/windows/ModuloGrafica.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

// Before the settings are read, the language is the desktop's.
std::string NellaLinguaDelDesktop(std::string_view italiano, std::string_view inglese) {
  return std::string(QLocale::system().language() == QLocale::Italian ? italiano : inglese);
}

void DiceRifiuto(const std::string& testo) {
  MsgBox(testo, StileCritico);
}

bool PreparaCartella(const std::string& cartella) {
  if (!platform::hostFolderExists(cartella)) {
    const platform::ErrorCode errore = platform::fillProgramFolder(cartella, false);
    if (errore != platform::kNoError) {
      DiceRifiuto(NellaLinguaDelDesktop("La cartella del programma '", "The program folder '") + cartella +
                  NellaLinguaDelDesktop("' non può essere creata: ", "' cannot be made: ") +
                  platform::systemErrorText(errore));
      return false;
    }
  }
  platform::setProgramFolder(cartella);
  return true;
}

std::string NumeroDelProcesso(int processo) {
  return processo == 0 ? std::string()
                       : NellaLinguaDelDesktop(" (numero ", " (number ") + std::to_string(processo) + ")";
}

void DiceOccupata(int processo) {
  DiceRifiuto(
      NellaLinguaDelDesktop("Un altro processo", "Another process") + NumeroDelProcesso(processo) +
      NellaLinguaDelDesktop(" lavora già sulla cartella del programma '", " works on the program folder '") +
      platform::programFolderOnHost() +
      NellaLinguaDelDesktop(
          "'. Se è Tandemize Backup, si trova nell'area di notifica o nella barra delle applicazioni.",
          "' already. If it is Tandemize Backup, look for it in the notification area or in the task "
          "bar."));
}

// Those of the user's own table of drives that make no sense; the rest of it holds.
std::string RigheErrate() {
  std::string testo;
  for (const std::string& riga : platform::badDriveLines()) testo.append("\r").append(riga);
  return testo;
}

void DiceRigheErrate() {
  const std::string righe = RigheErrate();
  if (righe.empty()) return;
  const std::string testo = InLingua("Drives.dat ha righe senza significato, che non vengono considerate:",
                                     "Drives.dat has lines that make no sense and are passed over:") +
                            righe;
  // Nobody would see a box: the program that starts hidden says it by a notice that stays.
  if (ApplicazioneNascosta)
    MostraBalloon("FrmStart", testo, TitoloApplicazione, 2, 0, false, true);
  else
    MsgBox(testo, StileInformazione);
}

}  // namespace

Avvio::Avvio(QtSchermo& schermo) : schermo_(schermo) {}
Avvio::~Avvio() = default;

bool Avvio::Prepara(const std::string& cartella) {
  if (!PreparaCartella(cartella) || !PrendiCartella()) return false;
  // A setting with a bad value was told; the others hold.
  return Sub_Main(PercorsoDelProgramma()) != EsitoAvvio::FileMancante;
}

std::string Avvio::PercorsoDelProgramma() {
  return platform::toProgram(platform::programFolderOnHost()) + "\\";
}

bool Avvio::PrendiCartella() {
  int processo = 0;
  const platform::ErrorCode errore = lucchetto_.acquire(PercorsoDelProgramma(), processo);
  if (errore == platform::kNoError) return true;
  if (errore == platform::kSharingViolation)
    DiceOccupata(processo);
  else
    DiceRifiuto(NellaLinguaDelDesktop("Nella cartella del programma '", "The program folder '") +
                platform::programFolderOnHost() +
                NellaLinguaDelDesktop("' non si può scrivere: ", "' cannot be written: ") +
                platform::systemErrorText(errore));
  return false;
}

FrmStartWindow& Avvio::Apri() {
  finestra_ = std::make_unique<FrmStartWindow>(schermo_);
  schermo_.Diagramma = [this] { finestra_->ApriDiagramma(); };
  InstallaFinestraPosta();
  finestra_->Carica();
  finestra_->Apri();
  return *finestra_;
}

void Avvio::ApriFinestraIniziale() {
  DiceRigheErrate();
  if (StartUp_Pr_Mode == 2) return finestra_->ApriBackup();
  if (StartUp_Pr_Mode != 1) return;
  // A box would hold up a program that starts without anybody before it.
  if (!ApplicazioneNascosta) finestra_->ApriSincronizzazione();
}

int AvviaDesktop(int argc, char** argv) {
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::setDesktopFileName(QStringLiteral("tandemize-backup"));
  QApplication programma(argc, argv);
  QApplication::setApplicationName(QStringLiteral("tandemize"));
  ImpostaColori();
  QtSchermo schermo;
  Avvio avvio(schermo);
  if (!avvio.Prepara(platform::findProgramFolder())) return 4;
  // From here on the main window sees to it; until now such a signal just ended the program.
  platform::catchStopSignals();
  avvio.Apri();
  // From inside of the message loop: a box that stands open must not hold up the end of the start.
  QTimer::singleShot(0, &programma, [&avvio] { avvio.ApriFinestraIniziale(); });
  return QApplication::exec();
}

}  // namespace tandemize

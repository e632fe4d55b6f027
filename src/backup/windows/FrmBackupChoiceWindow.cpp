#include "backup/windows/FrmBackupChoiceWindow.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>
#include <iterator>
#include <string_view>
#include <utility>

#include "backup/FrmBackupChoice.h"
#include "backup/RapportoFalliti.h"
#include "errors/ModuloLog.h"
#include "platform/machine.h"
#include "presentation/windows/GruppoOpzioni.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "synchronisation/windows/FrmTandemizeFilter.h"

namespace tandemize {

namespace {

constexpr const char* NomeForm = "FrmBackupChoice";
constexpr int LarghezzaFiltro = 260;

// What may run inside a run, the newest first.
constexpr std::string_view FinestreDelLavoro[] = {"FrmFileTransfer", "FrmScan", "FrmProgressBar"};

bool OperazioneInCorso() {
  for (const std::string_view nome : FinestreDelLavoro)
    if (FormCaricato(nome)) return true;
  return false;
}

// An engine that was loaded without its dialog, as by a timed run. Between two of its stages nothing else
// tells of it.
bool MotoreSenzaFinestra() {
  return FormCaricato(NomeForm) || FormCaricato("FrmTandemize");
}

void DiceOperazioneInCorso() {
  MsgBox(InLingua("Un'altra operazione è in corso. Attendere che sia terminata.",
                  "Another operation is in progress. Wait until it has ended."),
         StileInformazione);
}

// Stops the run by the question of the window that is at work; between two of them, by the dialog's own.
bool ChiediArrestoDelLavoro() {
  for (const std::string_view nome : FinestreDelLavoro)
    if (FormCaricato(nome)) return AnnullaFinestra(nome);
  return AnnullaFinestra(NomeForm);
}

// Nothing is copied without a log. If an earlier record could not be written, the run's banner shows whether
// it can be by now.
bool LogScrivibile() {
  if (ErroreLog() == platform::kNoError) return true;
  AzzeraErroreLog();
  ScriviLog(Messaggio(3), Intestazione);
  if (ErroreLog() == platform::kNoError) return true;
  MsgBox(InLingua("Il file di log non può essere scritto: ", "The log file cannot be written: ") +
             platform::systemErrorText(ErroreLog()),
         StileCritico);
  return false;
}

// An engine that has read the current profile; null, behind a box, if it cannot be read. No engine is loaded
// while the box is up.
std::shared_ptr<FrmBackupChoice> NuovoMotore() {
  auto motore = std::make_shared<FrmBackupChoice>();
  if (motore->ProfiloLetto()) return motore;
  motore.reset();
  // The log says by now in which line.
  ErroreFatale(
      0, NomeForm, 2, 1, "",
      InLingua("Il profilo non può essere letto fino in fondo: ", "The profile cannot be read to its end: ") +
          FileProfilo + "\r\r" + InLingua("Il log indica la riga.", "The log names the line."),
      0);
  return nullptr;
}

template <class Controllo>
Controllo* Nuovo(const QString& nome, const QString& didascalia, QWidget* parent) {
  auto* controllo = new Controllo(didascalia, parent);
  controllo->setObjectName(nome);
  return controllo;
}

}  // namespace

struct FrmBackupChoiceWindow::Controlli {
  explicit Controlli(QWidget* finestra);
  [[nodiscard]] Riquadro* Tipo(QWidget* finestra) const;
  [[nodiscard]] Riquadro* Modo(QWidget* finestra) const;
  [[nodiscard]] Riquadro* Opzioni(QWidget* finestra) const;

  QLabel* LblTipo;
  QComboBox* cmbTipoBackup;
  QCheckBox* ChkCreateFolder;
  QRadioButton* Opt[4];
  QCheckBox* ChkIgnorePath;
  QPushButton* CmdFiltro;
  QLabel* LblFiltro;
  QPushButton* cmd[2];
};

FrmBackupChoiceWindow::Controlli::Controlli(QWidget* finestra)
    : LblTipo(Nuovo<QLabel>("LblTipo", Testo(InLingua("&Tipo:", "&Type:")), finestra)),
      cmbTipoBackup(new QComboBox(finestra)),
      ChkCreateFolder(Nuovo<QCheckBox>("ChkCreateFolder", Didascalia(Messaggio(436)), finestra)),
      Opt{Nuovo<QRadioButton>(Membro("Opt", 0), Didascalia(Messaggio(115)), finestra),
          Nuovo<QRadioButton>(Membro("Opt", 1), Didascalia(Messaggio(116)), finestra),
          Nuovo<QRadioButton>(Membro("Opt", 2), Didascalia(Messaggio(117)), finestra),
          Nuovo<QRadioButton>(Membro("Opt", 3), Didascalia(Messaggio(118)), finestra)},
      ChkIgnorePath(Nuovo<QCheckBox>("ChkIgnorePath", Didascalia(Messaggio(450)), finestra)),
      CmdFiltro(Nuovo<QPushButton>("CmdFiltro", Testo(InLingua("&Filtro...", "&Filter...")), finestra)),
      LblFiltro(Nuovo<QLabel>("LblFiltro", QString(), finestra)),
      cmd{Nuovo<QPushButton>(Membro("cmd", 0), QString(), finestra),
          Nuovo<QPushButton>(Membro("cmd", 1), QString(), finestra)} {
  cmbTipoBackup->setObjectName("cmbTipoBackup");
  for (const std::string& tipo : {Messaggio(141), Messaggio(142), Messaggio(143)})
    cmbTipoBackup->addItem(Testo(tipo));
  LblTipo->setBuddy(cmbTipoBackup);
  LblFiltro->setTextFormat(Qt::PlainText);
  LblFiltro->setMinimumWidth(LarghezzaFiltro);
}

Riquadro* FrmBackupChoiceWindow::Controlli::Tipo(QWidget* finestra) const {
  auto* riquadro = new Riquadro(0, Testo(InLingua("Tipo di backup", "Backup type")), finestra);
  auto* riga = new QHBoxLayout;
  riga->addWidget(LblTipo);
  riga->addWidget(cmbTipoBackup, 1);
  riquadro->Contenuto()->addLayout(riga);
  riquadro->Contenuto()->addWidget(ChkCreateFolder);
  return riquadro;
}

Riquadro* FrmBackupChoiceWindow::Controlli::Modo(QWidget* finestra) const {
  auto* riquadro = new Riquadro(1, Testo(InLingua("Modalità di esecuzione", "Run mode")), finestra);
  for (QRadioButton* modo : Opt) riquadro->Contenuto()->addWidget(modo);
  return riquadro;
}

Riquadro* FrmBackupChoiceWindow::Controlli::Opzioni(QWidget* finestra) const {
  auto* riquadro = new Riquadro(2, Testo(InLingua("Opzioni", "Options")), finestra);
  riquadro->Contenuto()->addWidget(ChkIgnorePath);
  auto* riga = new QHBoxLayout;
  riga->setSpacing(8);
  riga->addWidget(CmdFiltro);
  riga->addWidget(LblFiltro, 1);
  riquadro->Contenuto()->addLayout(riga);
  return riquadro;
}

FrmBackupChoiceWindow::FrmBackupChoiceWindow(QWidget* proprietaria, std::shared_ptr<FrmBackupChoice> motore)
    : Form(NomeForm, proprietaria), motore_(std::move(motore)), profilo_(FileProfilo) {
  setWindowTitle(Testo(Messaggio(3)));
  controlli_ = std::make_unique<Controlli>(this);
  auto* esterno = new QVBoxLayout(this);
  esterno->setSpacing(10);
  for (Riquadro* riquadro : {controlli_->Tipo(this), controlli_->Modo(this), controlli_->Opzioni(this)})
    esterno->addWidget(riquadro);
  esterno->addStretch(1);
  esterno->addLayout(PreparaBottoni(controlli_->cmd[0], controlli_->cmd[1], nullptr));
  // Enter presses the button that has the focus.
  for (QPushButton* bottone : {controlli_->cmd[1], controlli_->CmdFiltro}) bottone->setAutoDefault(true);
  ApplicaStile(*this);
  controlli_->cmbTipoBackup->setCurrentIndex(static_cast<int>(motore_->cmbTipoBackup));
  controlli_->Opt[static_cast<int>(motore_->Opt)]->setChecked(true);
  PreparaOpzioni({std::begin(controlli_->Opt), std::end(controlli_->Opt)});
  controlli_->ChkIgnorePath->setChecked(motore_->ChkIgnorePath);
  AggiornaControlli();
  Collega();
}

FrmBackupChoiceWindow::~FrmBackupChoiceWindow() = default;

// The member is empty before the engine's end begins, which lets events run.
void FrmBackupChoiceWindow::LasciaMotore() {
  std::exchange(motore_, nullptr).reset();
}

void FrmBackupChoiceWindow::Collega() {
  Controlli& c = *controlli_;
  connect(c.cmbTipoBackup, &QComboBox::currentIndexChanged, this, [this] { AggiornaControlli(); });
  connect(c.CmdFiltro, &QPushButton::clicked, this, [this] { MostraFiltro(); });
  connect(c.cmd[0], &QPushButton::clicked, this, [this] { PremutoOk(); });
  connect(c.cmd[1], &QPushButton::clicked, this, [this] { close(); });
}

// A standard run makes no subfolder, whatever the box says.
void FrmBackupChoiceWindow::AggiornaControlli() {
  Controlli& c = *controlli_;
  c.ChkCreateFolder->setEnabled(c.cmbTipoBackup->currentIndex() != static_cast<int>(TipoBackup::Standard));
  const QString riassunto = Testo(RiassuntoFiltro(FilterBackup));
  c.LblFiltro->setText(c.LblFiltro->fontMetrics().elidedText(riassunto, Qt::ElideRight, LarghezzaFiltro));
  c.LblFiltro->setToolTip(riassunto);
}

// While the question is up, somebody may take the window away.
void FrmBackupChoiceWindow::setVisible(bool visibile) {
  if (visibile && !attivata_) {
    attivata_ = true;
    const QPointer<FrmBackupChoiceWindow> io = this;
    const std::shared_ptr<FrmBackupChoice> motore = motore_;
    impegnata_ = true;
    const bool rimane = motore->Attiva();
    if (io == nullptr) return;
    impegnata_ = false;
    if (!rimane) {
      close();
      return;
    }
  }
  Form::setVisible(visibile);
}

void FrmBackupChoiceWindow::showEvent(QShowEvent* evento) {
  Form::showEvent(evento);
  Riabilita();
}

void FrmBackupChoiceWindow::closeEvent(QCloseEvent* evento) {
  Form::closeEvent(evento);
  if (evento->isAccepted()) LasciaMotore();
}

bool FrmBackupChoiceWindow::QueryUnload() {
  if (impegnata_) return false;
  if (!occupata_) return true;
  if (ChiediArrestoDelLavoro()) daChiudere_ = true;
  return false;
}

// A run that ended while the program was hidden leaves the window as it is until it can be seen again.
void FrmBackupChoiceWindow::Riabilita() {
  if (occupata_ || ApplicazioneNascosta) return;
  setEnabled(true);
}

void FrmBackupChoiceWindow::MostraFiltro() {
  const QPointer<FrmBackupChoiceWindow> io = this;
  const QPointer<FrmTandemizeFilter> filtro = new FrmTandemizeFilter(this);
  CentraForm(*filtro);
  PresentaModale(*filtro);
  delete filtro;
  if (io != nullptr) AggiornaControlli();
}

// The profile may be another one by now than the one whose objects the engine holds: a run would then save
// its filter under the other's name.
bool FrmBackupChoiceWindow::PuoPartire() {
  if (OperazioneInCorso()) {
    DiceOperazioneInCorso();
    return false;
  }
  if (profilo_ == FileProfilo) return LogScrivibile();
  RileggiProfilo();
  return false;
}

// Events run both at the old engine's end and while a box is up.
void FrmBackupChoiceWindow::RileggiProfilo() {
  const QPointer<FrmBackupChoiceWindow> io = this;
  impegnata_ = true;
  // The old engine's end empties lists that the new one might have filled.
  LasciaMotore();
  if (io == nullptr) return;
  std::shared_ptr<FrmBackupChoice> motore = NuovoMotore();
  if (io == nullptr) return;
  impegnata_ = false;
  motore_ = std::move(motore);
  profilo_ = FileProfilo;
  if (motore_ == nullptr) {
    close();
    return;
  }
  controlli_->ChkIgnorePath->setChecked(motore_->ChkIgnorePath);
  AggiornaControlli();
  MsgBox(InLingua("Il profilo è cambiato. Questa finestra ora esegue il profilo ",
                  "The profile has changed. This window now runs the profile ") +
             "'" + FileProfilo + "'.",
         StileInformazione);
}

void FrmBackupChoiceWindow::PremutoOk() {
  const QPointer<FrmBackupChoiceWindow> io = this;
  if (Occupata() || !PuoPartire() || io == nullptr || motore_ == nullptr) return;
  const Controlli& c = *controlli_;
  motore_->cmbTipoBackup = static_cast<TipoBackup>(c.cmbTipoBackup->currentIndex());
  for (int modo = 0; modo < 4; ++modo)
    if (c.Opt[modo]->isChecked()) motore_->Opt = static_cast<ModoEsecuzione>(modo);
  motore_->ChkCreateFolder = c.ChkCreateFolder->isChecked();
  motore_->ChkIgnorePath = c.ChkIgnorePath->isChecked();
  Esegui();
}

// Events run meanwhile, in which somebody may take the window away.
void FrmBackupChoiceWindow::Esegui() {
  const QPointer<FrmBackupChoiceWindow> io = this;
  const std::shared_ptr<FrmBackupChoice> motore = motore_;
  occupata_ = true;
  daChiudere_ = false;
  setEnabled(false);
  motore->Falliti.clear();
  motore->NumeroFalliti = 0;
  motore->TastoOk_Annulla(0);
  if (!ApplicazioneNascosta && motore->NumeroFalliti > 0)
    schermo().MostraElencoErrori(RapportoFalliti(motore->Falliti, motore->NumeroFalliti),
                                 InLingua("File non copiati", "Files not copied"));
  if (io == nullptr) return;
  occupata_ = false;
  if (daChiudere_) {
    close();
    return;
  }
  Riabilita();
  if (!isEnabled() || !isVisible()) return;
  activateWindow();
  controlli_->cmd[0]->setFocus();
}

void MostraFrmBackupChoice() {
  if (QWidget* aperta = FormDiNome(NomeForm); aperta != nullptr) return Presenta(*aperta);
  if (OperazioneInCorso() || MotoreSenzaFinestra()) return DiceOperazioneInCorso();
  std::shared_ptr<FrmBackupChoice> motore = NuovoMotore();
  if (motore == nullptr) return;
  auto* finestra = new FrmBackupChoiceWindow(FinestraPrincipale(), std::move(motore));
  finestra->setAttribute(Qt::WA_DeleteOnClose);
  CentraForm(*finestra);
  Presenta(*finestra);
}

bool FrmBackupChoiceOccupata() {
  const auto* finestra = dynamic_cast<const FrmBackupChoiceWindow*>(FormDiNome(NomeForm));
  return finestra != nullptr && finestra->Occupata();
}

void ScaricaFrmBackupChoiceInattiva() {
  const QPointer<FrmBackupChoiceWindow> finestra = dynamic_cast<FrmBackupChoiceWindow*>(FormDiNome(NomeForm));
  if (finestra == nullptr || finestra->Occupata()) return;
  ScaricaForm(NomeForm);
  if (finestra != nullptr) finestra->LasciaMotore();
}

}  // namespace tandemize

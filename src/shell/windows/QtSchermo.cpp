#include "shell/windows/QtSchermo.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <cstdlib>
#include <vector>

#include "backup/windows/FrmFileTransferWindow.h"
#include "errors/ModuloGestioneErrori.h"
#include "errors/windows/FrmBackupErrorLog.h"
#include "errors/windows/FrmLogView.h"
#include "platform/machine.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/FrmProgressBarWindow.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "presentation/windows/frmTrayMessage.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"
#include "synchronisation/windows/FrmScanWindow.h"

namespace tandemize {

namespace {

struct Bottone {
  Risposta risposta;
  const char *italiano, *inglese;
  QMessageBox::ButtonRole ruolo;
};

constexpr Bottone BottoneOk{Risposta::Ok, "&OK", "&OK", QMessageBox::AcceptRole};
constexpr Bottone BottoneSì{Risposta::Sì, "&Sì", "&Yes", QMessageBox::YesRole};
constexpr Bottone BottoneNo{Risposta::No, "&No", "&No", QMessageBox::NoRole};
constexpr Bottone BottoneAnnulla{Risposta::Annulla, "&Annulla", "&Cancel", QMessageBox::RejectRole};

std::vector<Bottone> BottoniDelloStile(int stile) {
  switch (stile) {
    case StileSìNo:
    case StileSìNoInformazione:
      return {BottoneSì, BottoneNo};
    case StileSìNoAnnulla:
      return {BottoneSì, BottoneNo, BottoneAnnulla};
    default:
      return {BottoneOk};
  }
}

QMessageBox::Icon IconaDelloStile(int stile) {
  switch (stile) {
    case StileCritico:
      return QMessageBox::Critical;
    case StileSìNo:
    case StileSìNoAnnulla:
      return QMessageBox::Question;
    case StileInformazione:
    case StileSìNoInformazione:
      return QMessageBox::Information;
    default:
      return QMessageBox::NoIcon;
  }
}

// The window that a box belongs to: the one that the user looks at.
QWidget* Proprietaria() {
  if (QWidget* modale = QApplication::activeModalWidget(); modale != nullptr) return modale;
  QWidget* principale = FinestraPrincipale();
  return principale != nullptr && principale->isVisible() ? principale : nullptr;
}

}  // namespace

QtSchermo::QtSchermo() {
  UsaSchermo(this);
}

QtSchermo::~QtSchermo() {
  UsaSchermo(nullptr);
  delete balloon_;
}

Risposta QtSchermo::MsgBox(std::string_view testo, int stile, std::string_view titolo) {
  const std::vector<Bottone> bottoni = BottoniDelloStile(stile);
  // The Escape key gives the last button's answer. A program that ends says no, to one thing at a time: the
  // third button of a question is about all that follows.
  if (inChiusura_) return stile == StileSìNoAnnulla ? Risposta::No : bottoni.back().risposta;
  // The window that it belongs to may be destroyed while it is up, and takes it along.
  const QPointer<QMessageBox> aperto = new QMessageBox(Proprietaria());
  QMessageBox& box = *aperto;
  box.setObjectName(QStringLiteral("MsgBox"));
  box.setProperty("style", stile);
  box.setWindowTitle(Testo(titolo));
  box.setIcon(IconaDelloStile(stile));
  // Paths may hold what would otherwise be taken for mark-up.
  box.setTextFormat(Qt::PlainText);
  box.setText(Testo(testo).replace(u'\r', u'\n'));
  std::vector<QPushButton*> fatti;
  fatti.reserve(bottoni.size());
  for (const Bottone& bottone : bottoni)
    fatti.push_back(box.addButton(Testo(InLingua(bottone.italiano, bottone.inglese)), bottone.ruolo));
  for (QPushButton* bottone : fatti) bottone->setProperty("tag", QStringLiteral("D"));
  ApplicaStile(box);
  box.setDefaultButton(fatti.front());
  box.setEscapeButton(fatti.back());
  box.exec();
  Risposta risposta = bottoni.back().risposta;
  if (aperto == nullptr) return risposta;
  for (std::size_t i = 0; i < fatti.size(); ++i)
    if (box.clickedButton() == fatti[i]) risposta = bottoni[i].risposta;
  delete aperto.data();
  return risposta;
}

void QtSchermo::DoEvents() {
  QCoreApplication::processEvents();
  if (!platform::stopRequested() || arrestoDetto_) return;
  arrestoDetto_ = true;
  // As long as nothing has been stopped, what begins next is.
  arrestoDetto_ = AnnullaOperazioneInCorso();
}

void QtSchermo::ApriBalloon(const Avviso& avviso) {
  if (inChiusura_) return;
  ChiudiBalloon();
  auto* balloon = new frmTrayMessage;
  balloon_ = balloon;
  balloon->SetBalloon(avviso);
  balloon->show();
}

void QtSchermo::ChiudiBalloon() {
  if (auto* balloon = static_cast<frmTrayMessage*>(balloon_.data()); balloon != nullptr)
    balloon->HideBalloon();
  balloon_ = nullptr;
}

bool QtSchermo::BalloonAperto() const {
  return balloon_ != nullptr && !balloon_->isHidden();
}

void QtSchermo::MousePointer(Puntatore puntatore) {
  if (puntatoreCambiato_) QApplication::restoreOverrideCursor();
  puntatoreCambiato_ = puntatore != Puntatore::Normale;
  if (puntatoreCambiato_)
    QApplication::setOverrideCursor(puntatore == Puntatore::Clessidra ? Qt::WaitCursor : Qt::BusyCursor);
}

namespace {

// The scan of a backup stays where it comes up.
bool DaCentrare(const StatoScansione& stato) {
  return !stato.backup;
}

template <class Stato>
bool DaCentrare(const Stato&) {
  return true;
}

}  // namespace

template <class Finestra, class Stato>
void QtSchermo::MostraFinestra(std::unique_ptr<Finestra>& finestra, const Stato& stato) {
  if (!stato.visibile || inChiusura_) return finestra.reset();
  const bool nuova = finestra == nullptr;
  if (nuova) finestra = std::make_unique<Finestra>(FinestraPrincipale());
  finestra->Mostra(stato);
  if (!nuova || finestra == nullptr) return;
  if (!ApplicazioneNascosta && DaCentrare(stato)) CentraForm(*finestra);
  Presenta(*finestra);
}

void QtSchermo::Mostra(const StatoScansione& stato) {
  MostraFinestra(scansione_, stato);
}

void QtSchermo::Mostra(const StatoAvanzamento& stato) {
  MostraFinestra(avanzamento_, stato);
}

void QtSchermo::Mostra(const StatoTrasferimento& stato) {
  MostraFinestra(trasferimento_, stato);
}

void QtSchermo::MostraElencoErrori(std::string_view testo, std::string_view titolo) {
  if (inChiusura_) return;
  if (!ApplicazioneNascosta) {
    const QPointer<FrmBackupErrorLog> modale = new FrmBackupErrorLog(Proprietaria());
    modale->Init(testo, titolo);
    PresentaModale(*modale);
    delete modale.data();  // null if it went with the window that it belongs to
    return;
  }
  auto* finestra = new FrmBackupErrorLog(FinestraPrincipale());
  finestra->setAttribute(Qt::WA_DeleteOnClose);
  finestra->Init(testo, titolo);
  Presenta(*finestra);
}

bool QtSchermo::LogCaricato() const {
  return FormDiNome("FrmLogView") != nullptr;
}

void QtSchermo::MostraLog() {
  if (!inChiusura_) MostraFrmLogView();
}

void QtSchermo::RicaricaLog() {
  ScaricaForm("FrmLogView");
  MostraLog();
}

void QtSchermo::ApriDiagramma() {
  if (Diagramma) Diagramma();
}

void QtSchermo::FineProgramma(int stato) {
  std::exit(stato);
}

}  // namespace tandemize

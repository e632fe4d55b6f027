#include "mail/windows/FrmSendEMailWindow.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr QSize DimensioneIniziale{460, 300};
constexpr int AltezzaBarra = 14;

// The mail may be sent from within another modal window.
QWidget* Proprietaria() {
  QWidget* modale = QApplication::activeModalWidget();
  return modale != nullptr ? modale : FinestraPrincipale();
}

void MostraModale() {
  if (ApplicazioneNascosta) {
    FrmSendEMail form;
    return form.Activate();
  }
  // A window that the user closes is hidden only: the modal wait ends when the sending has.
  FrmSendEMailWindow finestra(Proprietaria());
  CentraForm(finestra);
  PresentaModale(finestra);
}

}  // namespace

FrmSendEMailWindow::FrmSendEMailWindow(QWidget* proprietaria)
    : Form("FrmSendEMail", proprietaria),
      ridisegno_(nullptr, [this] { Disegna(); }),
      lblStatus_(new QLabel(this)),
      TxtLog_(new QPlainTextEdit(this)),
      ProgBar_(new QProgressBar(this)),
      CmdInvia_(new QPushButton(Testo(InLingua("&Invia", "&Send")), this)),
      CmdAnnulla_(new QPushButton(this)) {
  setWindowTitle(Testo(Messaggio(331)));
  lblStatus_->setObjectName(QStringLiteral("lblStatus"));
  // The server's own words may look like mark-up.
  lblStatus_->setTextFormat(Qt::PlainText);
  lblStatus_->setWordWrap(true);
  TxtLog_->setObjectName(QStringLiteral("TxtLog"));
  TxtLog_->setReadOnly(true);
  TxtLog_->setTabChangesFocus(true);
  ProgBar_->setObjectName(QStringLiteral("ProgBar"));
  ProgBar_->setRange(0, 100);
  ProgBar_->setTextVisible(false);
  ProgBar_->setFixedHeight(AltezzaBarra);
  ProgBar_->setStyleSheet(QStringLiteral("QProgressBar { background: %1; border: 1px solid %2; }"
                                         "QProgressBar::chunk { background: %3; }")
                              .arg(ColoreSfondoChiaro.name(), ColoreGradiente1.name(), ColoreArancio.name()));
  ProgBar_->setAccessibleName(Testo(InLingua("Avanzamento dell'invio", "Progress of the sending")));
  CmdInvia_->setObjectName(QStringLiteral("CmdInvia"));
  CmdAnnulla_->setObjectName(QStringLiteral("CmdAnnulla"));
  connect(CmdInvia_, &QPushButton::clicked, this, [this] { form_.CmdInvia_Click(); });
  connect(CmdAnnulla_, &QPushButton::clicked, this, [this] { form_.CmdAnnulla_Click(); });
  avvio_.setSingleShot(true);
  connect(&avvio_, &QTimer::timeout, this, [this] { form_.Activate(); });
  auto* lblLog = new QLabel(Testo(InLingua("&Risposte del server:", "&Replies of the server:")), this);
  lblLog->setBuddy(TxtLog_);
  auto* esterno = new QVBoxLayout(this);
  esterno->addWidget(lblStatus_);
  esterno->addWidget(ProgBar_);
  esterno->addWidget(lblLog);
  esterno->addWidget(TxtLog_);
  esterno->addLayout(PreparaBottoni(CmdInvia_, CmdAnnulla_, nullptr));
  ApplicaStile(*this);
  resize(DimensioneIniziale);
  Mostra(form_.Stato());
}

bool FrmSendEMailWindow::QueryUnload() {
  return scaricata_ || form_.QueryUnload();
}

void FrmSendEMailWindow::showEvent(QShowEvent* evento) {
  Form::showEvent(evento);
  // Once the modal wait has begun.
  avvio_.start();
}

void FrmSendEMailWindow::Mostra(const StatoPosta& stato) {
  stato_ = stato;
  CmdInvia_->setEnabled(stato.CmdInvia);
  CmdAnnulla_->setEnabled(stato.CmdAnnulla);
  ridisegno_.Chiedi();
}

void FrmSendEMailWindow::Chiudi() {
  scaricata_ = true;
  close();
}

void FrmSendEMailWindow::Disegna() {
  lblStatus_->setText(Testo(stato_.lblStatus));
  ProgBar_->setValue(stato_.ProgBar);
  if (disegnate_ == stato_.TxtLog) return;
  disegnate_ = stato_.TxtLog;
  TxtLog_->setPlainText(Testo(disegnate_));
  TxtLog_->moveCursor(QTextCursor::End);
}

void InstallaFinestraPosta() {
  UsaFinestraPosta(MostraModale);
}

}  // namespace tandemize

#include "presentation/windows/FrmTipMessageWindow.h"

#include <QCheckBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr int LarghezzaTesto = 360;

QLabel* Etichetta(const char* nome, const std::string& testo) {
  auto* etichetta = new QLabel(Testo(testo));
  etichetta->setObjectName(QLatin1String(nome));
  etichetta->setTextFormat(Qt::PlainText);
  etichetta->setWordWrap(true);
  etichetta->setMinimumWidth(LarghezzaTesto);
  return etichetta;
}

}  // namespace

FrmTipMessageWindow::FrmTipMessageWindow(const FrmTipMessage& scheda, QWidget* proprietaria)
    : Form("FrmTipMessage", proprietaria), Chk_(new QCheckBox(Didascalia(scheda.ChkCaption), this)) {
  setWindowTitle(Testo(scheda.Caption));
  QLabel* LblTitolo = Etichetta("LblTitolo", scheda.LblTitolo);
  QFont grassetto = LblTitolo->font();
  grassetto.setBold(true);
  grassetto.setPointSize(DimensioneCarattere + 2);
  LblTitolo->setFont(grassetto);
  QLabel* LblTip = Etichetta("LblTip", scheda.LblTip);
  LblTip->setAlignment(Qt::AlignTop | Qt::AlignLeft);
  Chk_->setObjectName(QStringLiteral("Chk"));
  Chk_->setChecked(scheda.Chk);
  auto* cmdclose = new QPushButton(Testo(scheda.CmdCloseCaption), this);
  cmdclose->setObjectName(QStringLiteral("cmdclose"));
  connect(cmdclose, &QPushButton::clicked, this, [this] { close(); });

  auto* riquadro = new Riquadro(0, {}, this);
  riquadro->Contenuto()->addWidget(LblTitolo);
  riquadro->Contenuto()->addSpacing(4);
  riquadro->Contenuto()->addWidget(LblTip, 1);
  auto* disposizione = new QVBoxLayout(this);
  disposizione->addWidget(riquadro, 1);
  QBoxLayout* riga = PreparaBottoni(cmdclose, nullptr, nullptr);
  riga->insertWidget(0, Chk_);
  disposizione->addLayout(riga);
  setTabOrder(Chk_, cmdclose);
  cmdclose->setFocus();
  ApplicaStile(*this);
}

bool FrmTipMessageWindow::Chk() const {
  return Chk_->isChecked();
}

void MostraFrmTipMessage(FrmTipMessage& scheda) {
  // The program may end, and the owner take its windows along, while the card is up.
  const QPointer<FrmTipMessageWindow> finestra = new FrmTipMessageWindow(scheda, FinestraPrincipale());
  PresentaModale(*finestra);
  if (finestra == nullptr) return;
  scheda.Chk = finestra->Chk();
  delete finestra;
}

}  // namespace tandemize

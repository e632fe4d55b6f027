#include "errors/windows/frmLogFind.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>
#include <string>
#include <vector>

#include "errors/RicercaLog.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr const char* Nome = "frmLogFind";
constexpr int LarghezzaCampo = 320;

std::vector<std::string> Righe(const QListWidget& lista) {
  std::vector<std::string> righe;
  righe.reserve(static_cast<std::size_t>(lista.count()));
  for (int i = 0; i < lista.count(); ++i) righe.push_back(Testo(lista.item(i)->text()));
  return righe;
}

}  // namespace

frmLogFind::frmLogFind(QWidget* proprietaria)
    : Form(Nome, proprietaria), TxtFind_(new QLineEdit(this)), ChkExact_(new QCheckBox(this)) {
  setWindowTitle(Testo(InLingua("Cerca nel log", "Find in the log")));
  auto* lblFind = new QLabel(Testo(Messaggio(270)), this);
  lblFind->setObjectName(Membro("lbl", 0));
  lblFind->setBuddy(TxtFind_);
  TxtFind_->setObjectName(QStringLiteral("TxtFind"));
  TxtFind_->setMinimumWidth(LarghezzaCampo);
  ChkExact_->setObjectName(QStringLiteral("ChkExact"));
  ChkExact_->setText(QStringLiteral("Exact Match"));
  auto* lblExact = new QLabel(Testo(Messaggio(271)), this);
  lblExact->setObjectName(Membro("lbl", 1));
  ChkExact_->setAccessibleDescription(lblExact->text());

  auto* ok = new QPushButton(this);
  ok->setObjectName(Membro("Cmd", 0));
  auto* chiudi = new QPushButton(this);
  chiudi->setObjectName(Membro("Cmd", 1));
  connect(ok, &QPushButton::clicked, this, [this] { Cerca(); });
  connect(chiudi, &QPushButton::clicked, this, [this] { close(); });

  auto* riquadro = new Riquadro(0, {}, this);
  riquadro->Contenuto()->addWidget(lblFind);
  riquadro->Contenuto()->addWidget(TxtFind_);
  riquadro->Contenuto()->addSpacing(4);
  riquadro->Contenuto()->addWidget(ChkExact_);
  // What the box means stands under its caption.
  auto* nota = new QHBoxLayout;
  nota->addSpacing(style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                   style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
  nota->addWidget(lblExact);
  riquadro->Contenuto()->addLayout(nota);
  auto* esterno = new QVBoxLayout(this);
  esterno->addWidget(riquadro);
  esterno->addLayout(PreparaBottoni(ok, chiudi, nullptr));
  ApplicaStile(*this);
}

void frmLogFind::Init(QListWidget* Lista) {
  Lista_ = Lista;
  TxtFind_->setFocus();
  TxtFind_->selectAll();
}

// Each search starts at the top, and takes the selection from every line that it looks at; behind the one
// that it finds the selection stays.
void frmLogFind::Cerca() {
  if (Lista_ == nullptr) return;
  const auto trovata = TrovaNelLog(Righe(*Lista_), Testo(TxtFind_->text()), ChkExact_->isChecked());
  QItemSelectionModel& selezione = *Lista_->selectionModel();
  if (!trovata) {
    selezione.clearSelection();
    MsgBox("No Match Found", StileSemplice);
    return;
  }
  const auto riga = static_cast<int>(*trovata);
  const QModelIndex prima = Lista_->model()->index(0, 0);
  const QModelIndex scelta = Lista_->model()->index(riga, 0);
  selezione.select({prima, scelta}, QItemSelectionModel::Deselect);
  selezione.setCurrentIndex(scelta, QItemSelectionModel::Select);
  Lista_->scrollTo(scelta);
}

void MostrafrmLogFind(QListWidget& Lista) {
  auto* finestra = static_cast<frmLogFind*>(FormDiNome(Nome));
  const bool nuova = finestra == nullptr;
  if (nuova) {
    finestra = new frmLogFind(&Lista);
    finestra->setAttribute(Qt::WA_DeleteOnClose);
    CentraForm(*finestra);
  }
  finestra->Init(&Lista);
  Presenta(*finestra);
}

}  // namespace tandemize

#include "errors/windows/FrmBackupErrorLog.h"

#include <QAction>
#include <QPushButton>
#include <QVBoxLayout>

#include "errors/RigheErrore.h"
#include "errors/windows/ListaRighe.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"

namespace tandemize {

namespace {

constexpr QSize DimensioneIniziale{620, 320};
constexpr int MargineDestro = 200 / PixelPerTwip;
// Of the window's height the list leaves as much as in the log window. The button lies there.
constexpr int SottoLaLista = 500 / PixelPerTwip;
constexpr int Stacco = 3, MargineInAlto = SottoLaLista - AltezzaBottone - 2 * Stacco;

}  // namespace

FrmBackupErrorLog::FrmBackupErrorLog(QWidget* proprietaria)
    : Form("FrmBackupErrorLog", proprietaria), ListLog_(new ListaRighe(this)) {
  setWindowFlag(Qt::WindowMinMaxButtonsHint);
  setSizeGripEnabled(true);
  ListLog_->ImpostaAspetto();
  auto* copia = new QAction(this);
  copia->setShortcut(QKeySequence::Copy);
  connect(copia, &QAction::triggered, this, [this] { ListLog_->CopiaSelezione(); });
  addAction(copia);
  auto* chiudi = new QPushButton(this);
  chiudi->setObjectName(QStringLiteral("cmdclose"));
  connect(chiudi, &QPushButton::clicked, this, [this] { close(); });
  auto* esterno = new QVBoxLayout(this);
  esterno->setContentsMargins(MargineDestro, MargineInAlto, MargineDestro, Stacco);
  esterno->setSpacing(Stacco);
  esterno->addWidget(ListLog_);
  esterno->addLayout(PreparaBottoni(chiudi, nullptr, nullptr));
  ApplicaStile(*this);
  chiudi->setFixedHeight(AltezzaBottone);
  resize(DimensioneIniziale);
}

void FrmBackupErrorLog::Init(std::string_view Testo, std::string_view Titolo) {
  setWindowTitle(tandemize::Testo(Titolo));
  ListLog_->setAccessibleName(windowTitle());
  QStringList righe;
  for (const std::string& riga : RigheErrore(Testo)) righe.append(tandemize::Testo(riga));
  ListLog_->Riempi(righe);
}

}  // namespace tandemize

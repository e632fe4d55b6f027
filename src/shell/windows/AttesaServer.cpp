#include "shell/windows/AttesaServer.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "errors/ModuloGestioneErrori.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

constexpr int MessaggioConnessione = 343;

}  // namespace

AttesaServer::AttesaServer(const std::string& descrizione, QWidget* proprietaria)
    : Form("FrmAttesaServer", proprietaria) {
  setWindowTitle(Testo(TitoloApplicazione));
  setModal(true);
  auto* testo = new QLabel(Testo(Messaggio(MessaggioConnessione) + " '" + descrizione + "'..."), this);
  testo->setObjectName(QStringLiteral("lblStatus"));
  testo->setTextFormat(Qt::PlainText);
  auto* annulla = new QPushButton(this);
  annulla->setObjectName(QStringLiteral("cmdAnnulla"));
  connect(annulla, &QPushButton::clicked, this, &AttesaServer::close);
  auto* colonna = new QVBoxLayout(this);
  colonna->setContentsMargins(16, 14, 16, 12);
  colonna->setSpacing(14);
  colonna->addWidget(testo);
  colonna->addLayout(PreparaBottoni(nullptr, annulla, nullptr));
  ApplicaStile(*this);
}

bool AttesaServer::QueryUnload() {
  AnnullaFinestra("FrmGlobalSetting");
  return false;
}

}  // namespace tandemize

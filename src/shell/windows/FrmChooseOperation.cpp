#include "shell/windows/FrmChooseOperation.h"

#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"

namespace tandemize {

namespace {

// What an option says if the language table has no text for it.
constexpr const char* SincronizzazionePredefinita =
    "Sincronizzazione (confronta due o più percorsi e li rende identici)";
constexpr const char* BackupPredefinito =
    "Backup (copia il contenuto di uno o più percorsi in altri percorsi)";

QRadioButton* Opzione(int membro, const std::string& testo, const char* predefinito, Riquadro& riquadro) {
  auto* opzione =
      new QRadioButton(Didascalia(testo.empty() ? std::string_view(predefinito) : testo), &riquadro);
  opzione->setObjectName(Membro("OptOperation", membro));
  riquadro.Contenuto()->addWidget(opzione);
  return opzione;
}

}  // namespace

FrmChooseOperation::FrmChooseOperation(QWidget* proprietaria) : Form("FrmChooseOperation", proprietaria) {
  setWindowTitle(Testo(Messaggio(372)));
  auto* riquadro = new Riquadro(0, Testo(Messaggio(373)), this);
  sincronizzazione_ = Opzione(0, Messaggio(370), SincronizzazionePredefinita, *riquadro);
  Opzione(1, Messaggio(371), BackupPredefinito, *riquadro);
  sincronizzazione_->setChecked(true);

  auto* conferma = new QPushButton(this);
  auto* annulla = new QPushButton(this);
  int membro = 0;
  for (QPushButton* bottone : {conferma, annulla}) {
    bottone->setObjectName(Membro("Cmd", membro));
    connect(bottone, &QPushButton::clicked, this, [this, membro] { Cmd_Click(membro); });
    ++membro;
  }
  auto* colonna = new QVBoxLayout(this);
  colonna->setSpacing(12);
  colonna->addWidget(riquadro, 1);
  colonna->addLayout(PreparaBottoni(conferma, annulla, nullptr));
  ApplicaStile(*this);
  sincronizzazione_->setFocus();
}

void FrmChooseOperation::Cmd_Click(int membro) {
  if (membro == 0) scelta_ = sincronizzazione_->isChecked() ? Scelta::Sincronizzazione : Scelta::Diagramma;
  close();
}

}  // namespace tandemize

// The tab of the FTP servers.
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"
#include "shell/windows/LegameGlobale.h"
#include "shell/windows/SchedeGlobali.h"
#include "shell/windows/UscitaCampi.h"

namespace tandemize {

using C = ControlliGlobalSetting;

namespace {

void MostraElenco(QListWidget& elenco, const FrmGlobalSetting& modello) {
  const int righe = static_cast<int>(modello.ListFtp.size());
  while (elenco.count() > righe) delete elenco.takeItem(elenco.count() - 1);
  while (elenco.count() < righe) elenco.addItem(QString());
  for (int riga = 0; riga < righe; ++riga)
    elenco.item(riga)->setText(Testo(modello.ListFtp[static_cast<std::size_t>(riga)]));
  elenco.setCurrentRow(modello.ListFtpSelezione);
  if (modello.ListFtpSelezione < 0) elenco.clearSelection();
}

QListWidget* Elenco(LegameGlobale& legame) {
  auto* elenco = new QListWidget;
  elenco->setObjectName(QStringLiteral("ListFtp"));
  elenco->setAccessibleName(Testo(InLingua("Server FTP", "FTP servers")));
  elenco->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  elenco->setMinimumSize(120, 120);
  QObject::connect(elenco, &QListWidget::itemSelectionChanged, &legame, [&legame, elenco] {
    if (legame.InMostra()) return;
    const int riga = elenco->selectedItems().isEmpty() ? -1 : elenco->row(elenco->selectedItems().first());
    legame.Esegui([&] { legame.Modello().SelezionaServerFtp(riga); });
  });
  legame.QuandoMostra([&legame, elenco] { MostraElenco(*elenco, legame.Modello()); });
  return elenco;
}

// Description, server, user and password: each change is written to the selected server at once.
QGridLayout* Campi(LegameGlobale& legame, UscitaCampi& uscita) {
  FrmGlobalSetting& modello = legame.Modello();
  const auto controlla = [&modello] {
    bool esito = true;
    modello.ControllaInserimentoDatiFtp(esito);
    return esito;
  };
  const auto scrivi = [&modello] { modello.ScriviCampiFtp(); };
  QLineEdit* descrizione = legame.Casella("txtFtpDescription", &C::txtFtpDescription, [scrivi, controlla] {
    scrivi();
    static_cast<void>(controlla());
  });
  uscita.Sorveglia(descrizione, controlla);
  QLineEdit* server = legame.Casella("txtFtpServer", &C::txtFtpServer, scrivi);
  server->setPlaceholderText(Testo(InLingua("nome oppure nome:porta", "name or name:port")));
  QLineEdit* utente = legame.Casella("txtFtpUser", &C::txtFtpUser, scrivi);
  QLineEdit* password = legame.Casella("txtFtpPassword", &C::txtFtpPassword, scrivi);
  password->setEchoMode(QLineEdit::Password);
  QCheckBox* passivo =
      legame.Spunta("ChkFtpPassive", InLingua("Modo passivo", "Passive mode"), &C::ChkFtpPassive, scrivi);
  legame.QuandoMostra([passivo, descrizione] { passivo->setEnabled(descrizione->isEnabled()); });

  auto* griglia = new QGridLayout;
  griglia->addWidget(legame.Etichetta(InLingua("Descrizione:", "Description:"), descrizione), 0, 0);
  griglia->addWidget(descrizione, 0, 1);
  griglia->addWidget(legame.Etichetta("Server:", server), 1, 0);
  griglia->addWidget(server, 1, 1);
  griglia->addWidget(legame.Etichetta(InLingua("Utente:", "User:"), utente), 2, 0);
  griglia->addWidget(utente, 2, 1);
  griglia->addWidget(legame.Etichetta("Password:", password), 3, 0);
  griglia->addWidget(password, 3, 1);
  griglia->addWidget(passivo, 4, 1, Qt::AlignLeft);
  return griglia;
}

QBoxLayout* Bottoni(LegameGlobale& legame, QListWidget* elenco, const std::function<void()>& prova) {
  FrmGlobalSetting& modello = legame.Modello();
  std::vector<QWidget*> bottoni;
  for (const std::string& didascalia :
       {InLingua("Nuovo", "New"), Messaggio(146), InLingua("Prova", "Test")}) {
    auto* bottone = new QPushButton(Didascalia(didascalia));
    bottone->setObjectName(Membro("cmdFtp", static_cast<int>(bottoni.size())));
    bottone->setAutoDefault(false);
    bottoni.push_back(bottone);
  }
  const auto premuto = [&](std::size_t membro, const std::function<void()>& azione) {
    QObject::connect(static_cast<QPushButton*>(bottoni[membro]), &QPushButton::clicked, &legame, azione);
  };
  premuto(0, [&legame, elenco] {
    legame.Esegui([&legame] { legame.Modello().NuovoServerFtp(); });
    auto* descrizione = elenco->window()->findChild<QLineEdit*>(QStringLiteral("txtFtpDescription"));
    descrizione->setFocus(Qt::OtherFocusReason);
    descrizione->selectAll();
  });
  premuto(1, [&legame] { legame.Esegui([&legame] { legame.Modello().EliminaServerSelezionato(); }); });
  premuto(2, prova);
  legame.QuandoMostra([&modello, elimina = bottoni[1], provare = bottoni[2]] {
    for (QWidget* bottone : {elimina, provare}) bottone->setEnabled(modello.ListFtpSelezione >= 0);
  });
  return RigaDi(bottoni);
}

}  // namespace

QWidget* SchedaFtp(LegameGlobale& legame, UscitaCampi& uscita, const std::function<void()>& prova) {
  const PaginaGlobale pagina;
  auto* riga = new QHBoxLayout;
  riga->setSpacing(8);
  pagina.colonna->addLayout(riga);
  Riquadro* server = AggiungiRiquadro(*riga, 8, InLingua("Server FTP", "FTP servers"));
  QListWidget* elenco = Elenco(legame);
  server->Contenuto()->addWidget(elenco);
  server->Contenuto()->addLayout(Bottoni(legame, elenco, prova));
  Riquadro* dati =
      AggiungiRiquadro(*riga, 9, InLingua("Dati del server scelto", "Data of the selected server"));
  dati->Contenuto()->addLayout(Campi(legame, uscita));
  dati->Contenuto()->addStretch(1);
  riga->setStretch(1, 1);
  return pagina.pagina;
}

}  // namespace tandemize

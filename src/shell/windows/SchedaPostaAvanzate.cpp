// The tab of the mail on errors, and the tab of buffers and shutdown.
#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"
#include "shell/windows/LegameGlobale.h"
#include "shell/windows/SchedeGlobali.h"

namespace tandemize {

using C = ControlliGlobalSetting;

QWidget* SchedaPosta(LegameGlobale& legame, const std::function<void()>& prova) {
  const PaginaGlobale pagina;
  Riquadro* azione = AggiungiRiquadro(*pagina.colonna, 6, InLingua("Avviso per e-mail", "Notice by e-mail"));
  AggiungiOpzioni(
      *azione, legame.Opzioni("OptEmail", &C::OptEmail,
                              {InLingua("Non inviare e-mail", "Do not send e-mails"),
                               InLingua("Invia un'e-mail in caso di errori", "Send an e-mail on errors")}));
  Riquadro* dati = AggiungiRiquadro(*pagina.colonna, 7, InLingua("Dati per l'invio", "Data for sending"));
  QLineEdit* server = legame.Casella("txtEmailSmtp", &C::txtEmailSmtp);
  server->setPlaceholderText(Testo(InLingua("nome oppure nome:porta", "name or name:port")));
  QLineEdit* indirizzo = legame.Casella("txtEmail", &C::txtEmail);
  auto* griglia = new QGridLayout;
  griglia->addWidget(legame.Etichetta(InLingua("Server di posta (SMTP):", "Mail server (SMTP):"), server), 0,
                     0);
  griglia->addWidget(server, 0, 1);
  griglia->addWidget(legame.Etichetta(InLingua("Indirizzo e-mail:", "E-mail address:"), indirizzo), 1, 0);
  griglia->addWidget(indirizzo, 1, 1);
  dati->Contenuto()->addLayout(griglia);
  auto* bottone = new QPushButton(Testo(InLingua("Invia e-mail di prova", "Send a trial e-mail")));
  bottone->setObjectName(QStringLiteral("cmdTest"));
  bottone->setAutoDefault(false);
  QObject::connect(bottone, &QPushButton::clicked, &legame, prova);
  dati->Contenuto()->addLayout(RigaDi({bottone}));
  dati->Contenuto()->addWidget(Nota(InLingua("La prova salva prima le impostazioni di tutte le schede.",
                                             "The trial first saves the settings of all tabs.")));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

namespace {

QGridLayout* CampiBuffer(LegameGlobale& legame) {
  struct Buffer {
    const char* nome;
    CasellaTesto C::*casella;
    std::string didascalia;
  };
  const Buffer buffer[] = {{"txtBufferLocal", &C::txtBufferLocal, InLingua("Copia locale:", "Local copy:")},
                           {"txtBufferLan", &C::txtBufferLan, InLingua("Copia in rete:", "Network copy:")},
                           {"txtBufferFtp", &C::txtBufferFtp, "FTP:"}};
  auto* griglia = new QGridLayout;
  griglia->setColumnStretch(3, 1);
  for (const auto& [nome, casella, didascalia] : buffer) {
    QLineEdit* campo = legame.Casella(nome, casella);
    LarghezzaInCifre(*campo, 5);
    const int riga = griglia->rowCount();
    griglia->addWidget(legame.Etichetta(didascalia, campo), riga, 0);
    griglia->addWidget(campo, riga, 1);
    auto* unità = new QLabel(QStringLiteral("KB"));
    legame.QuandoMostra([unità, campo] { unità->setEnabled(campo->isEnabled()); });
    griglia->addWidget(unità, riga, 2);
  }
  return griglia;
}

}  // namespace

QWidget* SchedaAvanzate(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* buffer = AggiungiRiquadro(*pagina.colonna, 15, InLingua("Buffer di copia", "Copy buffers"));
  AggiungiOpzioni(*buffer, legame.Opzioni("OptAdvBuffer", &C::OptAdvBuffer,
                                          {"Auto (Raccomandated)", InLingua("Manuale", "Manual")},
                                          [&legame](int membro) { legame.Modello().ScegliBuffer(membro); }));
  buffer->Contenuto()->addLayout(CampiBuffer(legame));
  Riquadro* spegnimento = AggiungiRiquadro(*pagina.colonna, 16, InLingua("Spegnimento", "Shutdown"));
  AggiungiASinistra(*spegnimento, legame.Spunta("ChkShutdownAll", Messaggio(438), &C::ChkShutdownAll));
  AggiungiASinistra(*spegnimento, legame.Spunta("ChkShutdownLocal", Messaggio(439), &C::ChkShutdownLocal));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

}  // namespace tandemize

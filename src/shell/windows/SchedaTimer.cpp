// The tab of the timer: what runs by itself, the standard timer, and the list of the advanced ones.
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"
#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/LegameGlobale.h"
#include "shell/windows/SchedeGlobali.h"
#include "shell/windows/UscitaCampi.h"

namespace tandemize {

using C = ControlliGlobalSetting;

namespace {

constexpr int ColonnaProfilo = 0, ColonnaData = 1, ColonnaOra = 2, ColonnaIntervallo = 3;
constexpr int AltezzaElenco = 90;

// Tells the arrow keys, which choose each option that they pass, from a choice that is meant: only that one
// may open a dialog.
class ConFrecce : public QObject {
 public:
  using QObject::QObject;
  [[nodiscard]] bool Usate() const { return usate_; }

 protected:
  bool eventFilter(QObject* /*opzione*/, QEvent* evento) override {
    if (evento->type() == QEvent::KeyPress) {
      const int tasto = static_cast<QKeyEvent*>(evento)->key();
      usate_ = tasto >= Qt::Key_Left && tasto <= Qt::Key_Down;
    } else if (evento->type() == QEvent::MouseButtonPress || evento->type() == QEvent::Shortcut) {
      usate_ = false;
    }
    return false;
  }

 private:
  bool usate_ = false;
};

QBoxLayout* Scelte(LegameGlobale& legame) {
  auto* riga = new QHBoxLayout;
  riga->setSpacing(8);
  FrmGlobalSetting& modello = legame.Modello();
  Riquadro* tipo = AggiungiRiquadro(*riga, 10, InLingua("Partenza automatica", "Automatic start"));
  AggiungiOpzioni(*tipo, legame.Opzioni("OptTimer", &C::OptTimer,
                                        {InLingua("Nessuna", "None"),
                                         InLingua("Sincronizzazione", "Synchronisation"), "Backup"},
                                        [&modello](int membro) { modello.ScegliTimer(membro); }));
  Riquadro* backup = AggiungiRiquadro(*riga, 11, InLingua("Tipo di backup", "Type of backup"));
  AggiungiOpzioni(*backup, legame.Opzioni("OptTimerBackup", &C::OptTimerBackup,
                                          {Messaggio(141), Messaggio(142), Messaggio(143)}));
  Riquadro* timer = AggiungiRiquadro(*riga, 12, InLingua("Tipo di timer", "Type of timer"));
  auto* frecce = new ConFrecce(&legame);
  const auto scegliFile = [frecce] { return frecce->Usate() ? std::string() : ScegliFileProfilo(); };
  const std::vector<QRadioButton*> tipi =
      legame.Opzioni("OptTipoTimer", &C::OptTipoTimer, {Messaggio(453), Messaggio(454)},
                     [&modello, scegliFile](int membro) { modello.ScegliTipoTimer(membro, scegliFile); });
  for (QRadioButton* opzione : tipi) opzione->installEventFilter(frecce);
  AggiungiOpzioni(*timer, tipi);
  for (Riquadro* riquadro : {tipo, backup, timer}) riquadro->Contenuto()->addStretch(1);
  return riga;
}

QBoxLayout* CampiStandard(LegameGlobale& legame, UscitaCampi& uscita) {
  FrmGlobalSetting& modello = legame.Modello();
  QLineEdit* numero = legame.Casella("txtTimerInterval", &C::txtTimerInterval);
  QComboBox* unità = legame.Combo("comboTimer", &C::comboTimer);
  unità->setAccessibleName(Testo(Messaggio(246)));
  QLineEdit* ora = legame.CasellaFiltrata("txtTimerStart", &C::txtTimerStart, SoloCifreEPunto);
  QLineEdit* data = legame.Casella("TxtTimerStartDate", &C::TxtTimerStartDate);
  LarghezzaInCifre(*numero, 2);
  LarghezzaInCifre(*ora, 5);
  LarghezzaInCifre(*data, 10);
  uscita.Sorveglia(ora, [&modello] { return modello.LasciaOraTimer(); });
  uscita.Sorveglia(data, [&modello] { return modello.LasciaDataTimer(); });
  return RigaDi({legame.Etichetta(InLingua("Ogni", "Every"), numero), numero, unità,
                 legame.Etichetta(InLingua("alle ore", "at"), ora), ora,
                 legame.Etichetta(InLingua("dal giorno", "from"), data), data});
}

void MostraElenco(QTreeWidget& elenco, const FrmGlobalSetting& modello) {
  const int righe = static_cast<int>(modello.ListTimer.size());
  while (elenco.topLevelItemCount() > righe) delete elenco.takeTopLevelItem(righe);
  while (elenco.topLevelItemCount() < righe) elenco.addTopLevelItem(new QTreeWidgetItem);
  for (int i = 0; i < righe; ++i) {
    const RigaTimer& riga = modello.ListTimer[static_cast<std::size_t>(i)];
    QTreeWidgetItem& voce = *elenco.topLevelItem(i);
    voce.setText(ColonnaProfilo, Testo(riga.Profilo));
    voce.setToolTip(ColonnaProfilo, Testo(riga.Percorso));
    voce.setText(ColonnaData, Testo(riga.Data));
    voce.setData(ColonnaData, Qt::UserRole, Testo(riga.Percorso));
    voce.setText(ColonnaOra, Testo(riga.Ora));
    voce.setText(ColonnaIntervallo, Testo(riga.Intervallo));
  }
  elenco.setCurrentItem(elenco.topLevelItem(modello.ListTimerSelezione));
  if (modello.ListTimerSelezione < 0) elenco.clearSelection();
}

QTreeWidget* Elenco(LegameGlobale& legame) {
  auto* elenco = new QTreeWidget;
  elenco->setObjectName(QStringLiteral("ListTimer"));
  elenco->setAccessibleName(Testo(InLingua("Timer avanzati", "Advanced timers")));
  elenco->setHeaderLabels(
      {Testo(Messaggio(441)), Testo(Messaggio(23)), Testo(Messaggio(451)), Testo(Messaggio(246))});
  elenco->setRootIsDecorated(false);
  elenco->setAllColumnsShowFocus(true);
  // Takes what is left over, however little a small window has.
  elenco->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
  elenco->setMinimumHeight(AltezzaElenco);
  elenco->header()->setStretchLastSection(false);
  elenco->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  elenco->header()->setSectionResizeMode(ColonnaProfilo, QHeaderView::Stretch);
  const auto scegli = [&legame, elenco] {
    if (legame.InMostra() || elenco->selectedItems().isEmpty()) return;
    const int riga = elenco->indexOfTopLevelItem(elenco->selectedItems().first());
    legame.Esegui([&] { legame.Modello().SelezionaTimer(riga); });
  };
  QObject::connect(elenco, &QTreeWidget::itemSelectionChanged, &legame, scegli);
  // A click on the row that is selected already brings its values back into the fields.
  QObject::connect(elenco, &QTreeWidget::itemClicked, &legame, scegli);
  legame.QuandoMostra([&legame, elenco] { MostraElenco(*elenco, legame.Modello()); });
  return elenco;
}

void ScegliProfilo(LegameGlobale& legame) {
  if (const std::string percorso = ScegliFileProfilo(); !percorso.empty())
    legame.Esegui([&] { legame.Modello().ImpostaProfilo(percorso); });
}

QGridLayout* CampiAvanzati(LegameGlobale& legame) {
  FrmGlobalSetting& modello = legame.Modello();
  QLineEdit* profilo = legame.Casella("txtProfilo", &C::txtProfilo);
  // It only shows the name of the file that was chosen, whose path is kept beside it.
  profilo->setReadOnly(true);
  legame.QuandoMostra([&modello, profilo] { profilo->setToolTip(Testo(modello.txtProfiloTag)); });
  auto* percorso = new QPushButton(QStringLiteral("..."));
  percorso->setObjectName(QStringLiteral("cmdPath"));
  percorso->setAccessibleName(Testo(InLingua("Scegli il profilo", "Choose the profile")));
  percorso->setAutoDefault(false);
  QObject::connect(percorso, &QPushButton::clicked, &legame, [&legame] { ScegliProfilo(legame); });
  QLineEdit* data = legame.Casella("txtData", &C::txtData);
  QLineEdit* ora = legame.Casella("TxtOra", &C::TxtOra);
  QLineEdit* numero = legame.Casella("TxtIntervallo", &C::TxtIntervallo);
  QComboBox* unità = legame.Combo("cmbintervallo", &C::cmbintervallo);
  unità->setAccessibleName(Testo(Messaggio(246)));
  LarghezzaInCifre(*data, 10);
  LarghezzaInCifre(*ora, 5);
  LarghezzaInCifre(*numero, 2);
  auto* griglia = new QGridLayout;
  griglia->addWidget(legame.Etichetta(Messaggio(441) + ":", profilo), 0, 0);
  auto* file = new QHBoxLayout;
  file->addWidget(profilo, 1);
  file->addWidget(percorso);
  griglia->addLayout(file, 0, 1);
  griglia->addWidget(legame.Etichetta(Messaggio(23) + ":", data), 1, 0);
  griglia->addLayout(RigaDi({data, legame.Etichetta(Messaggio(451) + ":", ora), ora,
                             legame.Etichetta(Messaggio(246) + ":", numero), numero, unità}),
                     1, 1);
  return griglia;
}

QBoxLayout* Bottoni(LegameGlobale& legame) {
  FrmGlobalSetting& modello = legame.Modello();
  const std::pair<std::string, void (FrmGlobalSetting::*)()> azioni[] = {
      {InLingua("Aggiungi", "Add"), &FrmGlobalSetting::AggiungiTimer},
      {InLingua("Rimuovi", "Remove"), &FrmGlobalSetting::RimuoviTimer},
      {InLingua("Sostituisci", "Replace"), &FrmGlobalSetting::SostituisciTimer}};
  std::vector<QWidget*> bottoni;
  for (const auto& [didascalia, azione] : azioni) {
    const std::size_t membro = bottoni.size();
    auto* bottone = new QPushButton(Didascalia(didascalia));
    bottone->setObjectName(Membro("cmdList", static_cast<int>(membro)));
    bottone->setAutoDefault(false);
    QObject::connect(bottone, &QPushButton::clicked, &legame,
                     [&legame, azione = azione] { legame.Esegui([&] { (legame.Modello().*azione)(); }); });
    legame.QuandoMostra(
        [&modello, bottone, membro] { bottone->setEnabled(modello.cmdListAbilitato[membro]); });
    bottoni.push_back(bottone);
  }
  return RigaDi(bottoni);
}

}  // namespace

QWidget* SchedaTimer(LegameGlobale& legame, UscitaCampi& uscita) {
  const PaginaGlobale pagina;
  FrmGlobalSetting& modello = legame.Modello();
  pagina.colonna->addLayout(Scelte(legame));
  Riquadro* standard = AggiungiRiquadro(*pagina.colonna, 13, Messaggio(453));
  standard->Contenuto()->addLayout(CampiStandard(legame, uscita));
  Riquadro* avanzato = AggiungiRiquadro(*pagina.colonna, 14, Messaggio(454));
  // Before the controls of the frame show whether they themselves can be used.
  legame.QuandoMostra([&modello, avanzato] { avanzato->Abilita(modello.OptTipoTimer.Accesa(1)); });
  avanzato->Contenuto()->addWidget(Elenco(legame), 1);
  avanzato->Contenuto()->addLayout(CampiAvanzati(legame));
  avanzato->Contenuto()->addLayout(Bottoni(legame));
  pagina.colonna->setStretch(2, 1);
  return pagina.pagina;
}

}  // namespace tandemize

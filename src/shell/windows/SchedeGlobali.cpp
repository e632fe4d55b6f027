// What the tabs of the settings window are made of, and the tabs that hold little more than options.
#include "shell/windows/SchedeGlobali.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"
#include "shell/windows/LegameGlobale.h"

namespace tandemize {

using C = ControlliGlobalSetting;

PaginaGlobale::PaginaGlobale() : pagina(new QWidget), colonna(new QVBoxLayout(pagina)) {
  colonna->setContentsMargins(0, 0, 0, 0);
  colonna->setSpacing(8);
}

Riquadro* AggiungiRiquadro(QBoxLayout& dove, int indice, std::string_view titolo) {
  auto* riquadro = new Riquadro(indice, Testo(titolo));
  dove.addWidget(riquadro);
  return riquadro;
}

void AggiungiOpzioni(Riquadro& riquadro, const std::vector<QRadioButton*>& opzioni) {
  for (QRadioButton* opzione : opzioni) AggiungiASinistra(riquadro, opzione);
}

// No wider than its caption, so that a click into the middle hits it.
void AggiungiASinistra(Riquadro& riquadro, QWidget* controllo) {
  riquadro.Contenuto()->addWidget(controllo, 0, Qt::AlignLeft);
}

QLabel* Nota(std::string_view testo) {
  auto* nota = new QLabel(Testo(testo));
  nota->setTextFormat(Qt::PlainText);
  nota->setWordWrap(true);
  return nota;
}

QBoxLayout* RigaDi(const std::vector<QWidget*>& controlli) {
  auto* riga = new QHBoxLayout;
  riga->setSpacing(6);
  for (QWidget* controllo : controlli) riga->addWidget(controllo);
  riga->addStretch(1);
  return riga;
}

void LarghezzaInCifre(QWidget& campo, int cifre) {
  campo.setFixedWidth(campo.fontMetrics().horizontalAdvance(QString(cifre + 1, u'0')) + 14);
}

QWidget* SchedaAvvio(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* programma =
      AggiungiRiquadro(*pagina.colonna, 0, InLingua("Avvio del programma", "Program start"));
  AggiungiOpzioni(*programma, legame.Opzioni("OptStartPg", &C::OptStartPg,
                                             {InLingua("Avvia normalmente", "Start Normally"),
                                              InLingua("Apri la sincronizzazione", "Run Tandemize"),
                                              InLingua("Apri il backup", "Run Backup")}));
  Riquadro* pc = AggiungiRiquadro(*pagina.colonna, 1, InLingua("Avvio con il PC", "Start with the PC"));
  AggiungiOpzioni(
      *pc,
      legame.Opzioni("OptStartPC", &C::OptStartPC,
                     {InLingua("Non avviare con il PC", "Do not start with the PC"),
                      InLingua("Avvia con il PC", "Start with the PC"),
                      InLingua("Avvia con il PC, nascosto nell'area di notifica", "Run at Startup Tray")}));
  pc->Contenuto()->addWidget(Nota(InLingua(
      "Il salvataggio adegua questa scelta al timer: con una partenza automatica il programma si avvia con "
      "il PC, nascosto; senza, non si avvia con il PC.",
      "Saving adapts this choice to the timer: with an automatic start the program starts with the PC, "
      "hidden; without one it does not start with the PC.")));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

QWidget* SchedaLog(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* file = AggiungiRiquadro(*pagina.colonna, 2, InLingua("File di log", "Log file"));
  AggiungiOpzioni(*file, legame.Opzioni("OptLogUpdate", &C::OptLogUpdate,
                                        {"Don't update Log file on error", "Update Log file on error"}));
  QLineEdit* dimensione = legame.Casella("TxtLog", &C::TxtLog);
  LarghezzaInCifre(*dimensione, 4);
  file->Contenuto()->addLayout(RigaDi(
      {legame.Etichetta(InLingua("Dimensione massima di un file di log:", "Maximum size of a log file:"),
                        dimensione),
       dimensione, new QLabel(QStringLiteral("KB"))}));
  Riquadro* finestra = AggiungiRiquadro(*pagina.colonna, 3, InLingua("Finestra del log", "Log window"));
  AggiungiOpzioni(*finestra,
                  legame.Opzioni("OptLogWindow", &C::OptLogWindow,
                                 {InLingua("Non mostrarla mai", "Never show it"),
                                  InLingua("Mostrala a ogni errore", "Show it on each error"),
                                  InLingua("Mostrala al termine di un'operazione con errori",
                                           "Show it at the end of an operation that had errors")}));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

QWidget* SchedaErrori(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* avviso = AggiungiRiquadro(*pagina.colonna, 4, InLingua("Avviso degli errori", "Error alert"));
  AggiungiOpzioni(
      *avviso,
      legame.Opzioni("OptErrors", &C::OptErrors,
                     {InLingua("Avvisa a ogni errore", "Alert on every error"),
                      InLingua("Avvisa al termine dell'operazione", "Alert at the end of the operation")}));
  AggiungiASinistra(*avviso, legame.Spunta("ChkErrors",
                                           InLingua("In caso di errore continua con il passo successivo",
                                                    "On error go on with the next step"),
                                           &C::ChkErrors));
  Riquadro* correzione = AggiungiRiquadro(*pagina.colonna, 5, InLingua("Nuovi tentativi", "Retries"));
  AggiungiOpzioni(*correzione, legame.Opzioni("OptErrorCorrection", &C::OptErrorCorrection,
                                              {InLingua("Non riprovare", "Do not try again"),
                                               InLingua("Riprova in caso di errore", "Try again on error")}));
  QLineEdit* tentativi = legame.Casella("txtErrorRepeat", &C::txtErrorRepeat);
  QLineEdit* pausa = legame.Casella("TxtErrorSeconds", &C::TxtErrorSeconds);
  for (QLineEdit* campo : {tentativi, pausa}) LarghezzaInCifre(*campo, 2);
  correzione->Contenuto()->addLayout(RigaDi(
      {legame.Etichetta(InLingua("Numero di tentativi:", "Number of attempts:"), tentativi), tentativi}));
  correzione->Contenuto()->addLayout(
      RigaDi({legame.Etichetta(InLingua("Pausa fra i tentativi:", "Pause between the attempts:"), pausa),
              pausa, new QLabel(Didascalia(Messaggio(182)))}));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

QWidget* SchedaLingua(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* lingua =
      AggiungiRiquadro(*pagina.colonna, 17, InLingua("Lingua del programma", "Language of the program"));
  AggiungiOpzioni(*lingua, legame.Opzioni("OptLanguage", &C::OptLanguage, {"Italiano", "English"}));
  lingua->Contenuto()->addWidget(
      Nota(InLingua("Le finestre già aperte prendono la nuova lingua alla prossima apertura. Gli intervalli "
                    "del timer sono salvati con parole della lingua e vanno scelti di nuovo.",
                    "Windows that are open take the new language when they are opened next. The intervals of "
                    "the timer are stored in words of the language and have to be chosen again.")));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

QWidget* SchedaAiuto(LegameGlobale& legame) {
  const PaginaGlobale pagina;
  Riquadro* aiuto = AggiungiRiquadro(*pagina.colonna, 18, InLingua("Aiuto", "Help"));
  AggiungiASinistra(*aiuto, legame.Spunta("ChkHelpToolTip",
                                          InLingua("Mostra le informazioni rapide sui controlli",
                                                   "Show quick information on controls"),
                                          &C::ChkHelpToolTip));
  AggiungiASinistra(
      *aiuto, legame.Spunta("ChkHelpSuggest",
                            InLingua("Mostra i suggerimenti con esempi", "Show suggestions with examples"),
                            &C::ChkHelpSuggest));
  AggiungiASinistra(*aiuto, legame.Spunta("ChkHelpTipMessage",
                                          InLingua("Mostra i messaggi di aiuto", "Show the help messages"),
                                          &C::ChkHelpTipMessage));
  pagina.colonna->addStretch(1);
  return pagina.pagina;
}

}  // namespace tandemize

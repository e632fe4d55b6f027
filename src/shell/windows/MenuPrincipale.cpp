// The main window's menus: what is in them, and what each entry does.
#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

#include "backup/windows/FrmBackupChoiceWindow.h"
#include "errors/ModuloLog.h"
#include "errors/windows/FrmLogView.h"
#include "presentation/windows/Form.h"
#include "presentation/windows/Icone.h"
#include "presentation/windows/Testo.h"
#include "profile/MenuProfilo.h"
#include "shell/Desktop.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/OperazioniInCorso.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "shell/windows/BarraStrumenti.h"
#include "shell/windows/FinestreDiScelta.h"
#include "shell/windows/FrmGlobalSettingWindow.h"
#include "shell/windows/FrmStartWindow.h"
#include "shell/windows/TastiDiScelta.h"
#include "shell/windows/TraduzioneToolkit.h"
#include "shell/windows/frmAbout.h"

namespace tandemize {

namespace {

enum Azioni { EseguiBackup, EseguiTandemize, FinestraDiLog, FileDiLog, Esci };

void DaiTesti(const std::vector<QAction*>& azioni, const std::vector<std::string>& testi) {
  const QStringList didascalie = ConTastiDiScelta(testi);
  for (std::size_t i = 0; i < azioni.size(); ++i) azioni[i]->setText(didascalie[static_cast<qsizetype>(i)]);
}

void DiceFinestraMancante(const std::string& nome) {
  MsgBox(InLingua("La finestra '", "The window '") + nome +
             InLingua("' non c'è ancora in questa versione del programma.",
                      "' is not there yet in this version of the program."),
         StileInformazione);
}

}  // namespace

// Whatever the user turns to, a notice has been seen by then.
QAction* FrmStartWindow::Azione(const QString& nome, std::function<void()> esegui) {
  auto* azione = new QAction(this);
  azione->setObjectName(nome);
  connect(azione, &QAction::triggered, this, [esegui = std::move(esegui)] {
    schermo().ChiudiBalloon();
    esegui();
  });
  return azione;
}

FrmStartWindow::Voci FrmStartWindow::AggiungiMenu(const char* nome, int voci,
                                                  const std::function<void(int)>& esegui) {
  Voci menu;
  menu.barra = menuBar()->addMenu(QString());
  menu.barra->setObjectName(QLatin1String(nome));
  for (int i = 0; i < voci; ++i) {
    menu.azioni.push_back(Azione(Membro(nome, i), [esegui, i] { esegui(i); }));
    menu.barra->addAction(menu.azioni.back());
  }
  return menu;
}

void FrmStartWindow::PreparaMenu() {
  action_ = AggiungiMenu("MenuAction", 5, [this](int membro) { MenuAction_Click(membro); });
  action_.barra->insertSeparator(action_.azioni[FinestraDiLog]);
  action_.barra->insertSeparator(action_.azioni[Esci]);
  action_.azioni[Esci]->setShortcut(QKeySequence::Quit);
  configure_ = AggiungiMenu("MenuConfigure", 3, [this](int membro) { MenuConfigure_Click(membro); });
  profilo_ = AggiungiMenu("MenuProfilo", 2, [this](int membro) { MenuProfilo_Click(membro); });
  profilo_.azioni[0]->setShortcut(QKeySequence::New);
  profilo_.azioni[1]->setShortcut(QKeySequence::Open);
  aiuto_ = AggiungiMenu("MenuAiuto", 0, {});
  aiuto_.azioni.push_back(Azione(QStringLiteral("MenuHelp"), [this] { MostraInformazioni(); }));
  aiuto_.barra->addAction(aiuto_.azioni.back());

  constexpr std::array ImmaginiAzioni{1, 0, 4, 3, 5};
  for (std::size_t i = 0; i < ImmaginiAzioni.size(); ++i)
    action_.azioni[i]->setIcon(IconaBarra(ImmaginiAzioni.at(i)));
  configure_.azioni[0]->setIcon(IconaBarra(2));
}

void FrmStartWindow::PreparaMenuPopUp() {
  popUp_.barra = new QMenu(this);
  popUp_.barra->setObjectName(QStringLiteral("MenuPopUp"));
  popUp_.azioni.push_back(Azione(Membro("MenuPopUp", 0), [this] { Inverti(); }));
  popUp_.azioni.push_back(Azione(Membro("MenuPopUp", 1), [this] { close(); }));
  for (QAction* azione : popUp_.azioni) popUp_.barra->addAction(azione);
  connect(popUp_.barra, &QMenu::aboutToShow, this, [this] { DidascaliePopUp(); });
}

void FrmStartWindow::Didascalie() {
  TraduciToolkit();
  const std::vector<std::string> titoli{InLingua("Azioni", "Actions"), Messaggio(2), Messaggio(441),
                                        InLingua("Guida", "Help")};
  const QStringList didascalie = ConTastiDiScelta(titoli);
  const std::array barre{action_.barra, configure_.barra, profilo_.barra, aiuto_.barra};
  for (std::size_t i = 0; i < barre.size(); ++i) barre.at(i)->setTitle(didascalie[static_cast<qsizetype>(i)]);
  DaiTesti(action_.azioni, {Messaggio(3), Messaggio(4), Messaggio(5), Messaggio(6), Messaggio(7)});
  DaiTesti(configure_.azioni, {Messaggio(8), "Backup", "Tandemize"});
  DaiTesti(profilo_.azioni, {Messaggio(443), Messaggio(442)});
  DaiTesti(aiuto_.azioni, {InLingua("Informazioni su", "About")});
  barra_->Didascalie({Messaggio(4), Messaggio(3), Messaggio(8), Messaggio(6), Messaggio(5), Messaggio(7)},
                     InLingua("Nasconde o chiude il programma", "Hides or closes the program"));
  DidascaliePopUp();
  AggiornaTitolo();
}

void FrmStartWindow::DidascaliePopUp() {
  DaiTesti(popUp_.azioni, {ApplicazioneNascosta ? Messaggio(279) : Messaggio(278), Messaggio(7)});
}

void FrmStartWindow::AggiornaTitolo() {
  setWindowTitle(Testo(TitoloPrincipale()));
  tray_.ToolTip(TitoloPrincipale());
}

void FrmStartWindow::MenuAction_Click(int membro) {
  switch (membro) {
    case EseguiBackup:
      // The banner is the start of a run's records; in the midst of another run's it would mislead.
      if (OperazioneDaFermare(RunDelDialogo()).empty()) ScriviLog(Messaggio(3), Intestazione);
      return ApriBackup();
    case EseguiTandemize:
      return ApriSincronizzazione();
    case FinestraDiLog:
      return MostraFrmLogView();
    case FileDiLog:
      return MostraFileDiLog();
    default:
      close();
  }
}

void FrmStartWindow::MenuConfigure_Click(int membro) {
  if (membro == 0) return MostraFrmGlobalSetting();
  if (membro == 1) return ApriDiagramma();
  DiceFinestraMancante(Messaggio(2) + " Tandemize");
}

void FrmStartWindow::MenuProfilo_Click(int membro) {
  if (!ProfiloSostituibile(RunDelDialogo())) return;
  const FiltroFile filtro{DescrizioneProfili(), "*.cfg"};
  std::string scelto;
  if (membro == 0)
    scelto = ScegliFileSalvataggio(this, PercorsoApplicazione, NomeNuovoProfilo, filtro);
  else if (const auto scelti = ScegliFileApertura(this, filtro, PercorsoApplicazione); !scelti.empty())
    scelto = scelti.front();
  // An operation may have begun while the dialog was open.
  if (scelto.empty() || !ProfiloSostituibile(RunDelDialogo())) return;
  if (membro == 0 ? !NuovoProfilo(scelto) : !CaricaProfilo(scelto)) return;
  ScaricaFrmBackupChoiceInattiva();
  AggiornaTitolo();
}

void FrmStartWindow::ToolBar2_Click(int membro) {
  const auto& azioni = action_.azioni;
  const std::array<QAction*, BarraStrumenti::NumeroBottoni> voci{
      azioni[EseguiTandemize], azioni[EseguiBackup],  configure_.azioni[0],
      azioni[FileDiLog],       azioni[FinestraDiLog], azioni[Esci]};
  voci.at(static_cast<std::size_t>(membro))->trigger();
}

void FrmStartWindow::MostraFileDiLog() {
  std::string nuovo;
  const std::string nome = NomeLogFile(nuovo);
  if (nome.empty()) {
    MsgBox(Messaggio(45), StileInformazione);
    return;
  }
  const platform::ErrorCode errore = ApriFile(PercorsoApplicazione + nome);
  if (errore == platform::kNoError) return;
  MsgBox(
      InLingua("Nessun programma ha potuto aprire il file di log '", "No program could open the log file '") +
          PercorsoApplicazione + nome + "': " + platform::systemErrorText(errore),
      StileInformazione);
}

void FrmStartWindow::MostraInformazioni() {
  frmAbout finestra(this);
  CentraForm(finestra);
  PresentaModale(finestra);
}

void FrmStartWindow::ApriBackup() {
  MostraFrmBackupChoice();
}

void FrmStartWindow::ApriSincronizzazione() {
  DiceFinestraMancante("Tandemize");
}

void FrmStartWindow::ApriDiagramma() {
  DiceFinestraMancante(Messaggio(2) + " Backup");
}

}  // namespace tandemize

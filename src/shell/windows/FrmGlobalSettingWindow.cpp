#include "shell/windows/FrmGlobalSettingWindow.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QTabWidget>
#include <QTimer>
#include <QVBoxLayout>

#include "backup/windows/FrmBackupChoiceWindow.h"
#include "errors/ModuloGestioneErrori.h"
#include "mail/FrmSendEMail.h"
#include "platform/machine.h"
#include "platform/paths.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/Desktop.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "shell/windows/AttesaServer.h"
#include "shell/windows/FinestreDiScelta.h"
#include "shell/windows/LegameGlobale.h"
#include "shell/windows/SchedeGlobali.h"
#include "shell/windows/TastiDellePagine.h"
#include "shell/windows/UscitaCampi.h"

namespace tandemize {

std::function<void()> LinguaCambiata;

std::function<std::string()> ScegliFileProfilo = [] {
  const auto scelti = ScegliFileApertura(FormDiNome("FrmGlobalSetting"), {"File " + Messaggio(441), "*.cfg"},
                                         PercorsoApplicazione);
  return scelti.empty() ? std::string() : scelti.front();
};

namespace {

constexpr const char* NomeForm = "FrmGlobalSetting";

constexpr int LarghezzaComoda = 600;

// Loaded as long as the window is, so that the end of another operation leaves the settings alone that are
// being edited here. Only the test of a server is something to stop.
class OperazioneGlobale : public FinestraOperazione {
 public:
  OperazioneGlobale() : FinestraOperazione(NomeForm) {}
  void Annulla(bool confermato) override {
    if (InCorso) FinestraOperazione::Annulla(confermato);
  }
  [[nodiscard]] bool InEsecuzione() const override { return InCorso; }
  bool InCorso = false;
};

// The start with the PC runs this very program.
void AggiornaAvvio() {
  const std::string programma = platform::toProgram(Testo(QCoreApplication::applicationFilePath()));
  const platform::ErrorCode errore = AggiornaCollegamentoAvvio(programma);
  if (errore == platform::kNoError) return;
  MsgBox(InLingua("Impossibile aggiornare il collegamento per l'avvio con il PC: ",
                  "The shortcut for the start with the PC cannot be updated: ") +
             platform::systemErrorText(errore),
         StileCritico);
}

}  // namespace

struct FrmGlobalSettingWindow::Controlli {
  OperazioneGlobale operazione;
  FrmGlobalSetting modello;
  LegameGlobale* legame = nullptr;
  UscitaCampi* uscita = nullptr;
  Schede* schede = nullptr;
  bool inProva = false;  // a test of a server is on the stack, until its last box is closed
  bool deciso = false;   // closing needs no question any more
};

FrmGlobalSettingWindow::FrmGlobalSettingWindow(QWidget* proprietaria)
    : Form(NomeForm, proprietaria), controlli_(std::make_unique<Controlli>()) {
  // First, as the reading brings the texts of the captions along.
  const bool letto = controlli_->modello.Carica();
  setWindowTitle(Testo(Messaggio(8)));
  controlli_->legame = new LegameGlobale(controlli_->modello, this);
  controlli_->uscita = new UscitaCampi(this, [this](const QWidget& campo) { MostraScheda(campo); });
  Riempi();
  ApplicaStile(*this);
  controlli_->legame->Mostra();
  if (!letto && !controlli_->modello.Errore().empty())
    QTimer::singleShot(0, this, [this] { MsgBox(controlli_->modello.Errore(), StileCritico); });
}

// The controls outlive the model, and must not turn to it any more.
FrmGlobalSettingWindow::~FrmGlobalSettingWindow() {
  delete controlli_->legame;
  delete controlli_->uscita;
}

void FrmGlobalSettingWindow::Riempi() {
  LegameGlobale& legame = *controlli_->legame;
  UscitaCampi& uscita = *controlli_->uscita;
  auto* schede = controlli_->schede = new Schede(this);
  schede->Aggiungi(SchedaAvvio(legame), Didascalia(Messaggio(195)));
  schede->Aggiungi(SchedaLog(legame), QStringLiteral("Log"));
  schede->Aggiungi(SchedaErrori(legame), Didascalia(Messaggio(196)));
  schede->Aggiungi(SchedaPosta(legame, [this] { ProvaPosta(); }), QStringLiteral("E-Mail"));
  schede->Aggiungi(SchedaFtp(legame, uscita, [this] { ProvaServer(); }), QStringLiteral("FTP"));
  schede->Aggiungi(SchedaTimer(legame, uscita), QStringLiteral("Timer"));
  schede->Aggiungi(SchedaAvanzate(legame), Didascalia(Messaggio(197)));
  schede->Aggiungi(SchedaLingua(legame), Didascalia(Messaggio(198)));
  schede->Aggiungi(SchedaAiuto(legame), Didascalia(Messaggio(199)));
  auto* colonna = new QVBoxLayout(this);
  colonna->setContentsMargins(10, 10, 10, 10);
  colonna->setSpacing(10);
  colonna->addWidget(schede, 1);
  QPushButton* bottoni[2];
  for (int membro = 0; membro < 2; ++membro) {
    bottoni[membro] = new QPushButton(this);
    bottoni[membro]->setObjectName(Membro("cmd", membro));
    connect(bottoni[membro], &QPushButton::clicked, this, [this, membro] { Cmd(membro); });
  }
  uscita.Esenta(bottoni[1]);
  colonna->addLayout(PreparaBottoni(bottoni[0], bottoni[1], nullptr));
  DaiTasti();
}

void FrmGlobalSettingWindow::DaiTasti() {
  std::vector<QAbstractButton*> intestazioni{findChild<QAbstractButton*>(Membro("cmd", 0)),
                                             findChild<QAbstractButton*>(Membro("cmd", 1))};
  std::vector<QWidget*> pagine;
  const QTabWidget& schede = *controlli_->schede->SSTab1();
  for (int i = 0; i < schede.count(); ++i) {
    intestazioni.push_back(findChild<QAbstractButton*>(Membro("PicColTabHeaders", i)));
    pagine.push_back(schede.widget(i));
  }
  DaiTastiDiScelta(intestazioni, pagine);
}

void FrmGlobalSettingWindow::SelezionaScheda(int scheda) {
  controlli_->schede->SelezionaScheda(scheda);
}

void FrmGlobalSettingWindow::MostraScheda(const QWidget& campo) {
  const QTabWidget& schede = *controlli_->schede->SSTab1();
  for (int scheda = 0; scheda < schede.count(); ++scheda)
    if (schede.widget(scheda)->isAncestorOf(&campo)) SelezionaScheda(scheda);
}

void FrmGlobalSettingWindow::Cmd(int membro) {
  // The Enter key gets here with the focus still in a field.
  if (membro == 0 && !controlli_->uscita->Verifica()) return;
  const int lingua = Language;
  const EsitoConferma esito = controlli_->modello.Conferma(membro);
  controlli_->legame->Mostra();
  DiciLinguaCambiata(lingua);
  if (esito == EsitoConferma::VaiAlTabFtp) SelezionaScheda(SchedaFtpGlobale);
  if (esito != EsitoConferma::Chiudi) return;
  if (membro == 0)
    AggiornaAvvio();
  else
    AbbandonaModifiche();
  controlli_->deciso = true;
  close();
}

void FrmGlobalSettingWindow::AbbandonaModifiche() {
  std::string errore;
  if (!CaricaImpostazioni(errore) && !errore.empty()) MsgBox(errore, StileCritico);
}

bool FrmGlobalSettingWindow::QueryUnload() {
  if (controlli_->operazione.InCorso) {
    AnnullaFinestra(NomeForm);
    return false;
  }
  if (controlli_->inProva) return false;
  if (controlli_->deciso) return true;
  const bool modificato = controlli_->modello.Modificato();
  controlli_->legame->Mostra();
  std::int16_t rimane = 0;
  bool inCorso = false, daSalvare = modificato;
  ChiediChiusuraForm(rimane, &controlli_->operazione, inCorso, false, daSalvare, "");
  if (rimane != 0) return false;
  if (modificato) AbbandonaModifiche();
  return true;
}

void FrmGlobalSettingWindow::DiciLinguaCambiata(int prima) {
  if (Language != prima && LinguaCambiata) LinguaCambiata();
}

void FrmGlobalSettingWindow::ProvaPosta() {
  const int lingua = Language;
  const bool salvato = controlli_->modello.SalvaERileggi();
  controlli_->legame->Mostra();
  DiciLinguaCambiata(lingua);
  if (salvato) MostraFrmSendEMail();
}

void FrmGlobalSettingWindow::ProvaServer() {
  FrmGlobalSetting& modello = controlli_->modello;
  if (modello.ListFtpSelezione < 0 || controlli_->inProva) return;
  // The window's closing, by whomever, must not pull it off the stack.
  const QPointer<AttesaServer> attesa = new AttesaServer(modello.txtFtpDescription.Text, this);
  controlli_->inProva = controlli_->operazione.InCorso = true;
  CentraForm(*attesa);
  Presenta(*attesa);
  const auto collegato = [this, attesa] {
    controlli_->operazione.InCorso = false;
    if (attesa != nullptr) attesa->hide();
  };
  modello.ProvaServerFtp(controlli_->operazione, collegato, FrmBackupChoiceOccupata());
  controlli_->inProva = controlli_->operazione.InCorso = false;
  delete attesa;
  controlli_->legame->Mostra();
}

namespace {

// As large as the largest page needs, where the screen has room for that.
void PrendiPosto(FrmGlobalSettingWindow& finestra) {
  const QSize spazio = finestra.screen()->availableSize();
  const QSize minima = finestra.minimumSize();
  finestra.setMinimumSize(finestra.DimensionePreferita().boundedTo({spazio.width(), spazio.height() - 40}));
  CentraForm(finestra);
  finestra.setMinimumSize(minima);
}

FrmGlobalSettingWindow* FinestraCaricata() {
  return dynamic_cast<FrmGlobalSettingWindow*>(FormDiNome(NomeForm));
}

}  // namespace

// A page in a scroll area asks for less than it needs.
QSize FrmGlobalSettingWindow::DimensionePreferita() const {
  const QTabWidget& schede = *controlli_->schede->SSTab1();
  QSize pagina;
  for (int scheda = 0; scheda < schede.count(); ++scheda)
    if (const auto* area = qobject_cast<const QScrollArea*>(schede.widget(scheda)); area != nullptr)
      pagina = pagina.expandedTo(area->widget()->sizeHint());
  return (sizeHint() - schede.sizeHint() + pagina + QSize(2, 2)).expandedTo({LarghezzaComoda, 0});
}

void MostraFrmGlobalSetting() {
  FrmGlobalSettingWindow* finestra = FinestraCaricata();
  if (finestra == nullptr) {
    finestra = new FrmGlobalSettingWindow(FinestraPrincipale());
    finestra->setAttribute(Qt::WA_DeleteOnClose);
    PrendiPosto(*finestra);
  }
  Presenta(*finestra);
}

void MostraFrmGlobalSettingModale(int scheda) {
  if (FrmGlobalSettingWindow* caricata = FinestraCaricata(); caricata != nullptr) {
    caricata->SelezionaScheda(scheda);
    return Presenta(*caricata);
  }
  FrmGlobalSettingWindow finestra(FinestraPrincipale());
  finestra.SelezionaScheda(scheda);
  PrendiPosto(finestra);
  PresentaModale(finestra);
}

}  // namespace tandemize

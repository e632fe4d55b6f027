#include "shell/windows/frmAbout.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/desktop.h"
#include "platform/machine.h"
#include "presentation/windows/Icone.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr std::string_view ChiaveRegistrazione =
    "HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows NT\\CurrentVersion";
constexpr int LatoIcona = 64;
constexpr double Ingrandimento = 1.8;  // of the title

QLabel* Etichetta(const char* nome, const QString& testo, QVBoxLayout& colonna) {
  auto* etichetta = new QLabel(testo);
  etichetta->setObjectName(QLatin1String(nome));
  etichetta->setTextFormat(Qt::PlainText);
  etichetta->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  etichetta->setWordWrap(true);
  colonna.addWidget(etichetta);
  return etichetta;
}

QLabel* ValoreRegistrato(const char* nome, QVBoxLayout& colonna) {
  const std::string valore = platform::registryValue(ChiaveRegistrazione, nome);
  QLabel* etichetta = Etichetta(nome, Testo(valore), colonna);
  etichetta->setVisible(!valore.empty());
  return etichetta;
}

void InformazioniSistema() {
  if (platform::openSystemInformation() == platform::kNoError) return;
  MsgBox(InLingua("Le informazioni sul sistema non sono attualmente disponibili.",
                  "The system information is not available at the moment."),
         StileInformazione);
}

void Intestazione(QVBoxLayout& colonna) {
  QLabel* titolo = Etichetta("lblTitle", Testo(TitoloApplicazione), colonna);
  QFont carattere = titolo->font();
  carattere.setPointSizeF(carattere.pointSizeF() * Ingrandimento);
  carattere.setBold(true);
  titolo->setFont(carattere);
  Etichetta("lblVersion", Testo(InLingua("Versione ", "Version ") + TANDEMIZE_VERSION), colonna);
}

// Who the program is registered to, where the registry says it.
void Registrazione(QVBoxLayout& colonna) {
  colonna.addSpacing(10);
  QLabel* concessione =
      Etichetta("lblRegistration",
                Testo(InLingua("Programma concesso in uso a:", "This program is licensed to:")), colonna);
  QLabel* persona = ValoreRegistrato("RegisteredOwner", colonna);
  QLabel* ente = ValoreRegistrato("RegisteredOrganization", colonna);
  concessione->setVisible(!persona->text().isEmpty() || !ente->text().isEmpty());
}

}  // namespace

frmAbout::frmAbout(QWidget* proprietaria) : Form("frmAbout", proprietaria) {
  setWindowTitle(Testo(InLingua("Informazioni su ", "About ") + TitoloApplicazione));
  auto* riquadro = new Riquadro(0, {}, this);
  auto* icona = new QLabel;
  icona->setObjectName(QStringLiteral("picIcon"));
  icona->setPixmap(IconaProgramma().pixmap(QSize(LatoIcona, LatoIcona), devicePixelRatioF()));
  auto* testi = new QVBoxLayout;
  testi->setSpacing(4);
  Intestazione(*testi);
  Registrazione(*testi);
  testi->addStretch(1);
  auto* riga = new QHBoxLayout;
  riga->setSpacing(16);
  riga->addWidget(icona, 0, Qt::AlignTop);
  riga->addLayout(testi, 1);
  riquadro->Contenuto()->addLayout(riga);

  auto* chiudi = new QPushButton(this);
  chiudi->setObjectName(QStringLiteral("cmdOK"));
  auto* sistema =
      new QPushButton(Testo(InLingua("Informazioni sul &sistema...", "&System information...")), this);
  sistema->setObjectName(QStringLiteral("cmdSysInfo"));
  connect(chiudi, &QPushButton::clicked, this, &QWidget::close);
  connect(sistema, &QPushButton::clicked, this, InformazioniSistema);

  auto* colonna = new QVBoxLayout(this);
  colonna->setSpacing(12);
  colonna->addWidget(riquadro, 1);
  colonna->addLayout(PreparaBottoni(chiudi, nullptr, sistema));
  setMinimumWidth(420);
  ApplicaStile(*this);
  chiudi->setFocus();
}

}  // namespace tandemize

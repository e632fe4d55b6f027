#include "synchronisation/windows/FrmTandemizeFilter.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeDatabase>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <algorithm>

#include "presentation/windows/GruppoOpzioni.h"
#include "presentation/windows/ModuloGrafica.h"
#include "presentation/windows/Testo.h"
#include "profile/ModuloProfilo.h"
#include "shell/Lingua.h"
#include "shell/TestiPropri.h"

namespace tandemize {

namespace {

constexpr int LarghezzaElenco = 230, AltezzaElenco = 170;
constexpr int VociVisibili = 14;

template <class Controllo>
Controllo* Nuovo(const QString& nome, const QString& didascalia, QWidget* parent) {
  auto* controllo = new Controllo(didascalia, parent);
  controllo->setObjectName(nome);
  return controllo;
}

QString InLinguaQt(const char* italiano, const char* inglese) {
  return Testo(InLingua(italiano, inglese));
}

}  // namespace

struct FrmTandemizeFilter::Controlli {
  explicit Controlli(QWidget* finestra);
  [[nodiscard]] QLayout* Modi();
  [[nodiscard]] QLayout* Voci();

  QRadioButton* OptMode[2];
  QLabel* Label1;
  QComboBox* ComboEstensioni;
  QListWidget* ListFilters;
  QPushButton* cmdOp[3];
  QLabel *LblFiles, *lblnumbers, *LblEffetto;
  QPushButton* cmd[2];
};

FrmTandemizeFilter::Controlli::Controlli(QWidget* finestra)
    : OptMode{Nuovo<QRadioButton>(Membro("OptMode", 0), Didascalia(Messaggio(456)), finestra),
              Nuovo<QRadioButton>(Membro("OptMode", 1), Didascalia(Messaggio(457)), finestra)},
      Label1(Nuovo<QLabel>("Label1", Didascalia(Messaggio(459)), finestra)),
      ComboEstensioni(new QComboBox(finestra)),
      ListFilters(new QListWidget(finestra)),
      cmdOp{Nuovo<QPushButton>(Membro("cmdOp", 0), InLinguaQt("&Aggiungi", "&Add"), finestra),
            Nuovo<QPushButton>(Membro("cmdOp", 1), InLinguaQt("&Rimuovi", "&Remove"), finestra),
            Nuovo<QPushButton>(Membro("cmdOp", 2), InLinguaQt("&Svuota", "&Clear"), finestra)},
      LblFiles(Nuovo<QLabel>("LblFiles", Didascalia(Messaggio(458)), finestra)),
      lblnumbers(Nuovo<QLabel>("lblnumbers", QString(), finestra)),
      LblEffetto(Nuovo<QLabel>("LblEffetto", QString(), finestra)),
      cmd{Nuovo<QPushButton>(Membro("cmd", 0), QString(), finestra),
          Nuovo<QPushButton>(Membro("cmd", 1), QString(), finestra)} {
  ComboEstensioni->setObjectName("ComboEstensioni");
  ComboEstensioni->setEditable(true);
  ComboEstensioni->setInsertPolicy(QComboBox::NoInsert);
  // It would turn what was typed into the next longer extension.
  ComboEstensioni->setCompleter(nullptr);
  ComboEstensioni->setMaxVisibleItems(VociVisibili);
  ComboEstensioni->lineEdit()->setPlaceholderText(QStringLiteral("*.abc"));
  for (const std::string& voce : ElencoEstensioni(EstensioniDelSistema()))
    ComboEstensioni->addItem(Testo(voce));
  ComboEstensioni->setCurrentIndex(-1);
  Label1->setBuddy(ComboEstensioni);
  ListFilters->setObjectName("ListFilters");
  ListFilters->setMinimumSize(LarghezzaElenco, AltezzaElenco);
  LblFiles->setBuddy(ListFilters);
  ListFilters->setAccessibleName(LblFiles->text());
  LblEffetto->setWordWrap(true);
}

QLayout* FrmTandemizeFilter::Controlli::Modi() {
  auto* riga = new QHBoxLayout;
  riga->setSpacing(24);
  riga->addWidget(OptMode[0]);
  riga->addWidget(OptMode[1]);
  riga->addStretch(1);
  return riga;
}

QLayout* FrmTandemizeFilter::Controlli::Voci() {
  auto* griglia = new QGridLayout;
  griglia->setHorizontalSpacing(8);
  griglia->setVerticalSpacing(6);
  griglia->addWidget(Label1, 0, 0, 1, 2);
  griglia->addWidget(ComboEstensioni, 1, 0);
  griglia->addWidget(cmdOp[0], 1, 1);
  griglia->addWidget(ListFilters, 2, 0, 3, 1);
  griglia->addWidget(cmdOp[1], 2, 1);
  griglia->addWidget(cmdOp[2], 3, 1);
  griglia->setRowStretch(4, 1);
  griglia->setColumnStretch(0, 1);
  auto* numero = new QHBoxLayout;
  numero->setSpacing(LblFiles->fontMetrics().horizontalAdvance(u' '));
  numero->addWidget(LblFiles);
  numero->addWidget(lblnumbers);
  numero->addStretch(1);
  griglia->addLayout(numero, 5, 0, 1, 2);
  return griglia;
}

FrmTandemizeFilter::FrmTandemizeFilter(QWidget* proprietaria) : Form("FrmTandemizeFilter", proprietaria) {
  setWindowTitle(Testo(Messaggio(455)));
  filtro_.CaricaFiltro(FilterBackup);
  controlli_ = std::make_unique<Controlli>(this);
  auto* riquadro = new Riquadro(0, Testo(Messaggio(455)), this);
  riquadro->Contenuto()->setSpacing(10);
  riquadro->Contenuto()->addLayout(controlli_->Modi());
  riquadro->Contenuto()->addLayout(controlli_->Voci());
  riquadro->Contenuto()->addWidget(controlli_->LblEffetto);
  auto* esterno = new QVBoxLayout(this);
  esterno->setSpacing(10);
  esterno->addWidget(riquadro, 1);
  esterno->addLayout(PreparaBottoni(controlli_->cmd[0], controlli_->cmd[1], nullptr));
  // In the order of reading: the button beside the box comes before the list below it.
  QWidget::setTabOrder(controlli_->cmdOp[0], controlli_->ListFilters);
  // Enter presses the button that has the focus.
  controlli_->cmd[1]->setAutoDefault(true);
  ApplicaStile(*this);
  controlli_->OptMode[filtro_.Includi ? 0 : 1]->setChecked(true);
  PreparaOpzioni({controlli_->OptMode[0], controlli_->OptMode[1]});
  MostraVoci(-1);
  Collega();
}

FrmTandemizeFilter::~FrmTandemizeFilter() = default;

void FrmTandemizeFilter::Collega() {
  Controlli& c = *controlli_;
  connect(c.OptMode[0], &QRadioButton::toggled, this, [this](bool includi) {
    filtro_.Includi = includi;
    AggiornaComandi();
  });
  connect(c.cmdOp[0], &QPushButton::clicked, this, [this] { AggiungiVoce(); });
  connect(c.cmdOp[1], &QPushButton::clicked, this, [this] { RimuoviVoce(); });
  connect(c.cmdOp[2], &QPushButton::clicked, this, [this] { SvuotaVoci(); });
  connect(c.cmd[0], &QPushButton::clicked, this, [this] { Conferma(); });
  connect(c.cmd[1], &QPushButton::clicked, this, [this] { close(); });
  connect(c.ListFilters, &QListWidget::itemSelectionChanged, this, [this] { AggiornaComandi(); });
  // Enter adds what was just typed, and is OK's key again when it has been added.
  connect(c.ComboEstensioni, &QComboBox::editTextChanged, this, [this](const QString& testo) {
    (testo.isEmpty() ? controlli_->cmd : controlli_->cmdOp)[0]->setDefault(true);
  });
  auto* canc = new QShortcut(QKeySequence::Delete, c.ListFilters, nullptr, nullptr, Qt::WidgetShortcut);
  connect(canc, &QShortcut::activated, c.cmdOp[1], &QPushButton::click);
}

void FrmTandemizeFilter::MostraVoci(int selezionata) {
  QListWidget* elenco = controlli_->ListFilters;
  elenco->clear();
  for (const std::string& voce : filtro_.Voci()) elenco->addItem(Testo(voce));
  elenco->setCurrentRow(std::min(selezionata, elenco->count() - 1));
  AggiornaComandi();
}

void FrmTandemizeFilter::AggiornaComandi() {
  Controlli& c = *controlli_;
  const std::size_t numero = filtro_.Voci().size();
  c.lblnumbers->setText(QString::number(numero));
  c.LblEffetto->setText(Testo(filtro_.Effetto()));
  c.cmdOp[1]->setEnabled(!c.ListFilters->selectedItems().isEmpty());
  c.cmdOp[2]->setEnabled(numero > 0);
}

void FrmTandemizeFilter::AggiungiVoce() {
  QComboBox* combo = controlli_->ComboEstensioni;
  const std::string voce = Testo(combo->currentText());
  if (filtro_.Aggiungi(voce)) {
    MostraVoci(static_cast<int>(filtro_.Voci().size()) - 1);
    controlli_->cmd[0]->setDefault(true);
    combo->lineEdit()->selectAll();
  } else if (!voce.empty()) {
    combo->setFocus();
    combo->lineEdit()->selectAll();
  }
}

void FrmTandemizeFilter::RimuoviVoce() {
  const int riga = controlli_->ListFilters->currentRow();
  if (riga < 0) return;
  filtro_.Rimuovi(static_cast<std::size_t>(riga));
  MostraVoci(riga);
}

void FrmTandemizeFilter::SvuotaVoci() {
  filtro_.Svuota();
  MostraVoci(-1);
}

void FrmTandemizeFilter::Conferma() {
  FilterBackup = filtro_.ComponiFiltro();
  close();
}

std::vector<std::string> EstensioniDelSistema() {
  std::vector<std::string> estensioni;
  const QList<QMimeType> tipi = QMimeDatabase().allMimeTypes();
  for (const QMimeType& tipo : tipi)
    for (const QString& modello : tipo.globPatterns()) estensioni.push_back(Testo(modello));
  return estensioni;
}

}  // namespace tandemize

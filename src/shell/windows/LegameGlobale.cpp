#include "shell/windows/LegameGlobale.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QValidator>
#include <algorithm>
#include <utility>

#include "presentation/windows/Testo.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

// Turns keys that a field does not take into nothing, and refuses pasted texts that hold such characters.
class FiltroTasti : public QValidator {
 public:
  FiltroTasti(QLineEdit* campo, int (*filtro)(int)) : QValidator(campo), filtro_(filtro) {
    campo->installEventFilter(this);
    campo->setValidator(this);
  }
  State validate(QString& testo, int& /*posizione*/) const override {
    return std::ranges::all_of(testo, [this](QChar c) { return Preso(c); }) ? Acceptable : Invalid;
  }

 protected:
  // A validator alone would take any key once the field shows something from the file that it refuses.
  bool eventFilter(QObject* /*campo*/, QEvent* evento) override {
    if (evento->type() != QEvent::KeyPress) return false;
    const QString testo = static_cast<QKeyEvent*>(evento)->text();
    return testo.size() == 1 && testo[0].isPrint() && !Preso(testo[0]);
  }

 private:
  [[nodiscard]] bool Preso(QChar c) const { return filtro_(c.unicode()) != 0; }

  int (*filtro_)(int);
};

void MostraGruppo(QButtonGroup& gruppo, const std::optional<int>& attiva) {
  if (!attiva) {
    // The last one that is on cannot be switched off otherwise.
    gruppo.setExclusive(false);
    if (QAbstractButton* acceso = gruppo.checkedButton(); acceso != nullptr) acceso->setChecked(false);
    gruppo.setExclusive(true);
  } else if (QAbstractButton* membro = gruppo.button(*attiva); membro != nullptr) {
    membro->setChecked(true);
  }
}

// A text that is longer than the field takes comes from the file, and is shown whole.
void MostraTesto(QLineEdit& campo, const CasellaTesto& casella) {
  const QString testo = Testo(casella.Text);
  if (casella.MaxLength > 0) campo.setMaxLength(std::max(casella.MaxLength, static_cast<int>(testo.size())));
  if (campo.text() != testo) campo.setText(testo);
  campo.setEnabled(casella.Enabled);
}

// A word that the list does not offer, such as one of another language, stands behind the others.
void MostraCombo(QComboBox& lista, const CasellaCombo& combo) {
  QStringList voci;
  for (const std::string& elemento : combo.Elementi) voci.append(Testo(elemento));
  const QString testo = Testo(combo.Text);
  if (!testo.isEmpty() && !voci.contains(testo)) voci.append(testo);
  lista.clear();
  lista.addItems(voci);
  lista.setCurrentIndex(static_cast<int>(voci.indexOf(testo)));
  lista.setEnabled(combo.Enabled);
}

}  // namespace

LegameGlobale::LegameGlobale(FrmGlobalSetting& modello, QObject* parent)
    : QObject(parent), modello_(modello) {}

std::vector<QRadioButton*> LegameGlobale::Opzioni(const char* nome, GruppoOpzioni C::*gruppo,
                                                  const std::vector<std::string>& didascalie,
                                                  std::function<void(int)> scelta) {
  auto* insieme = new QButtonGroup(this);
  std::vector<QRadioButton*> membri;
  if (!scelta) scelta = [this, gruppo](int membro) { (modello_.*gruppo).Attiva = membro; };
  for (const std::string& didascalia : didascalie) {
    const int indice = static_cast<int>(membri.size());
    membri.push_back(new QRadioButton(Didascalia(didascalia)));
    membri.back()->setObjectName(Membro(nome, indice));
    insieme->addButton(membri.back(), indice);
  }
  connect(insieme, &QButtonGroup::idToggled, this, [this, scelta](int membro, bool acceso) {
    if (acceso && !inMostra_) Esegui([&] { scelta(membro); });
  });
  QuandoMostra([this, insieme, gruppo] { MostraGruppo(*insieme, (modello_.*gruppo).Attiva); });
  return membri;
}

QLineEdit* LegameGlobale::Casella(const char* nome, CasellaTesto C::*casella, const Azione& dopo) {
  auto* campo = new QLineEdit;
  campo->setObjectName(QLatin1String(nome));
  connect(campo, &QLineEdit::textChanged, this, [this, casella, dopo](const QString& testo) {
    if (inMostra_) return;
    (modello_.*casella).Text = Testo(testo);
    if (dopo) Esegui(dopo);
  });
  QuandoMostra([this, campo, casella] { MostraTesto(*campo, modello_.*casella); });
  if ((modello_.*casella).SoloNumeri) new FiltroTasti(campo, SoloCifre);
  return campo;
}

QLineEdit* LegameGlobale::CasellaFiltrata(const char* nome, CasellaTesto C::*casella, int (*filtro)(int)) {
  QLineEdit* campo = Casella(nome, casella);
  new FiltroTasti(campo, filtro);
  return campo;
}

QCheckBox* LegameGlobale::Spunta(const char* nome, std::string_view didascalia, CasellaSpunta C::*spunta,
                                 const Azione& dopo) {
  auto* casella = new QCheckBox(Didascalia(didascalia));
  casella->setObjectName(QLatin1String(nome));
  connect(casella, &QCheckBox::toggled, this, [this, spunta, dopo](bool accesa) {
    if (inMostra_) return;
    (modello_.*spunta).Value = accesa ? 1 : 0;
    if (dopo) Esegui(dopo);
  });
  QuandoMostra([this, casella, spunta] { casella->setChecked((modello_.*spunta).Value != 0); });
  return casella;
}

QComboBox* LegameGlobale::Combo(const char* nome, CasellaCombo C::*combo) {
  auto* lista = new QComboBox;
  lista->setObjectName(QLatin1String(nome));
  lista->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  connect(lista, &QComboBox::currentTextChanged, this, [this, combo](const QString& testo) {
    if (!inMostra_) (modello_.*combo).Text = Testo(testo);
  });
  QuandoMostra([this, lista, combo] { MostraCombo(*lista, modello_.*combo); });
  return lista;
}

QLabel* LegameGlobale::Etichetta(std::string_view testo, QWidget* campo) {
  auto* etichetta = new QLabel(Didascalia(testo));
  etichetta->setBuddy(campo);
  QuandoMostra([etichetta, campo] { etichetta->setEnabled(campo->isEnabled()); });
  return etichetta;
}

void LegameGlobale::Mostra() {
  const bool prima = std::exchange(inMostra_, true);
  for (const Azione& mostra : mostre_) mostra();
  inMostra_ = prima;
}

void LegameGlobale::Esegui(const Azione& azione) {
  azione();
  Mostra();
}

}  // namespace tandemize

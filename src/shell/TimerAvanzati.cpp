// The timer tab of the settings: the option rules, the fields of the advanced timers and their five-line
// entries in the file.
#include <algorithm>

#include "platform/machine.h"
#include "profile/LettoreItem.h"
#include "shell/ChiaviGlobalSetting.h"
#include "shell/DataIntervallo.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/LetturaGlobale.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"
#include "shell/RigheGlobalSetting.h"
#include "shell/Schermo.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::string_view ChiaveTimer = "Timer_Adv_", ChiaveProfilo = "Timer_Adv_Profile1";
constexpr std::string_view OraProposta = "13.30", NumeroProposto = "1";
constexpr int MessaggioGiorni = 267, MessaggioTimerIncompleto = 452;

std::string Oggi() {
  return FormattaDataOra(platform::now(), FormatoData);
}

std::string SenzaBlank(std::string_view testo) {
  while (!testo.empty() && testo.front() == ' ') testo.remove_prefix(1);
  while (!testo.empty() && testo.back() == ' ') testo.remove_suffix(1);
  return std::string(testo);
}

// Value of the next item that holds the key. What a comma cut off the item before is passed over; the entry's
// next key is not, so a key that is missing gives an empty value.
std::string ProssimoValore(LettoreItem& lettore, std::string_view chiave) {
  std::string item;
  for (LettoreItem avanti = lettore; avanti.Leggi(item);) {
    if (item.find(chiave) != std::string::npos) {
      lettore = avanti;
      return std::string(ValoreDiRiga(item, chiave));
    }
    if (item.find(ChiaveTimer) != std::string::npos) break;
  }
  return {};
}

// The number is at most two characters long, the word is the rest.
bool DividiIntervallo(std::string_view valore, TimerAvanzato& timer) {
  timer.IntervalKind = SenzaBlank(valore.substr(std::min<std::size_t>(2, valore.size())));
  return Converti(valore.substr(0, 2), timer.IntervalNumber);
}

RigaTimer RigaDi(const TimerAvanzato& timer) {
  return {timer.Profile1, timer.Profile2, timer.Date, timer.Time,
          std::to_string(timer.IntervalNumber) + " " + timer.IntervalKind};
}

void VuotaESpegni(CasellaTesto& casella) {
  casella.Text.clear();
  casella.Enabled = false;
}

void RiempiEAccendi(CasellaTesto& casella, std::string_view proposta) {
  if (casella.Text.empty()) casella.Text = proposta;
  casella.Enabled = true;
}

}  // namespace

// Only numbers of one digit have the key at the second character, so nine timers are read at most.
FrmGlobalSetting::EsitoRiga FrmGlobalSetting::LeggiTimerAvanzato(std::string_view item, LettoreItem& lettore,
                                                                 LetturaGlobale& lettura) {
  if (item.substr(1, ChiaveProfilo.size()) != ChiaveProfilo) return EsitoRiga::Continua;
  lettura.qualcosa = true;
  TimerAvanzato timer;
  timer.Profile1 = ValoreDiRiga(item, ChiaveProfilo);
  timer.Profile2 = ProssimoValore(lettore, "Timer_Adv_Profile2");
  timer.Date = ProssimoValore(lettore, "Timer_Adv_Date");
  timer.Time = ProssimoValore(lettore, "Timer_Adv_Time");
  const std::string intervallo = ProssimoValore(lettore, "Timer_Adv_Interval");
  lettura.riga = lettore.Riga();
  if (!DividiIntervallo(intervallo, timer)) {
    errore_ = ErroreDiRiga(lettura, std::string(item.substr(0, 1)) + "Timer_Adv_Interval");
    return EsitoRiga::Errore;
  }
  lettura.righeTimer.push_back(RigaDi(timer));
  lettura.timer.push_back(std::move(timer));
  return EsitoRiga::Continua;
}

void FrmGlobalSetting::ScriviTimerAvanzati(std::string& testo) const {
  for (std::size_t i = 0; i < ListTimer.size(); ++i) {
    const RigaTimer& riga = ListTimer[i];
    const std::string inizio = std::to_string(i + 1) + "Timer_Adv_";
    AggiungiRiga(testo, inizio + "Profile1", riga.Profilo);
    AggiungiRiga(testo, inizio + "Profile2", riga.Percorso);
    AggiungiRiga(testo, inizio + "Date", riga.Data);
    AggiungiRiga(testo, inizio + "Time", riga.Ora);
    AggiungiRiga(testo, inizio + "Interval", riga.Intervallo);
  }
}

void FrmGlobalSetting::ScegliTimer(int membro) {
  OptTimer.Attiva = membro;
  if (membro != Timer_Start_Mode) timerCambiato_ = true;
  ApplicaTimer();
}

void FrmGlobalSetting::ApplicaTimer() {
  const bool standard = !OptTipoTimer.Accesa(1);  // in advanced mode the list takes the fields' place
  if (standard && (OptTimer.Accesa(1) || OptTimer.Accesa(2))) {
    if (comboTimer.Text.empty()) comboTimer.Text = Messaggio(MessaggioGiorni);
    comboTimer.Enabled = true;
    RiempiEAccendi(txtTimerInterval, NumeroProposto);
    RiempiEAccendi(txtTimerStart, OraProposta);
    RiempiEAccendi(TxtTimerStartDate, Oggi());
  } else if (!standard || OptTimer.Accesa(0)) {
    comboTimer.Text.clear();
    comboTimer.Enabled = false;
    for (CasellaTesto* casella : {&txtTimerInterval, &txtTimerStart, &TxtTimerStartDate})
      VuotaESpegni(*casella);
  }
}

void FrmGlobalSetting::ApplicaTipoTimer() {
  if (OptTipoTimer.Accesa(0)) {
    ListTimer.clear();
    FineModificaTimer();
  }
  ApplicaTimer();
}

void FrmGlobalSetting::ScegliTipoTimer(int membro, const std::function<std::string()>& ScegliFile) {
  OptTipoTimer.Attiva = membro;
  ApplicaTipoTimer();
  if (membro != 1 || !txtProfilo.Text.empty()) return;
  if (const std::string percorso = ScegliFile(); !percorso.empty()) ImpostaProfilo(percorso);
  txtData.Text = Oggi();
  TxtOra.Text = OraProposta;
  TxtIntervallo.Text = NumeroProposto;
}

bool FrmGlobalSetting::LasciaOraTimer() const {
  if (!txtTimerStart.Enabled || OraValida(txtTimerStart.Text)) return true;
  MsgBox(Messaggio(261), StileInformazione);
  return false;
}

bool FrmGlobalSetting::LasciaDataTimer() const {
  if (!TxtTimerStartDate.Enabled || DataDaTesto(TxtTimerStartDate.Text)) return true;
  MsgBox(Messaggio(406) + " " + FormatoData, StileInformazione);
  return false;
}

void FrmGlobalSetting::ImpostaProfilo(std::string_view percorso) {
  txtProfilo.Text = NomeFinale(percorso);
  txtProfiloTag = percorso;
}

void FrmGlobalSetting::PulisciCampiTimer() {
  for (CasellaTesto* casella : {&txtProfilo, &txtData, &TxtOra, &TxtIntervallo}) casella->Text.clear();
  txtProfiloTag.clear();
  cmbintervallo.Text.clear();
}

void FrmGlobalSetting::FineModificaTimer() {
  PulisciCampiTimer();
  ListTimerSelezione = -1;
  cmdListAbilitato = {true, false, false};
}

// An interval without a number of one or two digits could be written but not read back, so it counts as
// missing.
bool FrmGlobalSetting::RigaDaiCampi(RigaTimer& riga) const {
  const std::string& numero = TxtIntervallo.Text;
  const bool numeroValido =
      !numero.empty() && numero.size() <= 2 &&
      std::all_of(numero.begin(), numero.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (txtProfilo.Text.empty() || txtData.Text.empty() || TxtOra.Text.empty() || cmbintervallo.Text.empty() ||
      !numeroValido) {
    MsgBox(Messaggio(MessaggioTimerIncompleto), StileInformazione);
    return false;
  }
  riga = {txtProfilo.Text, txtProfiloTag, txtData.Text, TxtOra.Text, numero + " " + cmbintervallo.Text};
  return true;
}

void FrmGlobalSetting::AggiungiTimer() {
  RigaTimer riga;
  if (!RigaDaiCampi(riga)) return;
  ListTimer.push_back(std::move(riga));
  FineModificaTimer();
}

void FrmGlobalSetting::RimuoviTimer() {
  if (ListTimerSelezione < 0 || ListTimerSelezione >= static_cast<int>(ListTimer.size())) return;
  ListTimer.erase(ListTimer.begin() + ListTimerSelezione);
  FineModificaTimer();
}

void FrmGlobalSetting::SostituisciTimer() {
  RigaTimer riga;
  if (ListTimerSelezione < 0 || ListTimerSelezione >= static_cast<int>(ListTimer.size())) return;
  if (!RigaDaiCampi(riga)) return;
  ListTimer[static_cast<std::size_t>(ListTimerSelezione)] = std::move(riga);
  FineModificaTimer();
}

void FrmGlobalSetting::SelezionaTimer(int riga) {
  if (riga < 0 || riga >= static_cast<int>(ListTimer.size())) return;
  ListTimerSelezione = riga;
  const RigaTimer& scelta = ListTimer[static_cast<std::size_t>(riga)];
  txtProfilo.Text = scelta.Profilo;
  txtProfiloTag = scelta.Percorso;
  txtData.Text = scelta.Data;
  TxtOra.Text = scelta.Ora;
  TxtIntervallo.Text = SenzaBlank(std::string_view(scelta.Intervallo).substr(0, 2));
  cmbintervallo.Text =
      scelta.Intervallo.size() > 2 ? SenzaBlank(std::string_view(scelta.Intervallo).substr(2)) : "";
  cmdListAbilitato = {true, true, true};
}

int SoloCifreEPunto(int tasto) {
  return tasto == '.' ? tasto : SoloCifre(tasto);
}

bool OraValida(std::string_view testo) {
  const auto cifra = [&](std::size_t i) { return testo[i] >= '0' && testo[i] <= '9'; };
  if (testo.size() != 5 || testo[2] != '.' || !cifra(0) || !cifra(1) || !cifra(3) || !cifra(4)) return false;
  return testo.substr(0, 2) < "24" && testo[3] < '6';
}

}  // namespace tandemize

#include "shell/DataIntervallo.h"

#include <array>
#include <charconv>
#include <cstdlib>

#include "platform/machine.h"
#include "shell/FrmGlobalSetting.h"
#include "shell/Lingua.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

using std::chrono::days, std::chrono::months, std::chrono::sys_days;

constexpr int MinutiDelGiorno = 24 * 60;
constexpr std::int32_t NumeroMassimo = 100'000;  // units; keeps the arithmetic far from its bounds

bool Cifra(char c) {
  return c >= '0' && c <= '9';
}

bool Lettera(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string_view SenzaBlank(std::string_view testo) {
  while (!testo.empty() && testo.front() == ' ') testo.remove_prefix(1);
  while (!testo.empty() && testo.back() == ' ') testo.remove_suffix(1);
  return testo;
}

bool AnnoAmmesso(DataCivile data) {
  return data.ok() && data.year() >= std::chrono::year(1) && data.year() <= std::chrono::year(9999);
}

DataCivile AggiungiMesi(DataCivile data, int numero) {
  const DataCivile spostata = data + months(numero);
  return spostata.ok() ? spostata : DataCivile(spostata.year() / spostata.month() / std::chrono::last);
}

// The year with these two last digits that is nearest to this one.
int AnnoVicino(int dueCifre) {
  const int attuale = static_cast<int>(DataOdierna().year());
  int anno = attuale - attuale % 100 + dueCifre;
  if (anno > attuale + 49) anno -= 100;
  if (anno < attuale - 50) anno += 100;
  return anno;
}

// Reads a date field by field; fields are "d", "m" and "y".
class LettoreData {
 public:
  explicit LettoreData(std::string_view testo) : testo_(testo) {}

  [[nodiscard]] bool Leggi(char campo) {
    SaltaSeparatore();
    const std::size_t massimo = campo == 'y' ? 4 : 2;
    std::size_t cifre = 0;
    while (cifre < massimo && cifre < testo_.size() && Cifra(testo_[cifre])) ++cifre;
    if (cifre == 0) return false;
    int valore = 0;
    std::from_chars(testo_.data(), testo_.data() + cifre, valore);
    testo_.remove_prefix(cifre);
    if (campo == 'd') giorno_ = valore;
    if (campo == 'm') mese_ = valore;
    if (campo == 'y') anno_ = cifre > 2 ? valore : AnnoVicino(valore);
    return true;
  }

  [[nodiscard]] std::optional<DataCivile> Data() const {
    if (!testo_.empty() && testo_ != ".") return std::nullopt;
    const DataCivile data = std::chrono::year(anno_) / mese_ / giorno_;
    return AnnoAmmesso(data) ? std::optional(data) : std::nullopt;
  }

 private:
  void SaltaSeparatore() {
    while (!testo_.empty() && !Cifra(testo_.front()) && !Lettera(testo_.front())) testo_.remove_prefix(1);
  }

  std::string_view testo_;
  int giorno_ = 0, mese_ = 0, anno_ = 0;
};

// "dmy" for "dd/mm/yyyy".
std::string CampiDelFormato() {
  std::string campi;
  char precedente = '\0';
  for (const char c : FormatoData) {
    const char minuscola = c == 'M' ? 'm' : c;
    if (c != precedente && (minuscola == 'd' || minuscola == 'm' || minuscola == 'y')) campi += minuscola;
    precedente = c;
  }
  return campi;
}

bool IniziaConAnno(std::string_view testo) {
  for (std::size_t i = 0; i < 4; ++i)
    if (i >= testo.size() || !Cifra(testo[i])) return false;
  return testo.size() > 4 && !Cifra(testo[4]);
}

}  // namespace

std::optional<UnitaIntervallo> UnitaDiParola(std::string_view parola) {
  if (parola.empty()) return std::nullopt;
  if (parola == Messaggio(184)) return UnitaIntervallo::Ore;
  if (parola == Messaggio(267)) return UnitaIntervallo::Giorni;
  if (parola == Messaggio(268)) return UnitaIntervallo::Settimane;
  if (parola == Messaggio(269)) return UnitaIntervallo::Mesi;
  return std::nullopt;
}

std::int32_t NumeroDiIntervallo(std::string_view testo) {
  testo = SenzaBlank(testo);
  std::int32_t numero = 0;
  const auto [fine, errore] = std::from_chars(testo.data(), testo.data() + testo.size(), numero);
  return errore == std::errc{} && fine == testo.data() + testo.size() ? numero : 0;
}

std::optional<DataCivile> AggiungiIntervallo(DataCivile data, UnitaIntervallo unita, std::int32_t numero) {
  if (!data.ok() || std::abs(numero) > NumeroMassimo) return std::nullopt;
  DataCivile nuova;
  switch (unita) {
    case UnitaIntervallo::Ore:
      nuova = sys_days(data) + days(numero / 24);
      break;
    case UnitaIntervallo::Giorni:
      nuova = sys_days(data) + days(numero);
      break;
    case UnitaIntervallo::Settimane:
      nuova = sys_days(data) + days(numero * 7);
      break;
    case UnitaIntervallo::Mesi:
      nuova = AggiungiMesi(data, numero);
      break;
  }
  return AnnoAmmesso(nuova) ? std::optional(nuova) : std::nullopt;
}

std::optional<DataCivile> DataDaTesto(std::string_view testo) {
  testo = SenzaBlank(testo);
  if (testo.empty() || !(Cifra(testo.front()))) return std::nullopt;
  LettoreData lettore(testo);
  for (const char campo : IniziaConAnno(testo) ? std::string("ymd") : CampiDelFormato())
    if (!lettore.Leggi(campo)) return std::nullopt;
  return lettore.Data();
}

std::string TestoDiData(DataCivile data) {
  // Noon is there on every day and in every zone.
  const platform::CivilTime mezzogiorno{static_cast<int>(data.year()),
                                        static_cast<int>(static_cast<unsigned>(data.month())),
                                        static_cast<int>(static_cast<unsigned>(data.day())), 12};
  const auto momento = platform::utcFromLocal(mezzogiorno);
  return momento ? FormattaDataOra(*momento, FormatoData) : std::string();
}

DataCivile DataOdierna() {
  const platform::CivilTime oggi = platform::localTime(platform::now());
  return std::chrono::year(oggi.year) / oggi.month / oggi.day;
}

std::optional<int> MinutiDaOra(std::string_view ora) {
  if (!OraValida(ora)) return std::nullopt;
  const auto due = [ora](std::size_t i) { return (ora[i] - '0') * 10 + (ora[i + 1] - '0'); };
  return due(0) * 60 + due(3);
}

std::string OraDaMinuti(int minuti) {
  minuti = (minuti % MinutiDelGiorno + MinutiDelGiorno) % MinutiDelGiorno;
  const auto due = [](int n) {
    return std::string{static_cast<char>('0' + n / 10), static_cast<char>('0' + n % 10)};
  };
  return due(minuti / 60) + "." + due(minuti % 60);
}

std::string OraAttuale() {
  return FormattaDataOra(platform::now(), "hh.mm");
}

}  // namespace tandemize

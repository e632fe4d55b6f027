#include "shell/DatePartenza.h"

#include <optional>

namespace tandemize {

namespace {

constexpr std::string_view Separatore = " = ";
constexpr std::string_view SegnoUtf8 = "\xEF\xBB\xBF";
constexpr std::size_t CaratteriAvanzati = 15, CaratteriStandard = 16;  // by which a line is known

struct Riga {
  std::string testo, fine;  // without and with nothing but its line end
};

std::vector<Riga> InRighe(std::string_view testo) {
  std::vector<Riga> righe;
  while (!testo.empty()) {
    std::size_t lunghezza = testo.find_first_of("\r\n");
    if (lunghezza == std::string_view::npos) lunghezza = testo.size();
    const std::string_view resto = testo.substr(lunghezza);
    const std::size_t fine = resto.starts_with("\r\n") ? 2 : resto.empty() ? 0 : 1;
    righe.push_back({std::string(testo.substr(0, lunghezza)), std::string(resto.substr(0, fine))});
    testo.remove_prefix(lunghezza + fine);
  }
  return righe;
}

std::string Uniti(const std::vector<Riga>& righe) {
  std::string testo;
  for (const Riga& riga : righe) testo.append(riga.testo).append(riga.fine);
  return testo;
}

// A byte order mark in front of the first line is no part of its key.
std::string_view SenzaSegno(std::string_view riga) {
  if (riga.starts_with(SegnoUtf8)) riga.remove_prefix(SegnoUtf8.size());
  return riga;
}

std::string_view Valore(std::string_view riga) {
  const std::size_t inizio = riga.find(Separatore);
  if (inizio == std::string_view::npos) return {};
  std::string_view valore = riga.substr(inizio + Separatore.size());
  while (!valore.empty() && valore.front() == ' ') valore.remove_prefix(1);
  while (!valore.empty() && valore.back() == ' ') valore.remove_suffix(1);
  return valore;
}

void ScriviValore(std::string& riga, std::string_view valore) {
  riga.erase(riga.find(Separatore) + Separatore.size());
  riga += valore;
}

bool RigaDiEntrata(std::string_view riga, std::int16_t indice, std::string_view chiaveAvanzata,
                   std::string_view chiaveStandard) {
  riga = SenzaSegno(riga);
  if (indice == 0) return riga.substr(0, CaratteriStandard) == chiaveStandard;
  return riga.substr(0, CaratteriAvanzati) == std::to_string(indice) + std::string(chiaveAvanzata);
}

void AggiungiErrato(std::vector<ValoreErrato>& errati, std::string_view riga) {
  riga = SenzaSegno(riga);
  errati.push_back({std::string(riga.substr(0, riga.find(Separatore))), std::string(Valore(riga))});
}

void AvanzaData(std::string& riga, UnitaIntervallo unita, std::int32_t numero, std::string& Data,
                std::vector<ValoreErrato>& errati) {
  const auto vecchia = DataDaTesto(Valore(riga));
  const auto nuova = vecchia ? AggiungiIntervallo(*vecchia, unita, numero) : std::nullopt;
  if (!nuova) return AggiungiErrato(errati, riga);
  const std::string testo = TestoDiData(*nuova);
  // Compared as texts, as they stand in the file: where the day comes first, "04/02/2030" is not greater than
  // "31/01/2030", and a date by hours then stays where it is.
  if (unita == UnitaIntervallo::Ore && testo <= TestoDiData(*vecchia)) return;
  ScriviValore(riga, testo);
  Data = testo;
}

// The date does not follow when the time wraps at midnight: a run by hours ends its row with the day, and
// stands on a time that has passed until somebody sets a new date.
void AvanzaOra(std::string& riga, std::int32_t numero, std::string& Ora, std::vector<ValoreErrato>& errati) {
  const auto minuti = MinutiDaOra(Valore(riga));
  if (!minuti) return AggiungiErrato(errati, riga);
  Ora = OraDaMinuti(*minuti + numero % 24 * 60);
  ScriviValore(riga, Ora);
}

// Value of the first line whose key this is, empty if there is none.
std::string_view ValoreDiChiave(const std::vector<Riga>& righe, std::string_view chiave) {
  for (const Riga& riga : righe)
    if (SenzaSegno(riga.testo).starts_with(chiave)) return Valore(riga.testo);
  return {};
}

struct Intervallo {
  std::int32_t numero = 0;
  std::optional<UnitaIntervallo> unita;
};

Intervallo IntervalloStandard(const std::vector<Riga>& righe) {
  return {NumeroDiIntervallo(ValoreDiChiave(righe, "Timer_Interval_Number")),
          UnitaDiParola(ValoreDiChiave(righe, "Timer_Interval_Type"))};
}

// The number is the first two characters of the value, the word is the rest.
Intervallo IntervalloAvanzato(const std::vector<Riga>& righe, char cifra) {
  const std::string_view valore = ValoreDiChiave(righe, cifra + std::string("Timer_Adv_Interval"));
  std::string_view parola = valore.size() > 2 ? valore.substr(2) : std::string_view();
  while (!parola.empty() && parola.front() == ' ') parola.remove_prefix(1);
  return {NumeroDiIntervallo(valore.substr(0, 2)), UnitaDiParola(parola)};
}

// The interval of the entry whose date this line holds; without a unit for any other line.
Intervallo IntervalloDellaData(const std::vector<Riga>& righe, std::string_view riga, bool avanzato) {
  riga = SenzaSegno(riga);
  if (!avanzato) return riga.starts_with("Timer_Start_Date") ? IntervalloStandard(righe) : Intervallo{};
  const bool cifra = !riga.empty() && riga.front() >= '0' && riga.front() <= '9';
  if (!cifra || !riga.substr(1).starts_with("Timer_Adv_Date")) return {};
  return IntervalloAvanzato(righe, riga.front());
}

bool AvanzaOltreOggi(std::string& riga, const Intervallo& intervallo, DataCivile oggi,
                     std::vector<ValoreErrato>& errati) {
  std::optional<DataCivile> data = DataDaTesto(Valore(riga));
  if (data && *data >= oggi) return false;
  while (data && *data < oggi) data = AggiungiIntervallo(*data, *intervallo.unita, intervallo.numero);
  if (!data) {
    AggiungiErrato(errati, riga);
    return false;
  }
  ScriviValore(riga, TestoDiData(*data));
  return true;
}

}  // namespace

void AvanzaPartenza(std::string& testo, std::string_view Tipo, std::int32_t Numero, std::string& Ora,
                    std::string& Data, std::int16_t Indice, std::vector<ValoreErrato>& errati) {
  const auto unita = UnitaDiParola(Tipo);
  if (!unita) return;
  std::vector<Riga> righe = InRighe(testo);
  for (Riga& riga : righe) {
    if (riga.testo.find(Separatore) == std::string::npos) continue;
    if (RigaDiEntrata(riga.testo, Indice, "Timer_Adv_Date", "Timer_Start_Date"))
      AvanzaData(riga.testo, *unita, Numero, Data, errati);
    else if (*unita == UnitaIntervallo::Ore &&
             RigaDiEntrata(riga.testo, Indice, "Timer_Adv_Time", "Timer_Start_Time"))
      AvanzaOra(riga.testo, Numero, Ora, errati);
  }
  testo = Uniti(righe);
}

bool AvanzaDateScadute(std::string& testo, DataCivile oggi, std::vector<ValoreErrato>& errati) {
  std::vector<Riga> righe = InRighe(testo);
  const std::string tipo(ValoreDiChiave(righe, "Timer_Start_Type"));
  if (tipo != "0" && tipo != "1") return false;
  bool cambiato = false;
  for (Riga& riga : righe) {
    if (Valore(riga.testo).empty()) continue;
    const Intervallo intervallo = IntervalloDellaData(righe, riga.testo, tipo == "1");
    if (!intervallo.unita || *intervallo.unita == UnitaIntervallo::Ore || intervallo.numero < 1) continue;
    cambiato |= AvanzaOltreOggi(riga.testo, intervallo, oggi, errati);
  }
  if (cambiato) testo = Uniti(righe);
  return cambiato;
}

}  // namespace tandemize

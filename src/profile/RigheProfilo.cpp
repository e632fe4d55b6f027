#include "profile/RigheProfilo.h"

#include <algorithm>

#include "platform/newfile.h"

namespace tandemize {

platform::ErrorCode LeggiTestoProfilo(const std::string& path, std::string& testo) {
  return platform::readFile(path, testo, LimiteFileProfilo);
}

bool LettoreRighe::Leggi(std::string_view& riga) {
  if (resto_.empty()) return false;
  const std::size_t fine = std::min(resto_.find_first_of("\r\n"), resto_.size());
  riga = resto_.substr(0, fine);
  resto_.remove_prefix(fine);
  resto_.remove_prefix(resto_.starts_with("\r\n") ? 2 : std::min<std::size_t>(1, resto_.size()));
  ++numero_;
  return true;
}

bool ChiaveProfilo::Uguali(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Minuscola(x) == Minuscola(y); });
}

std::size_t ChiaveProfilo::Trova(std::string_view riga) const {
  const std::size_t n = testo_.size();
  for (std::size_t i = 0; i + n <= riga.size(); i += salto_[static_cast<unsigned char>(riga[i + n - 1])])
    if (Uguali(riga.substr(i, n), testo_)) return i;
  return std::string_view::npos;
}

bool ChiaveProfilo::Apre(std::string_view riga) const {
  return Uguali(riga.substr(0, testo_.size()), testo_);
}

std::string_view ChiaveProfilo::Dietro(std::string_view riga) const {
  const std::size_t posizione = Trova(riga);
  return posizione == std::string_view::npos ? std::string_view{} : riga.substr(posizione + testo_.size());
}

std::string_view SenzaBlankIniziali(std::string_view testo) {
  testo.remove_prefix(std::min(testo.find_first_not_of(' '), testo.size()));
  return testo;
}

namespace {

// Bytes of the first character of a text that is not empty.
std::size_t LunghezzaCarattere(std::string_view testo) {
  const auto primo = static_cast<unsigned char>(testo[0]);
  const std::size_t n = primo >= 0xF0 ? 4 : primo >= 0xE0 ? 3 : primo >= 0xC2 ? 2 : 1;
  if (primo > 0xF4 || n > testo.size()) return 1;
  const auto seguito = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  const std::string_view altri = testo.substr(1, n - 1);
  return std::all_of(altri.begin(), altri.end(), seguito) ? n : 1;
}

std::size_t ContaCifre(std::string_view testo) {
  return static_cast<std::size_t>(std::find_if_not(testo.begin(), testo.end(), Cifra) - testo.begin());
}

std::string_view SenzaBlank(std::string_view testo) {
  testo = SenzaBlankIniziali(testo);
  return testo.substr(0, testo.find_last_not_of(' ') + 1);
}

// Digits as a number, held at a bound far beyond every field.
std::int64_t ValoreCifre(std::string_view cifre) {
  constexpr std::int64_t Enorme = 1'000'000'000'000;
  std::int64_t valore = 0;
  for (const char c : cifre) valore = std::min(Enorme, valore * 10 + (c - '0'));
  return valore;
}

bool ArrotondaInSu(std::int64_t intero, std::string_view frazione) {
  if (frazione.empty() || frazione[0] < '5') return false;
  const bool metàEsatta = frazione[0] == '5' && frazione.find_first_not_of('0', 1) == std::string_view::npos;
  return !metàEsatta || intero % 2 != 0;
}

}  // namespace

std::string_view DaCarattere(std::string_view testo, std::size_t posizione) {
  while (posizione > 1 && !testo.empty()) {
    testo.remove_prefix(LunghezzaCarattere(testo));
    --posizione;
  }
  return testo;
}

std::optional<NumeroDecimale> LeggiDecimale(std::string_view testo) {
  NumeroDecimale numero;
  if (!testo.empty() && (testo[0] == '-' || testo[0] == '+')) {
    numero.negativo = testo[0] == '-';
    testo.remove_prefix(1);
  }
  numero.intero = testo.substr(0, ContaCifre(testo));
  testo.remove_prefix(numero.intero.size());
  if (!testo.empty() && testo[0] == '.') {
    numero.frazione = testo.substr(1, ContaCifre(testo.substr(1)));
    testo.remove_prefix(1 + numero.frazione.size());
  }
  if (!testo.empty() || (numero.intero.empty() && numero.frazione.empty())) return std::nullopt;
  numero.intero.remove_prefix(std::min(numero.intero.find_first_not_of('0'), numero.intero.size()));
  return numero;
}

std::int32_t ConvertiIntero(std::string_view testo, std::int64_t minimo, std::int64_t massimo,
                            std::int64_t& valore) {
  const std::optional<NumeroDecimale> numero = LeggiDecimale(SenzaBlank(testo));
  if (!numero) return ErroreTipo;
  std::int64_t letto = ValoreCifre(numero->intero);
  if (ArrotondaInSu(letto, numero->frazione)) ++letto;
  if (numero->negativo) letto = -letto;
  if (letto < minimo || letto > massimo) return ErroreOverflow;
  valore = letto;
  return 0;
}

}  // namespace tandemize

// Dates and times as text. A format is taken apart once; the log and every listed file ask for the same few.
#include <array>
#include <vector>

#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

namespace {

enum class Campo { Testo, Giorno, Mese, Anno, Anno2, Ora, Ora12, Minuto, Secondo, MetàGiorno };

struct Parte {
  Campo campo;
  int cifre;          // at least that many, filled with zeros
  std::string testo;  // of Campo::Testo
};

struct Formato {
  std::string testo;
  std::vector<Parte> parti;
};

Campo CampoDi(char lettera, int quante, bool dopoOra) {
  switch (lettera) {
    case 'd':
      return Campo::Giorno;
    case 'm':
      return dopoOra ? Campo::Minuto : Campo::Mese;
    case 'M':
      return Campo::Mese;
    case 'y':
      return quante > 2 ? Campo::Anno : Campo::Anno2;
    case 'h':
    case 'H':
      return Campo::Ora;
    case 'n':
      return Campo::Minuto;
    case 's':
      return Campo::Secondo;
    case 't':
      return quante == 2 ? Campo::MetàGiorno : Campo::Testo;
    default:
      return Campo::Testo;
  }
}

int CifreDi(Campo campo, int quante) {
  if (campo == Campo::Anno) return 4;
  if (campo == Campo::Anno2) return 2;
  return quante > 1 ? 2 : 1;
}

// With the half of the day ("tt") a small "h" counts to 12.
void ContaFinoADodici(const std::string& testo, std::vector<Parte>& parti) {
  if (testo.find('H') != std::string::npos) return;
  bool metà = false;
  for (const Parte& parte : parti) metà = metà || parte.campo == Campo::MetàGiorno;
  for (Parte& parte : parti)
    if (metà && parte.campo == Campo::Ora) parte.campo = Campo::Ora12;
}

std::vector<Parte> Scomponi(const std::string& testo) {
  std::vector<Parte> parti;
  bool dopoOra = false;
  for (std::size_t i = 0; i < testo.size();) {
    std::size_t fine = i + 1;
    while (fine < testo.size() && testo[fine] == testo[i]) ++fine;
    const int quante = static_cast<int>(fine - i);
    const Campo campo = CampoDi(testo[i], quante, dopoOra);
    // The separator between an hour and its minute does not part them.
    if (campo != Campo::Testo) dopoOra = campo == Campo::Ora;
    if (campo == Campo::Testo && !parti.empty() && parti.back().campo == Campo::Testo)
      parti.back().testo.append(testo, i, fine - i);
    else
      parti.push_back(
          {campo, CifreDi(campo, quante), campo == Campo::Testo ? testo.substr(i, fine - i) : ""});
    i = fine;
  }
  ContaFinoADodici(testo, parti);
  return parti;
}

const std::vector<Parte>& PartiDi(std::string_view testo) {
  static std::array<Formato, 4> ricordati;
  static std::size_t prossimo = 0;
  for (const Formato& formato : ricordati)
    if (formato.testo == testo) return formato.parti;
  Formato& nuovo = ricordati[prossimo];
  prossimo = (prossimo + 1) % ricordati.size();
  nuovo.testo = testo;
  nuovo.parti = Scomponi(nuovo.testo);
  return nuovo.parti;
}

int Valore(Campo campo, const platform::CivilTime& tempo) {
  switch (campo) {
    case Campo::Giorno:
      return tempo.day;
    case Campo::Mese:
      return tempo.month;
    case Campo::Anno:
      return tempo.year;
    case Campo::Anno2:
      return tempo.year % 100;
    case Campo::Ora:
      return tempo.hour;
    case Campo::Ora12:
      return (tempo.hour + 11) % 12 + 1;
    case Campo::Minuto:
      return tempo.minute;
    case Campo::Secondo:
      return tempo.second;
    case Campo::Testo:
    case Campo::MetàGiorno:
      break;
  }
  return 0;
}

void Aggiungi(std::string& testo, int valore, int cifre) {
  std::array<char, 12> scritte{};
  std::size_t n = scritte.size();
  unsigned resto = valore < 0 ? 0U - static_cast<unsigned>(valore) : static_cast<unsigned>(valore);
  for (int scritta = 0; resto > 0 || scritta < cifre; ++scritta, resto /= 10)
    scritte[--n] = static_cast<char>('0' + resto % 10);
  if (valore < 0) scritte[--n] = '-';
  testo.append(scritte.data() + n, scritte.size() - n);
}

void Aggiungi(std::string& testo, const platform::CivilTime& tempo, std::string_view formato) {
  for (const Parte& parte : PartiDi(formato)) {
    if (parte.campo == Campo::Testo)
      testo += parte.testo;
    else if (parte.campo == Campo::MetàGiorno)
      testo += tempo.hour < 12 ? "AM" : "PM";
    else
      Aggiungi(testo, Valore(parte.campo, tempo), parte.cifre);
  }
}

}  // namespace

std::string FormattaDataOra(std::int64_t secondiUtc, std::string_view formato) {
  std::string testo;
  Aggiungi(testo, platform::localTime(secondiUtc), formato);
  return testo;
}

std::string DataOraGenerale(std::int64_t secondiUtc) {
  const platform::CivilTime tempo = platform::localTime(secondiUtc);
  std::string testo;
  testo.reserve(24);
  Aggiungi(testo, tempo, FormatoData);
  testo += ' ';
  Aggiungi(testo, tempo, FormatoOra);
  return testo;
}

}  // namespace tandemize

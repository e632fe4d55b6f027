#include "mail/ComposizioneMessaggio.h"

#include "platform/calendarnames.h"
#include "platform/machine.h"
#include "shell/ModuloPrincipale.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::string_view NomeProdotto = "Tandemize Backup";
constexpr std::string_view ACapo = "\r\n";
constexpr std::string_view TestateDelleParti =
    "Mime-Version: 1.0\r\n"
    "Content-Type: multipart/mixed; boundary=NextMimePart\r\n"
    "Content-Transfer-Encoding: 7bit\r\n"
    "This is a multi-part message in MIME format.\r\n"
    "\r\n"
    "--NextMimePart\r\n";

int GiornoDellaSettimana(std::int64_t secondiUtc) {
  const platform::CivilTime tempo = platform::localTime(secondiUtc);
  // Sakamoto's rule; 0 is Sunday.
  constexpr int Scarti[] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
  const int anno = tempo.month < 3 ? tempo.year - 1 : tempo.year;
  return (anno + anno / 4 - anno / 100 + anno / 400 + Scarti[tempo.month - 1] + tempo.day) % 7;
}

// Bytes of the character at `i`; a byte that is not UTF-8 is a character of its own.
std::size_t ByteDelCarattere(std::string_view testo, std::size_t i) {
  const auto primo = static_cast<unsigned char>(testo[i]);
  const std::size_t byte = primo < 0xC0U ? 1 : primo < 0xE0U ? 2 : primo < 0xF0U ? 3 : 4;
  if (i + byte > testo.size()) return 1;
  for (std::size_t k = 1; k < byte; ++k)
    if ((static_cast<unsigned char>(testo[i + k]) & 0xC0U) != 0x80U) return 1;
  return byte;
}

// True for a full stop at `i` that has a line end on both sides. A line of the body ends in LF alone, and
// servers differ in what they take for a line end, so that CR LF and LF count.
bool PuntoSolo(std::string_view testo, std::size_t i) {
  if (testo[i] != '.' || i == 0 || testo[i - 1] != '\n') return false;
  const std::string_view dopo = testo.substr(i + 1);
  return dopo.starts_with('\n') || dopo.starts_with(ACapo);
}

std::vector<std::size_t> PuntiSoli(std::string_view testo) {
  std::vector<std::size_t> punti;
  for (std::size_t i = testo.find('.'); i != std::string_view::npos; i = testo.find('.', i + 1))
    if (PuntoSolo(testo, i)) punti.push_back(i);
  return punti;
}

void ProteggiGiunture(std::vector<PezzoMessaggio>& pezzi) {
  std::string intero;
  for (const PezzoMessaggio& pezzo : pezzi) intero += pezzo.testo;
  const std::vector<std::size_t> punti = PuntiSoli(intero);
  std::size_t fine = intero.size();
  std::size_t daMettere = punti.size();
  for (std::size_t k = pezzi.size(); k-- > 0 && daMettere > 0;) {
    const std::size_t inizio = fine - pezzi[k].testo.size();
    for (; daMettere > 0 && punti[daMettere - 1] >= inizio; --daMettere)
      pezzi[k].testo.insert(punti[daMettere - 1] - inizio, 1, '\0');
    fine = inizio;
  }
}

}  // namespace

std::string_view PrimoPezzo(std::string_view testo) {
  std::size_t fine = 0;
  for (std::size_t caratteri = 0; fine < testo.size() && caratteri < CaratteriPerInvio; ++caratteri)
    fine += ByteDelCarattere(testo, fine);
  return testo.substr(0, fine);
}

std::string DataDelMessaggio(std::int64_t secondiUtc) {
  return platform::weekdayName(GiornoDellaSettimana(secondiUtc)) + " , " +
         FormattaDataOra(secondiUtc, "dd ") +
         platform::shortMonthName(platform::localTime(secondiUtc).month) +
         FormattaDataOra(secondiUtc, " yyyy hh:nn:ss tt");
}

std::string TestoMessaggio(std::string_view from, std::string_view to, std::string_view subject,
                           std::string_view body, std::int64_t secondiUtc, bool conAllegati) {
  std::string testo;
  const auto testata = [&testo](std::string_view nome, std::string_view valore) {
    testo += nome;
    testo += SuUnaRiga(valore);
    testo += ACapo;
  };
  testata("From: ", from);
  testata("To: ", to);
  testata("Date: ", DataDelMessaggio(secondiUtc));
  testata("Subject: ", subject);
  testata("X-Mailer: ", std::string(NomeProdotto) + " - " + TitoloApplicazione);
  if (conAllegati) testo += TestateDelleParti;
  testo += ACapo;
  testo += SenzaBianchi(body);
  testo += ACapo;
  return testo;
}

std::string TestataAllegato(std::string_view nomeFile) {
  return "\r\n--NextMimePart\r\n"
         "Content-Type: application/octet-stream; name=Mimefilename\r\n"
         "Content-Transfer-Encoding: base64\r\n"
         "Content-Disposition: attachment; filename=\"" +
         SuUnaRiga(nomeFile) + "\"\r\n\r\n";
}

std::string ProteggiPunti(std::string_view testo) {
  std::string protetto;
  protetto.reserve(testo.size() + 16);
  std::size_t copiati = 0;
  for (const std::size_t punto : PuntiSoli(testo)) {
    protetto += testo.substr(copiati, punto - copiati);
    protetto += '\0';
    copiati = punto;
  }
  protetto += testo.substr(copiati);
  return protetto;
}

std::vector<PezzoMessaggio> PezziDelMessaggio(std::string_view testo) {
  std::vector<PezzoMessaggio> pezzi;
  std::size_t posizione = 1;
  while (!testo.empty()) {
    const std::string_view pezzo = PrimoPezzo(testo);
    pezzi.push_back({posizione, std::string(SenzaBianchi(pezzo))});
    posizione += CaratteriPerInvio;
    testo.remove_prefix(pezzo.size());
  }
  ProteggiGiunture(pezzi);
  return pezzi;
}

std::string_view SenzaBianchi(std::string_view testo) {
  const std::size_t primo = testo.find_first_not_of(' ');
  if (primo == std::string_view::npos) return {};
  return testo.substr(primo, testo.find_last_not_of(' ') - primo + 1);
}

std::string SuUnaRiga(std::string_view testo) {
  std::string riga(testo);
  for (char& c : riga)
    if (c == '\r' || c == '\n' || c == '\0') c = ' ';
  return riga;
}

}  // namespace tandemize

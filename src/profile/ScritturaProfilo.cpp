// ScriviFileProfilo: replaces the lines of one section and leaves the others. The file is read item by item
// and written anew item by item, so no list of its lines is held.
#include <array>
#include <utility>

#include "platform/newfile.h"
#include "profile/LettoreItem.h"
#include "profile/ModelloBackup.h"
#include "profile/ModuloProfilo.h"
#include "profile/RigheProfilo.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {
namespace {

constexpr std::int16_t SezioneFiltro = -2, SezioneSincronizzazione = -1;

void ScriviRiga(std::string& uscita, std::string_view riga) {
  if (riga.empty()) return;
  uscita += riga;
  uscita += "\r\n";
}

// A key as the rewriting of the synchronisation section finds it: in the line as it stands or less its last
// character, so that the lines of a new profile match, which have no blank behind their "=".
struct ChiaveScrittura {
  explicit constexpr ChiaveScrittura(std::string_view testo)
      : intera(testo), senzaUltimo(testo.substr(0, testo.size() - 1)) {}

  [[nodiscard]] bool ContieneChiave(std::string_view riga) const { return senzaUltimo.In(riga); }

  ChiaveProfilo intera, senzaUltimo;
};

// One of the two lists of numbered lines, on its way from the old file to the new one.
class ElencoRighe {
 public:
  ElencoRighe(std::string_view chiave, const std::vector<std::string>& valori)
      : chiave_(chiave), valori_(valori) {}

  // Takes a line of the list: the first one is replaced by all the values, numbered from 0, the spare last
  // one apart; every other one is dropped. The list is thus brought to the wanted number of lines even where
  // something lies between its lines, as the rest of a path with a comma does. False if the line is none of
  // the list, or there are no values at all.
  bool AggiornaRighe(std::string_view riga, std::string& uscita) {
    if (valori_.empty() || !chiave_.intera.Apre(riga)) return false;
    if (!std::exchange(scritto_, true))
      for (std::size_t j = 0; j + 1 < valori_.size(); ++j)
        ScriviRiga(uscita, std::string(chiave_.intera.Testo()) + std::to_string(j) + " = " + valori_[j]);
    return true;
  }

 private:
  ChiaveScrittura chiave_;
  const std::vector<std::string>& valori_;
  bool scritto_ = false;
};

using OpzioneScritta = std::pair<ChiaveScrittura, std::int32_t>;

std::array<OpzioneScritta, 8> OpzioniScritte(const ValoriSincronizzazione& valori) {
  return {{{ChiaveScrittura{"FixFileOption = "}, valori.FixFileOption},
           {ChiaveScrittura{"FixScanAfterFix = "}, valori.FixScanAfterFix},
           {ChiaveScrittura{"SourceNotChange = "}, valori.SourceNotChange},
           {ChiaveScrittura{"EraseFile = "}, valori.EraseFile},
           {ChiaveScrittura{"AutoTandemize = "}, valori.AutoTandemize},
           {ChiaveScrittura{"FtpEnabled = "}, valori.FtpEnabled},
           {ChiaveScrittura{"CompareMethod = "}, valori.CompareMethod},
           {ChiaveScrittura{"TandemMode = "}, valori.TandemMode}}};
}

std::string ConSincronizzazione(std::string_view testo, const ValoriSincronizzazione& valori) {
  ElencoRighe percorsi(PrefissoPercorso, valori.percorsi), server(PrefissoServer, valori.serverFtp);
  const std::array<OpzioneScritta, 8> opzioni = OpzioniScritte(valori);
  LettoreItem lettore(testo);
  std::string item, uscita;
  while (lettore.Leggi(item)) {
    if (percorsi.AggiornaRighe(item, uscita) || server.AggiornaRighe(item, uscita)) continue;
    for (const auto& [chiave, valore] : opzioni)
      if (chiave.ContieneChiave(item)) item = std::string(chiave.intera.Testo()) + std::to_string(valore);
    ScriviRiga(uscita, item);
  }
  return uscita;
}

void ScriviElenco(std::string& uscita, const std::string& inizio, const std::vector<std::string>& elenco) {
  if (elenco.empty()) ScriviRiga(uscita, inizio + "0 = ");
  for (std::size_t j = 0; j < elenco.size(); ++j)
    ScriviRiga(uscita, inizio + std::to_string(j) + " = " + elenco[j]);
}

void ScriviOggetto(std::string& uscita, std::size_t numero, const OggettoBackup& oggetto) {
  const std::string k = std::to_string(numero);
  const auto scrivi = [&](std::string_view nome, const std::string& valore) {
    ScriviRiga(uscita, k + std::string(nome) + " = " + valore);
  };
  scrivi("BackIndice", std::to_string(oggetto.BackIndice));
  scrivi("BackTipoOggetto", std::to_string(oggetto.BackTipoOggetto));
  scrivi("BackTipoTrasferimento", std::to_string(oggetto.BackTipoTrasferimento));
  ScriviElenco(uscita, k + "BackLinkTo", oggetto.BackLinkTo);
  scrivi("BackDescrizione", oggetto.BackDescrizione);
  scrivi("BackPath", oggetto.BackPath);
  ScriviElenco(uscita, k + "Files", oggetto.Files);
  scrivi("BackTop", std::to_string(oggetto.BackTop));
  scrivi("BackLeft", std::to_string(oggetto.BackLeft));
  scrivi("BackHeight", std::to_string(oggetto.BackHeight));
  scrivi("BackWidth", std::to_string(oggetto.BackWidth));
  scrivi("BackFigura", std::to_string(oggetto.BackFigura));
  scrivi("BackFtpServerDescription", oggetto.BackFtpServerDescription);
}

// The object section begins at the first item whose first character is a digit, also where that item is only
// the rest of a value that a comma cut in two. A file without any line takes no objects.
std::string ConOggetti(std::string_view testo, std::size_t ultimo) {
  LettoreItem lettore(testo);
  std::string item, uscita;
  while (lettore.Leggi(item) && (item.empty() || !Cifra(item[0]))) ScriviRiga(uscita, item);
  if (testo.empty()) return uscita;
  for (std::size_t k = 1; k <= ultimo; ++k) ScriviOggetto(uscita, k, ArrayOggetti[k]);
  return uscita;
}

platform::ErrorCode ScriviCompagno() {
  std::string uscita;
  ScriviRiga(uscita, std::string(ChiaveFiltro.Testo()) + FilterBackup);
  ScriviRiga(uscita, std::string(ChiaveIgnora.Testo()) + (FilterIgnoreInvalidPath != 0 ? "1" : "0"));
  return platform::replaceFile(RestituisciNomeFiltro(FileProfilo), uscita);
}

}  // namespace

platform::ErrorCode ScriviFileProfilo(const ValoriSincronizzazione& valori, std::int16_t sezione) {
  if (sezione == SezioneFiltro) return ScriviCompagno();
  if (sezione < SezioneFiltro || sezione > static_cast<std::int64_t>(UltimoOggetto()))
    return platform::kInvalidParameter;
  std::string testo;
  if (const platform::ErrorCode codice = LeggiTestoProfilo(FileProfilo, testo); codice != platform::kNoError)
    return codice;
  const std::string uscita = sezione == SezioneSincronizzazione
                                 ? ConSincronizzazione(testo, valori)
                                 : ConOggetti(testo, static_cast<std::size_t>(sezione));
  // What could not be read back must not take the place of what can.
  if (uscita.size() > LimiteFileProfilo) return platform::kFileTooLarge;
  return platform::replaceFile(FileProfilo, uscita);
}

}  // namespace tandemize

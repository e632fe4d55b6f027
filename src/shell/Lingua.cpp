#include "shell/Lingua.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/errors.h"
#include "platform/machine.h"
#include "platform/newfile.h"
#include "shell/DopoCaratteri.h"
#include "shell/Impostazioni.h"
#include "shell/ModuloPrincipale.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"

namespace tandemize {

std::array<std::string, UltimoMessaggio + 1> Messaggi;
std::string MessaggioRiprova;

namespace {

using Tabella = std::array<std::string, UltimoMessaggio + 1>;

constexpr int MessaggioLinguaMancante = 262, MessaggioNuovoTentativo = 415;
constexpr std::size_t CaratteriSaltati = 5;      // the numbering column, for the translators' eyes
constexpr std::string_view Segno = "=%!%=";      // what follows is a remark for the translators
constexpr std::uint64_t LimiteFile = 4'194'304;  // bytes; a thousand lines are far below it
constexpr std::string_view SegnoUtf8 = "\xEF\xBB\xBF";

std::string_view NomeFileLingua() {
  if (Language == 0) return "Lang_Ita.dat";
  return Language == 1 ? "Lang_Eng.dat" : "";
}

// Full path of the language's file, or of the folder for a language that has none.
std::string PercorsoFileLingua() {
  const std::string_view nome = NomeFileLingua();
  return nome.empty() ? PercorsoApplicazione : platform::findIgnoringCase(PercorsoApplicazione, nome);
}

std::string_view TestoDiRiga(std::string_view riga) {
  const std::string_view testo = DopoCaratteri(riga, CaratteriSaltati);
  const std::size_t segno = testo.find(Segno);
  // A mark at the very start is not cut: a remark alone stays visible instead of leaving a caption empty.
  return segno == std::string_view::npos || segno == 0 ? testo : testo.substr(0, segno);
}

std::string_view TogliRiga(std::string_view& resto) {
  const std::size_t fine = resto.find('\n');
  std::string_view riga = resto.substr(0, fine);
  resto.remove_prefix(fine == std::string_view::npos ? resto.size() : fine + 1);
  if (!riga.empty() && riga.back() == '\r') riga.remove_suffix(1);
  return riga;
}

// Empty if the text has more lines than the table has places.
std::optional<Tabella> LeggiTabella(std::string_view contenuto) {
  Tabella tabella;
  if (contenuto.substr(0, SegnoUtf8.size()) == SegnoUtf8) contenuto.remove_prefix(SegnoUtf8.size());
  for (std::size_t numero = 1; !contenuto.empty(); ++numero) {
    const std::string_view riga = TogliRiga(contenuto);
    if (numero >= tabella.size()) return std::nullopt;
    tabella[numero] = TestoDiRiga(riga);
  }
  return tabella;
}

EsitoLingua Fine(const std::string& testo, EsitoLingua esito) {
  MsgBox(testo, StileCritico);
  schermo().FineProgramma(4);
  return esito;
}

}  // namespace

EsitoLingua CaricaLingua() {
  const std::string percorso = PercorsoFileLingua();
  std::string contenuto;
  const platform::ErrorCode errore = NomeFileLingua().empty()
                                         ? platform::kFileNotFound
                                         : platform::readFile(percorso, contenuto, LimiteFile);
  if (errore != platform::kNoError && errore != platform::kFileTooLarge)
    return Fine(Messaggi[MessaggioLinguaMancante] + " '" + percorso, EsitoLingua::FileMancante);

  std::optional<Tabella> tabella;
  if (errore == platform::kNoError) tabella = LeggiTabella(contenuto);
  if (!tabella)
    return Fine(InLingua("Il file della lingua '", "The language file '") + percorso +
                    InLingua("' ha più di 1000 righe.", "' has more than 1000 lines."),
                EsitoLingua::TroppeRighe);
  Messaggi = std::move(*tabella);
  MessaggioRiprova = Messaggi[MessaggioNuovoTentativo];
  return EsitoLingua::Caricata;
}

const std::string& Messaggio(int numero) {
  if (numero >= 0 && numero <= UltimoMessaggio) return Messaggi[static_cast<std::size_t>(numero)];
  MsgBox(InLingua("Numero di messaggio fuori dai limiti: ", "Message number out of bounds: ") +
             std::to_string(numero),
         StileCritico);
  schermo().FineProgramma(4);
  return Messaggi[0];
}

void AzzeraLingua() {
  Messaggi.fill({});
  MessaggioRiprova.clear();
}

}  // namespace tandemize

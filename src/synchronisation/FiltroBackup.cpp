#include "synchronisation/FiltroBackup.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "shell/Lingua.h"
#include "shell/Schermo.h"
#include "shell/TestiPropri.h"
#include "storage/Percorsi.h"

namespace tandemize {

namespace {

constexpr std::string_view InizioVoce = "*.";

bool NonConservabile(char carattere) {
  return carattere == '|' || carattere == ',' || static_cast<unsigned char>(carattere) < ' ';
}

bool Conservabile(std::string_view voce) {
  return std::ranges::none_of(voce, NonConservabile);
}

std::string ElencoVoci(const std::vector<std::string>& voci) {
  std::string testo;
  for (const std::string& voce : voci) testo.append(testo.empty() ? "" : ", ").append(voce);
  return testo;
}

}  // namespace

void FiltroBackup::CaricaFiltro(std::string_view filtro) {
  constexpr std::size_t PrimaVoce = 2;
  Includi = filtro.starts_with('+');
  voci_.clear();
  std::size_t inizio = PrimaVoce;
  for (std::size_t fine = filtro.find('|', inizio); fine != std::string_view::npos;
       fine = filtro.find('|', inizio)) {
    voci_.emplace_back(filtro.substr(inizio, fine - inizio));
    inizio = fine + 1;
  }
}

std::string FiltroBackup::ComponiFiltro() const {
  std::string filtro = Includi ? "+|" : "-|";
  for (const std::string& voce : voci_) filtro.append(voce).append("|");
  return filtro;
}

bool FiltroBackup::ControllaEstensione(std::string_view voce) {
  if (!voce.starts_with(InizioVoce)) {
    MsgBox(Messaggio(460), StileInformazione);
    return false;
  }
  if (Conservabile(voce)) return true;
  MsgBox(InLingua("Il filtro non può contenere i caratteri '|' e ','.",
                  "The filter must not contain the characters '|' and ','."),
         StileInformazione);
  return false;
}

bool FiltroBackup::Aggiungi(std::string_view voce) {
  if (!ControllaEstensione(voce)) return false;
  voci_.emplace_back(voce);
  return true;
}

void FiltroBackup::Rimuovi(std::size_t indice) {
  if (indice < voci_.size()) voci_.erase(voci_.begin() + static_cast<std::ptrdiff_t>(indice));
}

void FiltroBackup::Svuota() {
  if (MsgBox("Do you want clear the list ?", StileSìNo) == Risposta::Sì) voci_.clear();
}

std::string FiltroBackup::Effetto() const {
  if (voci_.empty())
    return Includi ? InLingua("L'elenco è vuoto: non viene copiato alcun file.",
                              "The list is empty: no file is copied.")
                   : InLingua("L'elenco è vuoto: vengono copiati tutti i file.",
                              "The list is empty: all files are copied.");
  return Includi ? InLingua("Vengono copiati solo i file con queste estensioni.",
                            "Only files with these extensions are copied.")
                 : InLingua("Vengono copiati tutti i file tranne quelli con queste estensioni.",
                            "All files but those with these extensions are copied.");
}

std::string RiassuntoFiltro(std::string_view filtro) {
  FiltroBackup contenuto;
  contenuto.CaricaFiltro(filtro);
  const std::string voci = ElencoVoci(contenuto.Voci());
  if (contenuto.Includi)
    return voci.empty() ? InLingua("nessun file", "no file") : InLingua("solo ", "only ") + voci;
  return voci.empty() ? InLingua("tutti i file", "all files") : InLingua("tutti tranne ", "all but ") + voci;
}

std::vector<std::string> ElencoEstensioni(const std::vector<std::string>& note) {
  std::vector<std::string> elenco(std::begin(EstensioniFisse), std::end(EstensioniFisse));
  std::set<std::string> presenti;
  for (const std::string& voce : elenco) presenti.insert(Maiuscolo(voce));
  std::set<std::string> altre;
  for (const std::string& voce : note) {
    const bool intera = voce.starts_with(InizioVoce) && voce.size() > InizioVoce.size() &&
                        voce.find_first_of("*?[ ", InizioVoce.size()) == std::string::npos;
    if (intera && Conservabile(voce) && presenti.insert(Maiuscolo(voce)).second) altre.insert(voce);
  }
  elenco.insert(elenco.end(), altre.begin(), altre.end());
  return elenco;
}

}  // namespace tandemize

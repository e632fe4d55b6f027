#include "backup/ElencoSalvati.h"

#include <bit>
#include <functional>

#include "platform/newfile.h"
#include "shell/ModuloPrincipale.h"

namespace tandemize {

std::string PercorsoElencoSalvati() {
  return PercorsoApplicazione + "FilesList.Dat";
}

platform::ErrorCode ElencoSalvati::Leggi() {
  if (letto_) return esito_;
  letto_ = true;
  esito_ = platform::readFile(PercorsoElencoSalvati(), testo_);
  if (esito_ != platform::kNoError) return esito_;
  for (std::size_t inizio = 0; inizio < testo_.size();) {
    std::size_t fine = testo_.find('\n', inizio);
    if (fine == std::string::npos) fine = testo_.size();
    AggiungiRiga(inizio, std::string_view(testo_).substr(inizio, fine - inizio));
    inizio = fine + 1;
  }
  CostruisciIndice();
  return esito_;
}

// A line without both marks, as a cut of power may leave the last one, says nothing about any file.
void ElencoSalvati::AggiungiRiga(std::size_t posizione, std::string_view riga) {
  const std::size_t primo = riga.find(SeparatoreCampi);
  if (primo == std::string_view::npos) return;
  const std::size_t data = primo + SeparatoreCampi.size();
  const std::size_t secondo = riga.find(SeparatoreCampi, data);
  if (secondo == std::string_view::npos) return;
  righe_.push_back(
      {posizione, static_cast<std::uint32_t>(primo), static_cast<std::uint32_t>(secondo - data), 0});
}

void ElencoSalvati::CostruisciIndice() {
  posti_.assign(std::bit_ceil(righe_.size() + 1), 0);
  const std::size_t maschera = posti_.size() - 1;
  for (std::size_t i = 0; i < righe_.size(); ++i) {
    std::uint32_t& posto = posti_[std::hash<std::string_view>{}(Percorso(righe_[i])) & maschera];
    righe_[i].seguente = posto;
    posto = static_cast<std::uint32_t>(i + 1);
  }
}

std::string_view ElencoSalvati::Percorso(const Riga& riga) const {
  return std::string_view(testo_).substr(riga.posizione, riga.percorso);
}

std::string_view ElencoSalvati::Data(const Riga& riga) const {
  return std::string_view(testo_).substr(riga.posizione + riga.percorso + SeparatoreCampi.size(), riga.data);
}

bool ElencoSalvati::Contiene(std::string_view percorso, std::string_view data) const {
  if (posti_.empty()) return false;
  std::uint32_t i = posti_[std::hash<std::string_view>{}(percorso) & (posti_.size() - 1)];
  for (; i != 0; i = righe_[i - 1].seguente)
    if (Percorso(righe_[i - 1]) == percorso && Data(righe_[i - 1]) == data) return true;
  return false;
}

platform::ErrorCode ScrittoreElenco::Apri(bool svuota) {
  return file_.open(PercorsoElencoSalvati(), svuota);
}

platform::ErrorCode ScrittoreElenco::Aggiungi(std::string_view percorso, std::string_view data,
                                              std::string_view dimensione) {
  std::string riga;
  riga.reserve(percorso.size() + data.size() + dimensione.size() + 2 * SeparatoreCampi.size() + 2);
  riga.append(percorso)
      .append(SeparatoreCampi)
      .append(data)
      .append(SeparatoreCampi)
      .append(dimensione)
      .append("\r\n");
  return file_.append(riga);
}

}  // namespace tandemize

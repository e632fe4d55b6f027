// Small helpers on arrays, without state.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

class ListaTrasferimento;
class TabellaScansione;

using TabellaTesti = std::vector<std::vector<std::string>>;  // first dimension the column, second the row

// The column just before the first empty entry of a row, or 0 if none is empty; -1 if the first one is. An
// entry that a column does not have counts as empty.
[[nodiscard]] std::int32_t UltimaColonnaPiena(const TabellaTesti& tabella, std::size_t riga);
// Index of the first empty element, 0 if there is none; of a table, the first column whose first row is
// empty.
[[nodiscard]] std::int32_t PrimoVuoto(const std::vector<std::string>& elenco);
[[nodiscard]] std::int32_t PrimoVuoto(const TabellaTesti& tabella);
// Replaces one text by another throughout; equal texts do nothing.
void SostituisciValore(std::vector<std::string>& elenco, std::string_view vecchio, std::string_view nuovo);
// Grows by one empty element.
void AggiungiElemento(std::vector<std::string>& elenco);
// Index of the last element equal to the value, or with `parziale` one that contains it, in its own case;
// -1 if there is none.
[[nodiscard]] std::int32_t CercaValore(const std::vector<std::string>& elenco, std::string_view valore,
                                       bool parziale = false);

// Connect each server that the records on FTP lie on, as the profile's section names it for their paths;
// `sincronizzazione` chooses the section. A server is tried once a call. `fallita` is set by a connect that
// failed and by one that the user stopped, after which no further one is tried.
void ConnettiServerListe(const TabellaScansione& tabella, bool sincronizzazione, bool& fallita);
// The same for both sides of a list of things to do. True if any side lies on FTP.
bool ConnettiServerOggetti(const ListaTrasferimento& lista, bool sincronizzazione, bool& fallita);

}  // namespace tandemize

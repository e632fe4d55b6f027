// The scheduler's lines of the settings file: how they move on after a run, and past today at the program's
// start.
//
// The file is taken as it is, line by line. Only the values told here change; every other byte stays, line
// ends and lines that no setting knows among them. The standard timer is entry 0; the advanced ones are 1 to
// 9: the file has room for one digit in front of their keys, so an entry 10 is never reached.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "shell/DataIntervallo.h"

namespace tandemize {

// A value that cannot be understood, with its key: "1Timer_Adv_Date", "31/02/2030".
struct ValoreErrato {
  std::string chiave, valore;
};

// Moves an entry on after its run. The old values are those of the text. By days, weeks and months the date
// moves. By hours the time moves, and wraps at midnight; the date then moves only if its new text is greater
// as text than the old one, so by less than 24 hours it stays. A word without a unit moves nothing. `Ora` and
// `Data` follow what is written. What cannot be understood stays as it is and is added to `errati`.
void AvanzaPartenza(std::string& testo, std::string_view Tipo, std::int32_t Numero, std::string& Ora,
                    std::string& Data, std::int16_t Indice, std::vector<ValoreErrato>& errati);

// Moves every date before `oggi` forward by whole intervals to the first one that is today or later; a run
// that was missed is not made up. The line "Timer_Start_Type" says whether the standard timer or the advanced
// ones are looked at. Hours, words without a unit and numbers below 1 move nothing: no number of steps of
// nothing would reach today. True if a date was moved.
bool AvanzaDateScadute(std::string& testo, DataCivile oggi, std::vector<ValoreErrato>& errati);

}  // namespace tandemize

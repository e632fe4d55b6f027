// The rules of the profile menu: which file becomes the current profile, and what the main window's title
// says of it.
#pragma once

#include <string>
#include <string_view>

namespace tandemize {

inline constexpr std::string_view EstensioneProfilo = ".cfg";
inline constexpr std::string_view NomeNuovoProfilo = "Config2.cfg";  // proposed by the dialog

// What the file dialogs offer: "File Profile (*.cfg)".
[[nodiscard]] std::string DescrizioneProfili();

// The path as it is if it ends in ".cfg" in any case of letters, else with ".cfg" behind it.
[[nodiscard]] std::string ConEstensioneProfilo(std::string_view percorso);

// "Tandemize Backup - [C:\folder\Night.cfg]". A profile named "Config.cfg", wherever it lies, is the default
// profile to its user.
[[nodiscard]] std::string TitoloPrincipale();

// False, after a box, while an operation goes on: at its end it still writes to the profile that it began
// with. `runDelDialogo` as for OperazioneDaFermare.
[[nodiscard]] bool ProfiloSostituibile(bool runDelDialogo);

// Makes an empty profile and the current one of it. A file that is there already is replaced only if the user
// agrees. True if FileProfilo is the new one; else it is what it was, and the user was told. An empty path
// does nothing.
bool NuovoProfilo(std::string_view percorso);

// Makes the file the current profile if it is one; else FileProfilo stays and the user is told. No more than
// its first line is read: windows read it when they load. An empty path does nothing.
bool CaricaProfilo(std::string_view percorso);

}  // namespace tandemize

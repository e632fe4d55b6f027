// The keys of `GlobalSetting.dat` in the order of the file: the variable that each fills and the control that
// shows it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "shell/ControlliGlobalSetting.h"
#include "shell/Impostazioni.h"

namespace tandemize {

// A variable of Impostazioni.h, or the field of a server that the number behind the key names.
using DestinazioneChiave = std::variant<std::uint8_t*, bool*, std::int32_t*, std::string*,
                                        std::string ServerFtp::*, std::uint8_t ServerFtp::*>;

// `monostate`: the window has no such control.
using ControlloChiave =
    std::variant<std::monostate, GruppoOpzioni ControlliGlobalSetting::*,
                 CasellaTesto ControlliGlobalSetting::*, CasellaSpunta ControlliGlobalSetting::*,
                 CasellaCombo ControlliGlobalSetting::*>;

struct ChiaveGlobale {
  std::string_view Chiave;
  DestinazioneChiave Destinazione;
  std::string_view NomeControllo;
  ControlloChiave Controllo;
};

[[nodiscard]] std::span<const ChiaveGlobale> ChiaviGlobali();

// Length in bytes of the shortest key.
inline constexpr std::size_t ChiavePiùCorta = 8;

[[nodiscard]] bool DelServer(
    const ChiaveGlobale& chiave);  // one of the FTP keys, which stand once for each server

// Puts a value, blanks around a number apart, into the variable. False, with the variable as it was, if the
// text does not convert: a number must be whole, decimal and within the variable's bounds; a boolean is on
// for any number but 0.
[[nodiscard]] bool Converti(std::string_view testo, std::uint8_t& variabile);
[[nodiscard]] bool Converti(std::string_view testo, std::int16_t& variabile);
[[nodiscard]] bool Converti(std::string_view testo, std::int32_t& variabile);
[[nodiscard]] bool Converti(std::string_view testo, bool& variabile);
[[nodiscard]] bool Converti(std::string_view testo, std::string& variabile);

}  // namespace tandemize

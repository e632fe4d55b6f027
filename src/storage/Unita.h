// What a drive is, whether it is ready, and the check of a list of paths before anything touches them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

// Drive type codes.
inline constexpr std::int32_t UnitaSconosciuta = 0, UnitaAssente = 1, UnitaRimovibile = 2, UnitaFissa = 3,
                              UnitaRemota = 4, UnitaCdRom = 5, UnitaRamDisk = 6;

[[nodiscard]] std::int32_t TipoUnita(std::string_view path);
[[nodiscard]] std::string DescrizioneUnita(std::string_view path);
[[nodiscard]] bool UnitaPronta(std::string_view path);
// True for a path on a drive or share that is not there now. What lies on it may exist all the same, and
// nothing may be made under its name. False for a path that names no drive.
[[nodiscard]] bool DiscoAssente(std::string_view path);
// True when a disc is in the drive but reports no length, or the drive does not answer.
bool VerificaCD(std::string_view path, bool& mediumPresent);

// Outcome: 0 usable, 1 CD not ready, 2 removable not ready, 3 LAN folder not found, 5 local folder not found,
// 6 no Internet connection, 7 empty path, 8 FTP folder not found, 9 connecting failed. An FTP session is
// closed afterwards, whoever opened it.
[[nodiscard]] std::int32_t VerificaPercorso(std::string_view path, std::int32_t serverIndex);

struct RigaPercorso {
  std::string percorso;
  std::string indiceServer;  // number as text; read only for an FTP path
};

// Checks every row and reports the last fault by `mode`: 0 a box, 1 a balloon of interactive use, 2 a balloon
// of unattended runs. `flags`: 2 quiet about drives and empty paths, 4 about the connection, 8 about all of
// these and a failed connect's text, 16 about a failed connect, 32 no report at all. Gives the last outcome
// that is not 0 after masking, or 0.
[[nodiscard]] std::int32_t VerificaPercorsi(const std::vector<RigaPercorso>& table, std::uint8_t flags,
                                            std::uint8_t mode);

}  // namespace tandemize

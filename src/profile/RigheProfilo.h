// What reading, writing and searching a profile share: its lines, the keys in them, its numbers.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/errors.h"

namespace tandemize {

// A larger file is no profile: it is refused before it is read. In bytes.
inline constexpr std::uint64_t LimiteFileProfilo = std::uint64_t{64} * 1024 * 1024;

// Numbers of the run-time's errors that a damaged profile leads to.
inline constexpr std::int32_t ErroreOverflow = 6;
inline constexpr std::int32_t ErroreMemoria = 7;
inline constexpr std::int32_t ErroreIndice = 9;
inline constexpr std::int32_t ErroreTipo = 13;
inline constexpr std::int32_t ErroreFineFile = 62;

// Reads a profile or its companion whole. kFileTooLarge above the limit.
[[nodiscard]] platform::ErrorCode LeggiTestoProfilo(const std::string& path, std::string& testo);

// Gives a text line by line. Lines end with CR LF, CR or LF; the last one need not end. The text must outlive
// the reader.
class LettoreRighe {
 public:
  explicit LettoreRighe(std::string_view testo) : resto_(testo) {}

  // False past the end; `riga` then stays.
  [[nodiscard]] bool Leggi(std::string_view& riga);
  [[nodiscard]] std::size_t Numero() const { return numero_; }  // lines read

 private:
  std::string_view resto_;
  std::size_t numero_ = 0;
};

// A key that is looked for anywhere in a line, ignoring the case of ASCII letters. The time is linear in the
// line, and commonly a fraction of it (Horspool's search), because every line is searched for every key.
class ChiaveProfilo {
 public:
  constexpr explicit ChiaveProfilo(std::string_view testo) : testo_(testo) {
    const std::size_t n = testo.size();
    salto_.fill(static_cast<std::uint8_t>(n));
    for (std::size_t i = 0; i + 1 < n; ++i) {
      const auto minuscola = static_cast<unsigned char>(Minuscola(testo[i]));
      salto_[minuscola] = static_cast<std::uint8_t>(n - 1 - i);
      if (minuscola >= 'a' && minuscola <= 'z') salto_[minuscola - 32U] = salto_[minuscola];
    }
  }

  // Byte offset of the first occurrence, npos if there is none.
  [[nodiscard]] std::size_t Trova(std::string_view riga) const;
  [[nodiscard]] bool In(std::string_view riga) const { return Trova(riga) != std::string_view::npos; }
  // True if the line begins with the key.
  [[nodiscard]] bool Apre(std::string_view riga) const;
  // The text behind the first occurrence, as it stands; empty if there is none.
  [[nodiscard]] std::string_view Dietro(std::string_view riga) const;
  [[nodiscard]] std::string_view Testo() const { return testo_; }

 private:
  [[nodiscard]] static constexpr char Minuscola(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
  }
  [[nodiscard]] static bool Uguali(std::string_view a, std::string_view b);

  std::string_view testo_;
  std::array<std::uint8_t, 256> salto_{};
};

inline constexpr std::string_view PrefissoPercorso = "Backup_Path_";
inline constexpr std::string_view PrefissoServer = "Backup_FTP_";
inline constexpr ChiaveProfilo ChiavePercorso{PrefissoPercorso};
inline constexpr ChiaveProfilo ChiaveServer{PrefissoServer};
inline constexpr ChiaveProfilo ChiavePercorsoOggetto{"BackPath = "};
inline constexpr ChiaveProfilo ChiaveServerOggetto{"BackFtpServerDescription = "};
inline constexpr ChiaveProfilo ChiaveFiltro{"FilterBackup = "};
inline constexpr ChiaveProfilo ChiaveIgnora{"FilterIgnoreInvalidPath = "};

[[nodiscard]] constexpr bool Cifra(char c) {
  return c >= '0' && c <= '9';
}
// Leading blanks away; tabs and blanks at the end stay.
[[nodiscard]] std::string_view SenzaBlankIniziali(std::string_view testo);
// The text from a character on, counted from 1. A byte that is not UTF-8 counts as one character.
[[nodiscard]] std::string_view DaCarattere(std::string_view testo, std::size_t posizione);

// A decimal number as written: optional sign, digits, optional fraction behind a ".". One digit at least.
struct NumeroDecimale {
  bool negativo = false;
  std::string_view intero, frazione;  // digits; the whole part without leading zeros, so empty for 0
};
// Empty if the text is not such a number from its first character to its last.
[[nodiscard]] std::optional<NumeroDecimale> LeggiDecimale(std::string_view testo);

// The platform's conversion to an integer: blanks around the number are allowed, a fraction is rounded, a
// half to the even neighbour. 0, or ErroreTipo for text, or ErroreOverflow for a number outside `minimo` to
// `massimo`; `valore` then stays.
[[nodiscard]] std::int32_t ConvertiIntero(std::string_view testo, std::int64_t minimo, std::int64_t massimo,
                                          std::int64_t& valore);

}  // namespace tandemize

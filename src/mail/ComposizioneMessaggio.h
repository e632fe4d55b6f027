// The text of a mail between DATA and its closing line, and how it is cut for sending.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

inline constexpr std::size_t CaratteriPerInvio = 8192;  // of one piece, as sent by one call

inline constexpr std::string_view ChiusuraMessaggio = "\r\n.\r\n";
inline constexpr std::string_view ChiusuraParti = "\r\n--NextMimePart--\r\n";

// Date and time as the header gives them, "Friday , 21 Nov 2025 02:05:09 PM". The names of day and month are
// those of the machine's language; the form is the program's own and not that of RFC 5322.
[[nodiscard]] std::string DataDelMessaggio(std::int64_t secondiUtc);

// Headers and body, every header ended by CR LF and the trimmed body too; without the closing line.
// `conAllegati` gives the headers of a message in parts, and the body as the first of them. What the values
// hold of line ends and NULs goes out as blanks, so that none can begin a header of its own.
[[nodiscard]] std::string TestoMessaggio(std::string_view from, std::string_view to, std::string_view subject,
                                         std::string_view body, std::int64_t secondiUtc, bool conAllegati);

// The header of an attachment's part: an empty line in front, one behind.
[[nodiscard]] std::string TestataAllegato(std::string_view nomeFile);

// Puts a NUL in front of every full stop that is alone on its line, since that line would end the mail.
[[nodiscard]] std::string ProteggiPunti(std::string_view testo);

// The first `CaratteriPerInvio` characters of a text, or all of it.
[[nodiscard]] std::string_view PrimoPezzo(std::string_view testo);

// One piece of a text for sending.
struct PezzoMessaggio {
  std::size_t posizione = 1;  // of its first character in the text, counted from 1
  std::string testo;          // without the blanks at both ends
};
// Cuts a text into pieces of `CaratteriPerInvio` characters and trims each, so that blanks on a seam are
// lost. A full stop that only this leaves alone on its line gets its NUL, too.
[[nodiscard]] std::vector<PezzoMessaggio> PezziDelMessaggio(std::string_view testo);

// Without the blanks at both ends; other white space stays.
[[nodiscard]] std::string_view SenzaBianchi(std::string_view testo);

// With a blank for each CR, LF and NUL.
[[nodiscard]] std::string SuUnaRiga(std::string_view testo);

}  // namespace tandemize

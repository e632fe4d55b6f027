// Base64 (RFC 4648) for attachments, and its cutting into lines.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

using ByteDati = std::vector<std::uint8_t>;
using TabellaCodifica = std::array<std::uint8_t, 64>;
using TabellaDecodifica = std::array<std::uint8_t, 256>;

inline constexpr std::uint8_t FuoriAlfabeto = 255;     // entries of bytes that are not in the alphabet
inline constexpr std::uint8_t ValoreRiempimento = 64;  // entry of "="

// Fills both tables: the letter of each value from 0 to 63, and the value of each letter.
void PreparaBase64(TabellaCodifica& encodeTable, TabellaDecodifica& decodeTable);

// The text in the system's code page, which is UTF-8: its bytes as they are.
void StringaInByte(std::string_view testo, ByteDati& byte);

// `output` becomes exactly four letters for each started group of three bytes, the last one or two "=" when
// bytes lack.
void CodificaBase64(const ByteDati& input, ByteDati& output, const TabellaCodifica& encodeTable);

// Puts CR LF behind every `width` bytes and behind what remains; an empty input gives an empty output.
void SpezzaRighe(std::size_t width, const ByteDati& input, ByteDati& output);

}  // namespace tandemize

#include "mail/Base64.h"

#include <algorithm>

namespace tandemize {

namespace {

constexpr std::string_view Alfabeto = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t Riempimento = '=';
constexpr std::size_t ByteDelGruppo = 3, LettereDelGruppo = 4;

std::uint8_t Lettera(const TabellaCodifica& tabella, std::uint32_t gruppo, unsigned posto) {
  return tabella[(gruppo >> (18U - 6U * posto)) & 63U];
}

}  // namespace

void PreparaBase64(TabellaCodifica& encodeTable, TabellaDecodifica& decodeTable) {
  decodeTable.fill(FuoriAlfabeto);
  for (std::size_t i = 0; i < encodeTable.size(); ++i) {
    encodeTable[i] = static_cast<std::uint8_t>(Alfabeto[i]);
    decodeTable[encodeTable[i]] = static_cast<std::uint8_t>(i);
  }
  decodeTable[Riempimento] = ValoreRiempimento;
}

void StringaInByte(std::string_view testo, ByteDati& byte) {
  byte.assign(testo.begin(), testo.end());
}

void CodificaBase64(const ByteDati& input, ByteDati& output, const TabellaCodifica& encodeTable) {
  output.clear();
  output.reserve((input.size() + ByteDelGruppo - 1) / ByteDelGruppo * LettereDelGruppo);
  for (std::size_t i = 0; i < input.size(); i += ByteDelGruppo) {
    const std::size_t presenti = std::min(ByteDelGruppo, input.size() - i);
    std::uint32_t gruppo = 0;
    for (std::size_t k = 0; k < ByteDelGruppo; ++k)
      gruppo = gruppo << 8U | (k < presenti ? std::uint32_t{input[i + k]} : 0U);
    for (unsigned posto = 0; posto < LettereDelGruppo; ++posto)
      output.push_back(posto <= presenti ? Lettera(encodeTable, gruppo, posto) : Riempimento);
  }
}

void SpezzaRighe(std::size_t width, const ByteDati& input, ByteDati& output) {
  output.clear();
  if (width == 0) return;
  output.reserve(input.size() + (input.size() + width - 1) / width * 2);
  for (std::size_t i = 0; i < input.size(); i += width) {
    const std::size_t fine = std::min(i + width, input.size());
    output.insert(output.end(), input.begin() + static_cast<std::ptrdiff_t>(i),
                  input.begin() + static_cast<std::ptrdiff_t>(fine));
    output.push_back('\r');
    output.push_back('\n');
  }
}

}  // namespace tandemize

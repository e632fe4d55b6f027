// The expansion of an image's LZW data (cGifReader.h).
#include <algorithm>

#include "presentation/cGifReader.h"

namespace tandemize {

namespace {

constexpr std::size_t RigheTraAvvisi = 10;
constexpr std::string_view TestoCodice = "Invalid LZW code encountered";

}  // namespace

// The tables start empty, so that an image of a damaged file doesn't hang on those read before it.
bool cGifReader::pvLzwInit(int bitMinimi) {
  lzw_ = {};
  // Codes of more bits have no place in the tables.
  if (bitMinimi + 1 > BitMassimi) return pvRaise(ErroreCodiceLzw, TestoCodice);
  lzw_.clearCode = 1U << bitMinimi;
  lzw_.bitIniziali = bitMinimi + 1;
  pvLzwStartSize();
  return true;
}

void cGifReader::pvLzwStartSize() {
  lzw_.bit = lzw_.bitIniziali;
  lzw_.limite = (1U << lzw_.bit) - 1;
  lzw_.prossimo = lzw_.clearCode + 2;
  lzw_.primoCodice = true;
}

bool cGifReader::pvLzwReadCode(std::uint32_t& codice) {
  while (lzw_.bitNelBuffer < lzw_.bit) {
    std::uint8_t byte = 0;
    if (!pvReadSubBlockByte(byte)) return pvTrace();
    lzw_.buffer |= static_cast<std::uint32_t>(byte) << lzw_.bitNelBuffer;
    lzw_.bitNelBuffer += 8;
  }
  codice = lzw_.buffer & ((1U << lzw_.bit) - 1);
  lzw_.buffer >>= lzw_.bit;
  lzw_.bitNelBuffer -= lzw_.bit;
  return true;
}

bool cGifReader::pvLzwExpand() {
  scritti_ = 0;
  std::uint32_t codice = 0;
  // A stream begins with a clear code; whatever stands there is taken for it.
  if (!pvLzwReadCode(codice)) return pvTrace();
  std::size_t rigaDetta = 0;
  while (scritti_ < imageBits_.size()) {
    if (!pvLzwReadCode(codice)) return pvTrace();
    if (codice == lzw_.clearCode + 1) break;
    if (!pvLzwUseCode(codice)) return pvTrace();
    const std::size_t riga = scritti_ / static_cast<std::size_t>(ImageWidth());
    if (riga < rigaDetta + RigheTraAvvisi) continue;
    rigaDetta = riga;
    if (Avanzamento) Avanzamento(static_cast<int>(riga));
  }
  return true;
}

bool cGifReader::pvLzwUseCode(std::uint32_t codice) {
  if (lzw_.primoCodice) {
    // It is a pixel even where it is a second clear code, or one that stands for a string.
    if (codice > UINT8_MAX) return pvRaise(ErroreCodiceLzw, TestoCodice);
    lzw_.precedente = codice;
    lzw_.primoByte = imageBits_[scritti_++] = static_cast<std::uint8_t>(codice);
    lzw_.primoCodice = false;
    return true;
  }
  if (codice == lzw_.clearCode) {
    pvLzwStartSize();
    return true;
  }
  return pvLzwString(codice) || pvTrace();
}

// Writes a code's string out from the stack, where its last byte lies lowest, and notes the new entry. A
// string that is longer than the rest of the image is cut.
bool cGifReader::pvLzwString(std::uint32_t codice) {
  std::size_t cima = 0;
  if (codice > lzw_.prossimo) return pvRaise(ErroreCodiceLzw, TestoCodice);
  if (codice == lzw_.prossimo) lzw_.pila[cima++] = lzw_.primoByte;
  if (!pvLzwDecodeString(codice == lzw_.prossimo ? lzw_.precedente : codice, cima)) return pvTrace();

  lzw_.primoByte = lzw_.pila[cima];
  const std::size_t byte = std::min(cima + 1, imageBits_.size() - scritti_);
  for (std::size_t i = 0; i < byte; ++i) imageBits_[scritti_++] = lzw_.pila[cima - i];
  pvLzwAddEntry();
  lzw_.precedente = codice;
  return true;
}

// Puts a code's string on the stack from `Posizione` on, its first byte last; `Posizione` is then where that
// one lies. Codes of damaged data may lead round in a circle, which the stack's end stops.
bool cGifReader::pvLzwDecodeString(std::uint32_t Codice, std::size_t& Posizione) {
  while (Codice >= lzw_.clearCode) {
    lzw_.pila[Posizione++] = lzw_.suffissi[Codice];
    Codice = lzw_.prefissi[Codice];
    if (Posizione >= PilaLzw) return pvRaise(ErroreOltreLaPila, "Past end of stack (stacksize=4000)");
  }
  lzw_.pila[Posizione] = static_cast<std::uint8_t>(Codice);
  return true;
}

// A table that is full takes no more entries; its codes stay good until the next clear code.
void cGifReader::pvLzwAddEntry() {
  if (lzw_.prossimo >= CodiciLzw) return;
  lzw_.prefissi[lzw_.prossimo] = lzw_.precedente;
  lzw_.suffissi[lzw_.prossimo] = lzw_.primoByte;
  ++lzw_.prossimo;
  if (lzw_.prossimo <= lzw_.limite || lzw_.bit >= BitMassimi) return;
  ++lzw_.bit;
  lzw_.limite = (1U << lzw_.bit) - 1;
}

}  // namespace tandemize

// The blocks of a file; the expansion of an image's data is in LzwGif.cpp.
#include "presentation/cGifReader.h"

#include <algorithm>

#include "platform/errors.h"
#include "platform/newfile.h"

namespace tandemize {

namespace {

constexpr std::uint8_t BloccoImmagine = 44, BloccoEstensione = 33, BloccoFine = 59, BloccoVuoto = 0;
constexpr std::uint8_t EstensioneControllo = 249;
constexpr std::string_view TestoBloccoImprevisto = "Unexpected image block";
constexpr std::size_t LunghezzaFirma = 6;

}  // namespace

bool cGifReader::pvRaise(std::int32_t numero, std::string_view descrizione, const char* routine, int riga) {
  errore_ = {numero, std::string(descrizione), std::string(descrizione)};
  return pvTrace(routine, riga);
}

bool cGifReader::pvTrace(const char* routine, int riga) {
  std::string passo = "cGifReader.";
  passo.append(routine).append("(").append(std::to_string(riga)).append(")\r\n");
  errore_.Sorgente.insert(0, passo);
  return false;
}

std::string cGifReader::SigVersion() const {
  std::string firma(schermo_.begin(), schermo_.begin() + LunghezzaFirma);
  return firma.substr(0, firma.find('\0'));
}

bool cGifReader::Init(const std::string& File) {
  errore_ = {};
  pvCloseFile();
  immagine_.fill(0);
  controllo_.fill(0);
  imageBits_.clear();
  imageLut_.fill(0);
  frameIndex_ = -1;
  filename_ = File;
  const auto errore = platform::readFile(File, contenuto_, DimensioneMassimaGif);
  if (errore != platform::kNoError) return pvRaise(errore, platform::systemErrorText(errore));
  if (!pvReadHeader()) {
    pvCloseFile();
    return pvTrace();
  }
  posizionePrima_ = posizione_;
  aperto_ = true;
  return true;
}

void cGifReader::pvCloseFile() {
  aperto_ = eof_ = false;
  contenuto_.clear();
  posizione_ = posizionePrima_ = 0;
  schermo_.fill(0);
  globalLut_.fill(0);
}

bool cGifReader::pvReadHeader() {
  // The signature is judged first: what is too short to hold one is no GIF at all.
  const std::string_view firma = std::string_view(contenuto_).substr(0, LunghezzaFirma);
  if (firma != "GIF89a" && firma != "GIF87a") return pvRaise(ErroreGifNonValida, "Invalid GIF file");
  if (!pvReadBuffer(schermo_)) return pvTrace();
  const auto pixel = static_cast<std::uint64_t>(ScreenWidth()) * static_cast<std::uint64_t>(ScreenHeight());
  if (pixel > PixelMassimiGif) return pvRaise(ErroreGifTroppoGrande, "Image too large");
  const auto byteTavolozza = 3 * static_cast<std::size_t>(GlobalLutSize());
  if (HasGlobalLut() && !pvReadBuffer(std::span(globalLut_).first(byteTavolozza))) return pvTrace();
  return true;
}

bool cGifReader::pvReadByte(std::uint8_t& byte) {
  if (posizione_ >= contenuto_.size()) return pvRaise(ErroreFineFile, "Input past end of file");
  byte = static_cast<std::uint8_t>(contenuto_[posizione_++]);
  return true;
}

bool cGifReader::pvReadBuffer(std::span<std::uint8_t> buffer) {
  for (std::uint8_t& byte : buffer)
    if (!pvReadByte(byte)) return pvTrace();
  return true;
}

// A length of 0 counts as 256: the data ends where the image is full or says so itself, not here.
bool cGifReader::pvReadSubBlockByte(std::uint8_t& byte) {
  if (byteRimasti_ == 0) {
    std::uint8_t lunghezza = 0;
    if (!pvReadByte(lunghezza)) return pvTrace();
    byteRimasti_ = lunghezza == 0 ? 256 : lunghezza;
  }
  --byteRimasti_;
  return pvReadByte(byte) || pvTrace();
}

// The rest of the sub-block at hand, and those behind it up to the empty one.
bool cGifReader::pvSkipSubBlocks() {
  for (;;) {
    posizione_ += std::min(byteRimasti_, contenuto_.size() - posizione_);
    std::uint8_t lunghezza = 0;
    if (!pvReadByte(lunghezza)) return pvTrace();
    byteRimasti_ = lunghezza;
    if (lunghezza == 0) return true;
  }
}

bool cGifReader::MoveNext() {
  errore_ = {};
  if (!aperto_ || eof_) return false;
  for (;;) {
    std::uint8_t blocco = 0;
    if (!pvReadByte(blocco)) return pvTrace();
    switch (blocco) {
      case BloccoImmagine:
        return pvReadImage() || pvTrace();
      case BloccoEstensione:
        if (!pvReadExtension()) return pvTrace();
        break;
      case BloccoFine:
        eof_ = true;
        return false;
      case BloccoVuoto:
        break;
      default:
        return pvRaise(ErroreBloccoImprevisto, TestoBloccoImprevisto);
    }
  }
}

bool cGifReader::pvReadExtension() {
  std::uint8_t etichetta = 0;
  if (!pvReadByte(etichetta)) return pvTrace();
  if (etichetta == EstensioneControllo) return pvReadBuffer(controllo_) || pvTrace();
  byteRimasti_ = 0;
  return pvSkipSubBlocks() || pvTrace();
}

bool cGifReader::pvReadImage() {
  ++frameIndex_;
  imageBits_.clear();
  if (!pvReadBuffer(immagine_)) return pvTrace();
  // A palette of the image's own would follow; it is not read, even where the descriptor announces one.
  imageLut_ = globalLut_;
  std::uint8_t bitMinimi = 0;
  if (!pvReadByte(bitMinimi) || !pvLzwInit(bitMinimi)) return pvTrace();
  const auto pixel = static_cast<std::uint64_t>(ImageWidth()) * static_cast<std::uint64_t>(ImageHeight());
  if (pixel > PixelMassimiGif) return pvRaise(ErroreGifTroppoGrande, "Image too large");
  imageBits_.assign(static_cast<std::size_t>(pixel), 0);
  byteRimasti_ = 0;
  if (!pvLzwExpand() || !pvSkipSubBlocks()) return pvTrace();
  if (FineImmagine) FineImmagine();
  return true;
}

bool cGifReader::MoveFirst() {
  errore_ = {};
  if (!aperto_) return false;
  posizione_ = posizionePrima_;
  frameIndex_ = -1;
  eof_ = false;
  return true;
}

bool cGifReader::MoveLast() {
  errore_ = {};
  if (!aperto_) return false;
  while (!eof_) {
    std::uint8_t blocco = 0;
    if (!pvReadByte(blocco)) return pvTrace();
    if (blocco == BloccoImmagine && !pvSkipImage()) return pvTrace();
    if (blocco == BloccoEstensione && !pvSkipExtension()) return pvTrace();
    eof_ = blocco == BloccoFine;
    if (!eof_ && blocco != BloccoImmagine && blocco != BloccoEstensione && blocco != BloccoVuoto)
      return pvRaise(ErroreBloccoImprevisto, TestoBloccoImprevisto);
  }
  return true;
}

bool cGifReader::pvSkipImage() {
  ++frameIndex_;
  imageBits_.clear();
  std::uint8_t bitMinimi = 0;
  if (!pvReadBuffer(immagine_) || !pvReadByte(bitMinimi)) return pvTrace();
  byteRimasti_ = 0;
  return pvSkipSubBlocks() || pvTrace();
}

bool cGifReader::pvSkipExtension() {
  std::uint8_t etichetta = 0;
  if (!pvReadByte(etichetta)) return pvTrace();
  byteRimasti_ = 0;
  return pvSkipSubBlocks() || pvTrace();
}

}  // namespace tandemize

#include "storage/clsCRC.h"

#include <libdeflate.h>

#include <algorithm>
#include <memory>
#include <string>

#include "errors/ModuloGestioneErrori.h"
#include "platform/newfile.h"
#include "shell/Schermo.h"
#include "storage/CrcInDue.h"
#include "storage/Guardia.h"

namespace tandemize {

namespace {

// Bytes read at once. The buffer stays in the processor's cache, so that the checksum costs little beside the
// reading.
constexpr std::size_t Pezzo = std::size_t{256} * 1024;

// Where the routine stands when it fails.
constexpr std::int16_t RigaApertura = 3, RigaLettura = 4;

// One file's passes. Each pass reads the file from its start, so that the register never holds part of
// another.
class LetturaCRC {
 public:
  LetturaCRC(clsCRC& crc, std::string_view path) : crc_(crc), path_(path) {}

  RisultatoCRC calcola() {
    for (;;) {
      const platform::ErrorCode error = passata();
      if (error == platform::kNoError) {
        notaRipresa(true);
        return length_ == 0 ? RisultatoCRC{} : RisultatoCRC{false, crc_.Value()};
      }
      if (AnnullamentoRichiesto || !riprova(error)) return {true, {}};
    }
  }

 private:
  platform::ErrorCode passata() {
    crc_.Clear();
    row_ = RigaApertura;
    position_ = length_ = 0;
    platform::SourceFile file;
    if (platform::ErrorCode error = file.open(path_); error != platform::kNoError) return error;
    length_ = file.status().size;
    row_ = RigaLettura;
    if (length_ > Pezzo) file.willReadThrough();
    // A repeated pass goes piece by piece, so that it is known when the place of the failure has been passed.
    if (attempts_ == 0 && ConvieneInDue(length_)) return leggiInDue(file);
    preparaBuffer();
    while (position_ < length_)
      if (platform::ErrorCode error = leggiPezzo(file); error != platform::kNoError) return error;
    return platform::kNoError;
  }

  platform::ErrorCode leggiInDue(platform::SourceFile& file) {
    DoEvents();
    if (AnnullamentoRichiesto) return platform::kStopped;
    const EsitoCrc outcome = CrcInDue(file, length_);
    position_ = outcome.letti;
    crc_.SetValue(static_cast<std::int32_t>(~outcome.crc));
    return outcome.errore;
  }

  // A file that has become shorter than it was when it was opened counts as one that cannot be read.
  platform::ErrorCode leggiPezzo(platform::SourceFile& file) {
    DoEvents();
    if (AnnullamentoRichiesto) return platform::kStopped;
    std::size_t got = 0;
    const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(length_ - position_, size_));
    if (platform::ErrorCode error = file.read(buffer_.get(), wanted, got); error != platform::kNoError)
      return error;
    if (got == 0) return platform::kEndOfFile;
    crc_.AddBytes({buffer_.get(), got});
    position_ += got;
    notaRipresa(false);
    return platform::kNoError;
  }

  void preparaBuffer() {
    const auto needed = static_cast<std::size_t>(std::min<std::uint64_t>(length_, Pezzo));
    if (needed <= size_) return;
    buffer_ = std::make_unique_for_overwrite<std::uint8_t[]>(needed);
    size_ = needed;
  }

  // The count of attempts is cleared only behind the place of the failure: a bad place in the middle must not
  // be tried for ever.
  void notaRipresa(bool atEnd) {
    if (attempts_ == 0 || (!atEnd && position_ <= failedAt_)) return;
    attempts_ = 0;
    if (!AnnullamentoRichiesto) NotificaRipristino(FormAttivo());
  }

  bool riprova(platform::ErrorCode error) {
    failedAt_ = std::max(failedAt_, position_);
    return ErroreRipetibileVb(attempts_, ErroreRuntimeDaSistema(error), "CalculateFile",
                              DettaglioPercorso("File/Folder Name: ", path_), row_);
  }

  clsCRC& crc_;
  std::string path_;
  std::unique_ptr<std::uint8_t[]> buffer_;
  std::size_t size_ = 0;  // of the buffer
  std::uint64_t position_ = 0, length_ = 0, failedAt_ = 0;
  std::uint8_t attempts_ = 0;
  std::int16_t row_ = RigaApertura;
};

}  // namespace

RisultatoCRC clsCRC::CalculateFile(std::string_view path) {
  return LetturaCRC(*this, path).calcola();
}

std::optional<std::int32_t> clsCRC::AddBytes(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) return {};
  // The library takes and gives finished checksums, which are the complement of the register.
  Crc = ~static_cast<std::int32_t>(
      libdeflate_crc32(static_cast<std::uint32_t>(~Crc), bytes.data(), bytes.size()));
  return Value();
}

std::optional<std::int32_t> clsCRC::AddString(std::string_view text) {
  return AddBytes({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
}

std::optional<std::int32_t> clsCRC::CalculateBytes(std::span<const std::uint8_t> bytes) {
  Clear();
  return AddBytes(bytes);
}

std::optional<std::int32_t> clsCRC::CalculateString(std::string_view text) {
  Clear();
  return AddString(text);
}

}  // namespace tandemize

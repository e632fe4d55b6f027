#include "storage/CrcInDue.h"

#include <libdeflate.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include "errors/ModuloGestioneErrori.h"
#include "shell/Schermo.h"

namespace tandemize {

namespace {

// Bytes of a turn. Shorter turns cost more in handing over than they save, longer ones leave the processor's
// cache.
constexpr std::uint64_t Turno = std::uint64_t{1024} * 1024;
constexpr std::uint64_t LunghezzaMinima = 32 * Turno;

// --- polynomials modulo that of the checksum, the highest power in bit 0 ---

constexpr std::uint32_t Polinomio = 0xEDB88320U;
constexpr std::uint32_t Uno = 0x80000000U;

std::uint32_t prodotto(std::uint32_t a, std::uint32_t b) {
  std::uint32_t result = 0;
  for (std::uint32_t bit = Uno; bit != 0; bit >>= 1U) {
    if ((a & bit) != 0) result ^= b;
    b = (b >> 1U) ^ ((b & 1U) != 0 ? Polinomio : 0U);
  }
  return result;
}

// What a checksum is multiplied by when `bytes` more bytes follow: x to the power of 8 times as many.
std::uint32_t spostamento(std::uint64_t bytes) {
  std::uint32_t result = Uno, power = Uno >> 8U;
  for (; bytes != 0; bytes >>= 1U) {
    if ((bytes & 1U) != 0) result = prodotto(result, power);
    power = prodotto(power, power);
  }
  return result;
}

class LetturaInDue {
 public:
  LetturaInDue(platform::SourceFile& file, std::uint64_t length)
      : file_(file), length_(length), parts_(static_cast<std::size_t>((length + Turno - 1) / Turno)) {}

  EsitoCrc calcola() {
    std::thread helper;
    try {
      helper = std::thread([this] { lavora(false); });
    } catch (const std::system_error&) {
      // A host that grants no second thread: the calling one takes every turn.
    }
    lavora(true);
    if (helper.joinable()) helper.join();
    if (error_ != platform::kNoError) return {error_, 0, next_ * Turno};
    return {platform::kNoError, unisci(), length_};
  }

 private:
  std::uint64_t lunghezza(std::size_t part) const { return std::min(Turno, length_ - part * Turno); }

  void lavora(bool withEvents) {
    const auto buffer = std::make_unique_for_overwrite<std::uint8_t[]>(Turno);
    std::size_t part = 0;
    while (leggi(buffer.get(), part, withEvents))
      parts_[part] = libdeflate_crc32(0, buffer.get(), static_cast<std::size_t>(lunghezza(part)));
  }

  // Takes the next turn. False when none is left or something has ended the reading.
  bool leggi(std::uint8_t* buffer, std::size_t& part, bool withEvents) {
    aspettaTurno(withEvents);
    const std::lock_guard turn(mutex_, std::adopt_lock);
    if (withEvents && AnnullamentoRichiesto) error_ = platform::kStopped;
    if (error_ != platform::kNoError || next_ == parts_.size()) return false;
    error_ = riempi(buffer, lunghezza(next_));
    if (error_ != platform::kNoError) return false;
    part = next_++;
    return true;
  }

  // A turn mostly comes within microseconds, sooner than a sleeping thread would wake.
  void aspettaTurno(bool withEvents) {
    if (withEvents) DoEvents();
    for (int tries = 0; !mutex_.try_lock(); ++tries) {
      if (tries < 1000)
        std::this_thread::yield();
      else
        std::this_thread::sleep_for(std::chrono::microseconds(200));
      if (withEvents) DoEvents();
    }
  }

  platform::ErrorCode riempi(std::uint8_t* buffer, std::uint64_t size) {
    for (std::uint64_t done = 0; done < size;) {
      std::size_t got = 0;
      const platform::ErrorCode error = file_.read(buffer + done, static_cast<std::size_t>(size - done), got);
      if (error != platform::kNoError) return error;
      if (got == 0) return platform::kEndOfFile;
      done += got;
    }
    return platform::kNoError;
  }

  std::uint32_t unisci() const {
    const std::uint32_t wholeTurn = spostamento(Turno);
    std::uint32_t crc = 0;
    for (std::size_t part = 0; part < parts_.size(); ++part) {
      const std::uint64_t size = lunghezza(part);
      crc = prodotto(size == Turno ? wholeTurn : spostamento(size), crc) ^ parts_[part];
    }
    return crc;
  }

  platform::SourceFile& file_;
  std::uint64_t length_;
  std::vector<std::uint32_t> parts_;  // each element is written by the thread that took its turn
  std::mutex mutex_;                  // for the file and what follows
  std::size_t next_ = 0;
  platform::ErrorCode error_ = platform::kNoError;
};

}  // namespace

bool ConvieneInDue(std::uint64_t length) {
  return length >= LunghezzaMinima && std::thread::hardware_concurrency() > 1;
}

EsitoCrc CrcInDue(platform::SourceFile& file, std::uint64_t length) {
  return LetturaInDue(file, length).calcola();
}

std::uint32_t UnisciCrc(std::uint32_t first, std::uint32_t second, std::uint64_t secondLength) {
  return prodotto(spostamento(secondLength), first) ^ second;
}

}  // namespace tandemize

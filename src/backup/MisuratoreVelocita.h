// Speed and remaining time of a transfer, worked out every two seconds from the bytes moved.
#pragma once

#include <cstdint>
#include <string>

namespace tandemize {

class MisuratoreVelocita {
 public:
  // To be called after bytes were moved, with the clock in milliseconds. True when the texts changed.
  bool Aggiorna(double byteCopiati, double byteTotali, std::uint64_t millisecondi);

  [[nodiscard]] const std::string& Tempo() const {
    return tempo_;
  }  // "12 minutes remaining"; empty before the first reading
  [[nodiscard]] const std::string& Velocità() const { return velocità_; }  // "350 KB/s", "12 MB/s"
  [[nodiscard]] double ByteAlSecondo() const { return byteAlSecondo_; }    // 0 before the first reading
  [[nodiscard]] double SecondiRimanenti() const { return secondi_; }       // below 0 before the first reading

 private:
  void AggiornaTempo();
  void AggiornaVelocità();

  std::uint64_t UltimoTempo = 0;  // 0 before the first reading
  double ByteAlUltimoTempo = 0;
  double VelocitaKB = 0;
  double byteAlSecondo_ = 0, secondi_ = -1;
  std::string tempo_, velocità_;
};

// "Totals: 12/345 KB (3/17 Files)", in MB from 2 MiB on. Never shows more done than there is.
[[nodiscard]] std::string TestoTrasferiti(double byteCopiati, double byteTotali, std::int32_t fileCopiati,
                                          std::int32_t fileTotali);

}  // namespace tandemize

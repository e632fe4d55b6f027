#include "backup/MisuratoreVelocita.h"

#include <algorithm>
#include <cmath>

#include "shell/Lingua.h"

namespace tandemize {

namespace {

constexpr std::uint64_t MillisecondiFraLetture = 2000;
constexpr double LimitePerMB = 2097152;

// Rounded to a whole number, halves to the even one.
std::string Arrotondato(double valore) {
  return std::to_string(static_cast<std::int64_t>(std::nearbyint(valore)));
}

}  // namespace

bool MisuratoreVelocita::Aggiorna(double byteCopiati, double byteTotali, std::uint64_t millisecondi) {
  if (UltimoTempo == 0) {
    UltimoTempo = std::max<std::uint64_t>(1, millisecondi);
    ByteAlUltimoTempo = byteCopiati;
    return false;
  }
  if (millisecondi - UltimoTempo < MillisecondiFraLetture) return false;
  const double byteAlMillisecondo =
      std::abs(byteCopiati - ByteAlUltimoTempo) / static_cast<double>(millisecondi - UltimoTempo);
  byteAlSecondo_ = byteAlMillisecondo * 1000;
  secondi_ = byteAlSecondo_ > 0 ? (byteTotali - byteCopiati) / byteAlSecondo_ : -1;
  AggiornaTempo();
  AggiornaVelocità();
  UltimoTempo = millisecondi;
  ByteAlUltimoTempo = byteCopiati;
  return true;
}

// Exactly 60 and 3600 seconds leave the text as it was, and so do the seconds from 60 to 61 that no range
// holds.
void MisuratoreVelocita::AggiornaTempo() {
  if (byteAlSecondo_ <= 0) return;
  std::string testo;
  if (secondi_ < 0)
    testo = "1 " + Messaggio(182);
  else if (secondi_ < 60)
    testo = Arrotondato(secondi_) + " " + Messaggio(182);
  else if (secondi_ >= 61 && secondi_ <= 3599)
    testo = Arrotondato(secondi_ / 60) + " " + Messaggio(183);
  else if (secondi_ > 3600)
    testo = Arrotondato(secondi_ / 3600) + " " + Messaggio(184);
  else
    return;
  tempo_ = testo + " " + Messaggio(185);
}

void MisuratoreVelocita::AggiornaVelocità() {
  VelocitaKB = byteAlSecondo_ / 1024;
  if (VelocitaKB < 1) VelocitaKB = 1024;
  velocità_ =
      VelocitaKB < 1024 ? Arrotondato(VelocitaKB) + " KB/s" : Arrotondato(VelocitaKB / 1024) + " MB/s";
}

std::string TestoTrasferiti(double byteCopiati, double byteTotali, std::int32_t fileCopiati,
                            std::int32_t fileTotali) {
  const bool inKB = byteTotali < LimitePerMB;
  const double unita = inKB ? 1024 : 1048576;
  const double totale = std::nearbyint(byteTotali / unita);
  const double fatto = std::min(totale, std::nearbyint(byteCopiati / unita));
  return Messaggio(186) + " " + Arrotondato(fatto) + "/" + Arrotondato(totale) + (inKB ? " KB " : " MB ") +
         "(" + std::to_string(fileCopiati) + "/" + std::to_string(fileTotali) + " Files)";
}

}  // namespace tandemize

// Animations: all pictures of a GIF file, made before the show, and the timer's walk through them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "presentation/cBmpRenderer.h"
#include "presentation/cGifReader.h"

namespace tandemize {

// Bytes that the pictures of one animation may take together, with the images that they are made of. Few
// bytes of a file can ask for any number of either.
inline constexpr std::uint64_t ByteMassimiAnimazione = 268'435'456;

struct Fotogramma {
  ImmagineBgr Immagine;
  int Delay = 0;  // hundredths of a second
};

using ListaFotogrammi = std::vector<Fotogramma>;

// The control that shows the picture.
class ControlloImmagine {
 public:
  ControlloImmagine() = default;
  virtual ~ControlloImmagine() = default;
  ControlloImmagine(const ControlloImmagine&) = delete;
  ControlloImmagine& operator=(const ControlloImmagine&) = delete;

  virtual void Mostra(const ImmagineBgr& immagine) = 0;
};

// A timer of the window. Switching it on begins its period anew.
class TimerFotogrammi {
 public:
  TimerFotogrammi() = default;
  virtual ~TimerFotogrammi() = default;
  TimerFotogrammi(const TimerFotogrammi&) = delete;
  TimerFotogrammi& operator=(const TimerFotogrammi&) = delete;

  virtual void Interval(int millisecondi) = 0;
  [[nodiscard]] virtual bool Enabled() const = 0;
  virtual void Enabled(bool acceso) = 0;
};

// Loads all pictures of a file, a program path, shows each as soon as it is there, and switches the timer on.
// Events run between the pictures; the window must not go away meanwhile. `NumeroFrame` is the number of
// pictures and `FrameCorrente` the one that shows, from 1 on, or 0. Gives the error that ended the loading:
// the list is then empty and the timer stays as it was, so that the window has no animation. A file without
// any image is none.
[[nodiscard]] ErroreGif CaricaGif(const std::string& File, cGifReader& Lettore, std::size_t& NumeroFrame,
                                  std::size_t& FrameCorrente, ControlloImmagine& Immagine,
                                  ListaFotogrammi& ListaFrame, TimerFotogrammi& Timer);

// Shows the picture `Indice`, counted from 1, for its own time: ten milliseconds for each hundredth, 80 at
// least. Does nothing if the list has no such picture.
void MostraFotogramma(ControlloImmagine& Immagine, const ListaFotogrammi& ListaFrame, std::size_t Indice,
                      TimerFotogrammi& Timer);

// The timer's event: the next picture, and behind the last one the first.
void FotogrammaSuccessivo(std::size_t& FrameCorrente, ControlloImmagine& Immagine,
                          const ListaFotogrammi& ListaFrame, TimerFotogrammi& Timer);

}  // namespace tandemize

#include "presentation/CaricaGif.h"

#include "shell/Schermo.h"

namespace tandemize {

namespace {

constexpr int DelayMinimo = 8;          // hundredths of a second
constexpr int MillisecondiMinimi = 80;  // a flicker below
constexpr int MillisecondiPerDelay = 10;

ErroreGif TroppoGrande() {
  return {ErroreGifTroppoGrande, "Image too large", "CaricaGif"};
}

// The pictures one after the other; `byte` sums up what they take. False after the last one, or after the
// error that `errore` tells.
bool LeggiFotogramma(cBmpRenderer& renderer, std::uint64_t& byte, ErroreGif& errore) {
  cGifReader& lettore = *renderer.Reader();
  if (!renderer.MoveNext()) {
    errore = lettore.Errore();
    return false;
  }
  byte += renderer.Image().Byte.size() + lettore.ImageBits().size();
  if (byte <= ByteMassimiAnimazione) return true;
  errore = TroppoGrande();
  return false;
}

// Opens the file and counts its images. The first picture is the next one to be read.
ErroreGif Prepara(const std::string& File, cGifReader& Lettore, cBmpRenderer& renderer,
                  std::size_t& NumeroFrame) {
  if (!Lettore.Init(File) || !renderer.Init(Lettore) || !Lettore.MoveLast()) return Lettore.Errore();
  NumeroFrame = static_cast<std::size_t>(Lettore.FrameIndex()) + 1;
  if (NumeroFrame * renderer.Image().Byte.size() > ByteMassimiAnimazione) return TroppoGrande();
  renderer.MoveFirst();
  return {};
}

}  // namespace

ErroreGif CaricaGif(const std::string& File, cGifReader& Lettore, std::size_t& NumeroFrame,
                    std::size_t& FrameCorrente, ControlloImmagine& Immagine, ListaFotogrammi& ListaFrame,
                    TimerFotogrammi& Timer) {
  ListaFrame.clear();
  NumeroFrame = FrameCorrente = 0;
  cBmpRenderer renderer;
  ErroreGif errore = Prepara(File, Lettore, renderer, NumeroFrame);
  if (errore.Numero == 0) {
    ListaFrame.reserve(NumeroFrame);
    DoEvents();
    std::uint64_t byte = 0;
    while (LeggiFotogramma(renderer, byte, errore)) {
      ListaFrame.push_back({renderer.Image(), Lettore.DelayTime()});
      MostraFotogramma(Immagine, ListaFrame, FrameCorrente = ListaFrame.size(), Timer);
      DoEvents();
    }
  }
  if (errore.Numero != 0) {
    ListaFrame.clear();
    FrameCorrente = 0;
  }
  NumeroFrame = ListaFrame.size();
  if (NumeroFrame > 0) Timer.Enabled(true);
  return errore;
}

void MostraFotogramma(ControlloImmagine& Immagine, const ListaFotogrammi& ListaFrame, std::size_t Indice,
                      TimerFotogrammi& Timer) {
  if (Indice == 0 || Indice > ListaFrame.size()) return;
  const Fotogramma& fotogramma = ListaFrame[Indice - 1];
  Timer.Interval(fotogramma.Delay < DelayMinimo ? MillisecondiMinimi
                                                : fotogramma.Delay * MillisecondiPerDelay);
  Immagine.Mostra(fotogramma.Immagine);
  if (!Timer.Enabled()) return;
  Timer.Enabled(false);
  Timer.Enabled(true);
}

void FotogrammaSuccessivo(std::size_t& FrameCorrente, ControlloImmagine& Immagine,
                          const ListaFotogrammi& ListaFrame, TimerFotogrammi& Timer) {
  if (ListaFrame.empty()) return;
  FrameCorrente = FrameCorrente >= ListaFrame.size() ? 1 : FrameCorrente + 1;
  MostraFotogramma(Immagine, ListaFrame, FrameCorrente, Timer);
}

}  // namespace tandemize

// Composes the images of a GIF reader into pictures of the screen's size, 24 bits a pixel.
//
// The canvas starts as a chequered pattern of light grey; each image is laid over what is there. All disposal
// methods count as "leave it": the images pile up, and where one is transparent those before it shine
// through. Rows of interlaced images appear in the order in which they are stored. What sticks out of the
// screen is cut off.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "presentation/cGifReader.h"

namespace tandemize {

// Rows from the top, each of `Passo` bytes (a multiple of 4): blue, green, red for each pixel, then filling.
struct ImmagineBgr {
  int Larghezza = 0, Altezza = 0;
  std::size_t Passo = 0;
  std::vector<std::uint8_t> Byte;
};

class cBmpRenderer {
 public:
  // Takes a reader that has a file open, and uses it as long as the renderer lives; the canvas gets the size
  // of its screen and shows the pattern. False if no file is open.
  [[nodiscard]] bool Init(cGifReader& Reader);

  [[nodiscard]] cGifReader* Reader() const { return reader_; }  // null before Init
  [[nodiscard]] int ScreenWidth() const { return tela_.Larghezza; }
  [[nodiscard]] int ScreenHeight() const { return tela_.Altezza; }
  [[nodiscard]] bool Eof() const { return reader_ == nullptr || reader_->Eof(); }

  // The canvas as it is now.
  [[nodiscard]] const ImmagineBgr& Image() const { return tela_; }

  // The pattern again, and the reader before its first image.
  void MoveFirst();

  // Reads the next image and lays it over the canvas. False as the reader's MoveNext, whose error tells why;
  // the canvas is then as it was.
  [[nodiscard]] bool MoveNext();

  // Lays the reader's image, as it is now, over the canvas.
  void MergeCurrentImage();

 private:
  void CopiaPixel(std::size_t destinazione, std::size_t sorgente, std::size_t numero);

  cGifReader* reader_ = nullptr;
  ImmagineBgr tela_;
};

}  // namespace tandemize

// Reader of GIF87a and GIF89a files, for the program's own animations.
//
// `Init` reads a file whole; the Move operations then walk its blocks in the order of the file, and each
// image is expanded to one byte a pixel, an index into the palette. Nothing is composed here: that is the
// renderer's work (cBmpRenderer.h).
//
// An operation that gives false has failed if `Errore().Numero` is not 0; otherwise there was nothing more to
// read. Whatever the bytes of a file are, nothing outside the reader's own memory is touched, and no
// operation runs without end. Refused are files above `DimensioneMassimaGif` bytes, and screens and images of
// more than `PixelMassimiGif` pixels: a few bytes of a damaged file could ask for gigabytes.
//
// What the reader leaves aside, and animations must do without: palettes of single images (their bytes are
// taken for image data) and interlacing (rows come in the order in which they are stored).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tandemize {

inline constexpr std::uint64_t DimensioneMassimaGif = 16'777'216;  // bytes of a file
inline constexpr std::uint64_t PixelMassimiGif = 16'777'216;       // width times height

// Numbers of the errors, beside those of platform/errors.h for a file that cannot be read.
inline constexpr std::int32_t ErroreOggetto = static_cast<std::int32_t>(0x80040000);
inline constexpr std::int32_t ErroreGifNonValida = 9;
inline constexpr std::int32_t ErroreBloccoImprevisto = ErroreOggetto + 1;
inline constexpr std::int32_t ErroreOltreLaPila = ErroreOggetto + 2;
inline constexpr std::int32_t ErroreCodiceLzw = ErroreOggetto + 3;
inline constexpr std::int32_t ErroreFineFile = ErroreOggetto + 4;
inline constexpr std::int32_t ErroreGifTroppoGrande = ErroreOggetto + 5;

struct ErroreGif {
  std::int32_t Numero = 0;  // 0: none
  std::string Descrizione;
  // The routines that the error came through, the outermost first: "class.routine(line)" and CR LF for each,
  // then the description.
  std::string Sorgente;
};

class cGifReader {
 public:
  // Events. They must not call the reader's operations.
  std::function<void(int righe)> Avanzamento;  // rows finished, told every ten rows or more
  std::function<void()> FineImmagine;          // an image is expanded; not told after a failure

  // Opens a file, a program path, and reads its header and palette. After a failure no file is open, all
  // sizes are 0. `ErroreGifNonValida` for what is no GIF, `ErroreFineFile` for a header that is cut short.
  [[nodiscard]] bool Init(const std::string& File);

  // Goes to the next image and expands it. False at the trailer, which sets `Eof`, and from then on without a
  // look at the file. After a failure the image's descriptor and the pixels so far stand; the reading stopped
  // behind the byte that was at fault, and another call goes on there.
  [[nodiscard]] bool MoveNext();

  // Back to the first image, which the next MoveNext will read. The control extension stays as it was last
  // read. False if no file is open.
  bool MoveFirst();

  // Walks from here to the trailer and expands nothing: `FrameIndex` is then the number of all images less 1.
  // Of the images only the descriptors are read, of the extensions nothing. True if the trailer was reached.
  [[nodiscard]] bool MoveLast();

  [[nodiscard]] const ErroreGif& Errore() const { return errore_; }  // of the last operation

  [[nodiscard]] bool Aperto() const { return aperto_; }  // a file is open
  [[nodiscard]] const std::string& Filename() const { return filename_; }
  // The trailer was reached. (The name in capitals is a macro of the C library.)
  [[nodiscard]] bool Eof() const { return eof_; }

  [[nodiscard]] std::string SigVersion() const;  // "GIF87a" or "GIF89a"
  [[nodiscard]] int ScreenWidth() const { return Parola(schermo_, 6); }
  [[nodiscard]] int ScreenHeight() const { return Parola(schermo_, 8); }
  [[nodiscard]] bool HasGlobalLut() const { return (schermo_[10] & 128) != 0; }
  [[nodiscard]] int GlobalLutSize() const { return 2 << (schermo_[10] & 7); }  // entries, if there is one

  // Of the last image. `FrameIndex` counts from 0 and is -1 before the first one.
  [[nodiscard]] std::int32_t FrameIndex() const { return frameIndex_; }
  [[nodiscard]] int ImageLeft() const { return Parola(immagine_, 0); }
  [[nodiscard]] int ImageTop() const { return Parola(immagine_, 2); }
  [[nodiscard]] int ImageWidth() const { return Parola(immagine_, 4); }
  [[nodiscard]] int ImageHeight() const { return Parola(immagine_, 6); }
  // One byte a pixel, row after row; ImageWidth times ImageHeight of them after a MoveNext that gave true.
  [[nodiscard]] const std::vector<std::uint8_t>& ImageBits() const { return imageBits_; }
  // 256 entries of red, green, blue: the file's palette; black where it has none.
  [[nodiscard]] const std::array<std::uint8_t, 768>& ImageLut() const { return imageLut_; }

  // Of the last control extension; an image without one of its own keeps what was there before it.
  [[nodiscard]] int DelayTime() const { return Parola(controllo_, 2); }  // hundredths of a second
  [[nodiscard]] bool IsTransparent() const { return (controllo_[1] & 1) != 0; }
  [[nodiscard]] int TransparentIndex() const { return controllo_[4]; }

 private:
  // The table's size, and the stack's. A well-made file can ask for more than this stack; it stays small.
  static constexpr std::size_t CodiciLzw = 4097, PilaLzw = 4001;
  static constexpr int BitMassimi = 12;  // of a code

  struct StatoLzw {
    std::uint32_t clearCode = 0, limite = 0, prossimo = 0;
    std::uint32_t buffer = 0;  // bits that were read and not yet used, the next one lowest
    int bitNelBuffer = 0, bitIniziali = 0, bit = 0;
    std::uint32_t precedente = 0;
    std::uint8_t primoByte = 0;  // of the previous code's string
    bool primoCodice = true;     // the next code is the first one behind a clear code
    std::array<std::uint32_t, CodiciLzw> prefissi{};
    std::array<std::uint8_t, CodiciLzw> suffissi{};
    std::array<std::uint8_t, PilaLzw> pila{};
  };

  template <std::size_t N>
  [[nodiscard]] static int Parola(const std::array<std::uint8_t, N>& byte, std::size_t posizione) {
    return byte[posizione] | byte[posizione + 1] << 8;
  }

  void pvCloseFile();
  [[nodiscard]] bool pvReadHeader();
  [[nodiscard]] bool pvReadByte(std::uint8_t& byte);
  [[nodiscard]] bool pvReadBuffer(std::span<std::uint8_t> buffer);
  [[nodiscard]] bool pvReadSubBlockByte(std::uint8_t& byte);
  [[nodiscard]] bool pvSkipSubBlocks();
  [[nodiscard]] bool pvReadExtension();
  [[nodiscard]] bool pvSkipExtension();
  [[nodiscard]] bool pvReadImage();
  [[nodiscard]] bool pvSkipImage();

  [[nodiscard]] bool pvLzwInit(int bitMinimi);
  [[nodiscard]] bool pvLzwExpand();
  [[nodiscard]] bool pvLzwReadCode(std::uint32_t& codice);
  [[nodiscard]] bool pvLzwUseCode(std::uint32_t codice);
  [[nodiscard]] bool pvLzwString(std::uint32_t codice);
  [[nodiscard]] bool pvLzwDecodeString(std::uint32_t Codice, std::size_t& Posizione);
  void pvLzwStartSize();
  void pvLzwAddEntry();

  // Both give false. The first sets the error, the second adds the routine that it comes through.
  [[nodiscard]] bool pvRaise(std::int32_t numero, std::string_view descrizione,
                             const char* routine = __builtin_FUNCTION(), int riga = __builtin_LINE());
  [[nodiscard]] bool pvTrace(const char* routine = __builtin_FUNCTION(), int riga = __builtin_LINE());

  std::string filename_, contenuto_;
  bool aperto_ = false, eof_ = false;
  std::size_t posizione_ = 0;
  std::size_t posizionePrima_ = 0;  // just behind the palette
  std::array<std::uint8_t, 13> schermo_{};
  std::array<std::uint8_t, 9> immagine_{};
  std::array<std::uint8_t, 6> controllo_{};
  std::array<std::uint8_t, 768> globalLut_{}, imageLut_{};
  std::int32_t frameIndex_ = -1;
  std::vector<std::uint8_t> imageBits_;
  std::size_t scritti_ = 0;      // pixels of imageBits_ so far
  std::size_t byteRimasti_ = 0;  // of the sub-block at hand
  StatoLzw lzw_;
  ErroreGif errore_;
};

}  // namespace tandemize

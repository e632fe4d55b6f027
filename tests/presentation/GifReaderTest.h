// What the tests of the GIF reader share.
#pragma once

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "fixtures/GifFile.h"
#include "fixtures/TemporaryFolder.h"
#include "platform/paths.h"
#include "presentation/cGifReader.h"

namespace tandemize::test {

class GifReaderTest : public ::testing::Test {
 protected:
  GifReaderTest() { platform::setProgramFolder(folder.host()); }

  std::string path(std::string_view bytes) const {
    folder.write("a.gif", bytes);
    return platform::toProgram(folder.host("a.gif"));
  }
  void open(std::string_view bytes) { ASSERT_TRUE(reader.Init(path(bytes))) << reader.Errore().Descrizione; }
  // Opens a file whose first image must expand to these pixels.
  void expectPixels(std::string_view bytes, const Pixels& pixels) {
    open(bytes);
    ASSERT_TRUE(reader.MoveNext()) << reader.Errore().Sorgente;
    EXPECT_EQ(reader.ImageBits(), pixels);
  }
  // Opens a file whose first image must fail.
  void expectError(std::string_view bytes, std::int32_t number, std::string_view text) {
    open(bytes);
    EXPECT_FALSE(reader.MoveNext());
    EXPECT_EQ(reader.Errore().Numero, number);
    EXPECT_EQ(reader.Errore().Descrizione, text);
  }
  void expectInitError(std::string_view bytes, std::int32_t number) {
    EXPECT_FALSE(reader.Init(path(bytes))) << bytes.size();
    EXPECT_EQ(reader.Errore().Numero, number) << bytes.size();
    EXPECT_FALSE(reader.Aperto());
    EXPECT_EQ(reader.ScreenWidth(), 0);
    EXPECT_FALSE(reader.MoveNext());
    EXPECT_EQ(reader.Errore().Numero, 0) << "no file is open";
  }

  TemporaryFolder folder;
  cGifReader reader;
};

inline Pixels randomPixels(std::size_t count, unsigned colours, unsigned seed) {
  std::minstd_rand random(seed);
  Pixels pixels(count);
  for (std::uint8_t& pixel : pixels) pixel = static_cast<std::uint8_t>(random() / 7 % colours);
  return pixels;
}

inline std::string start(int width = 4, int height = 4) {
  return gifStart(width, height, kFourColours);
}

inline std::string oneImage(int width, int height, std::string_view data, int flags = 0) {
  return start() + gifImage(0, 0, width, height, data, flags) + std::string(kGifEnd);
}

}  // namespace tandemize::test

// Damaged files: whatever they hold, every walk comes to an end and stays inside its memory. What leaves the
// memory is found by the sanitizers that these tests run under.
#include <gtest/gtest.h>

#include "presentation/GifReaderTest.h"

namespace tandemize {
namespace {

using namespace test;

class DamagedGifTest : public GifReaderTest {
 protected:
  // Walks the whole file both ways. Every error that can come is one of the table's.
  void walk(std::string_view bytes) {
    if (!reader.Init(path(bytes))) return expectKnownError();
    const bool counted = reader.MoveLast();
    if (!counted) expectKnownError();
    EXPECT_EQ(counted, reader.Eof());
    ASSERT_TRUE(reader.MoveFirst());
    for (int failures = 0; failures < 3 && !reader.Eof();) {
      if (reader.MoveNext()) {
        EXPECT_EQ(reader.ImageBits().size(), static_cast<std::size_t>(reader.ImageWidth()) *
                                                 static_cast<std::size_t>(reader.ImageHeight()));
      } else if (!reader.Eof()) {
        expectKnownError();
        ++failures;
      }
    }
  }
  void expectKnownError() const {
    switch (reader.Errore().Numero) {
      case ErroreGifNonValida:
      case ErroreBloccoImprevisto:
      case ErroreOltreLaPila:
      case ErroreCodiceLzw:
      case ErroreFineFile:
      case ErroreGifTroppoGrande:
        break;
      default:
        ADD_FAILURE() << reader.Errore().Numero << reader.Errore().Sorgente;
    }
  }
};

TEST_F(DamagedGifTest, Every_byte_of_an_animation_changed_to_something_else) {
  const std::string whole = smallAnimation();
  for (std::size_t i = 0; i < whole.size(); ++i)
    for (const int flip : {0x01, 0x04, 0x40, 0x80, 0xFF}) {
      std::string damaged = whole;
      damaged[i] = static_cast<char>(damaged[i] ^ flip);
      walk(damaged);
    }
}

TEST_F(DamagedGifTest, An_animation_cut_at_every_byte) {
  const std::string whole = smallAnimation();
  for (std::size_t length = 0; length < whole.size(); ++length) {
    walk(whole.substr(0, length));
    EXPECT_FALSE(reader.Eof()) << length;
  }
}

TEST_F(DamagedGifTest, An_animation_with_each_byte_missing_and_each_byte_doubled) {
  const std::string whole = smallAnimation();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    walk(whole.substr(0, i) + whole.substr(i + 1));
    walk(whole.substr(0, i + 1) + whole.substr(i));
  }
}

TEST_F(DamagedGifTest, The_shipped_animation_with_bytes_changed_here_and_there) {
  const std::string whole = readHostFile(std::string(TANDEMIZE_DATA) + "/Gif/Scansione.Gif");
  for (unsigned seed = 1; seed <= 200; ++seed) {
    std::minstd_rand random(seed);
    std::string damaged = whole;
    for (int i = 0; i < 5; ++i) damaged[random() % damaged.size()] = static_cast<char>(random() / 5);
    walk(damaged);
  }
}

TEST_F(DamagedGifTest, Random_bytes_behind_a_good_header) {
  for (unsigned seed = 1; seed <= 300; ++seed) {
    std::minstd_rand random(seed);
    std::string bytes = start(32, 32) + gifImage(0, 0, 32, 32, std::string(1, static_cast<char>(seed % 13)));
    for (int i = 0; i < 2000; ++i) bytes += static_cast<char>(random() / 11);
    walk(bytes);
  }
}

}  // namespace
}  // namespace tandemize

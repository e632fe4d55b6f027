#include "presentation/windows/Icone.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QPixmap>
#include <utility>
#include <vector>

namespace tandemize {
namespace {

std::vector<QIcon> all() {
  std::vector<QIcon> icons{IconaProgramma(), IconaAnimazione(), IconaChiusura(false), IconaChiusura(true)};
  for (int i = 0; i < 6; ++i) {
    icons.push_back(IconaBarra(i));
    icons.push_back(IconaAvviso(i));
  }
  return icons;
}

QImage drawn(const QIcon& icon, int size, qreal scale = 1, QIcon::Mode mode = QIcon::Normal) {
  return icon.pixmap(QSize(size, size), scale, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

// How much of a picture is covered, from 0 to 1.
double covered(const QImage& image) {
  double sum = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0; x < image.width(); ++x) sum += qAlpha(image.pixel(x, y)) / 255.0;
  return sum / (image.width() * image.height());
}

TEST(Icone, Every_picture_is_drawn_at_every_size_on_a_clear_ground) {
  for (const QIcon& icon : all()) {
    for (const int size : {16, 22, 24, 32, 48, 64, 256}) {
      const QImage image = drawn(icon, size);
      ASSERT_EQ(image.size(), QSize(size, size));
      EXPECT_GT(covered(image), 0.15) << size;
      EXPECT_LT(covered(image), 0.99) << size;
      EXPECT_LT(qAlpha(image.pixel(0, 0)), 128) << size;
    }
  }
}

TEST(Icone, A_screen_of_double_scale_gets_twice_the_pixels_drawn_anew) {
  const QImage twice = drawn(IconaProgramma(), 24, 2);
  EXPECT_EQ(twice.size(), QSize(48, 48));
  EXPECT_EQ(twice.devicePixelRatio(), 2);
  QImage single = drawn(IconaProgramma(), 48);
  single.setDevicePixelRatio(2);
  EXPECT_EQ(twice, single);
}

TEST(Icone, No_two_pictures_are_the_same) {
  const std::vector<QIcon> icons = all();
  for (std::size_t i = 0; i < icons.size(); ++i)
    for (std::size_t j = i + 1; j < icons.size(); ++j)
      EXPECT_NE(drawn(icons[i], 32), drawn(icons[j], 32)) << i << " and " << j;
}

TEST(Icone, The_flashing_icon_differs_from_the_programs_own_in_most_of_its_pixels) {
  const QImage one = drawn(IconaProgramma(), 22), other = drawn(IconaAnimazione(), 22);
  int different = 0;
  for (int y = 0; y < 22; ++y)
    for (int x = 0; x < 22; ++x)
      different += std::abs(qRed(one.pixel(x, y)) - qRed(other.pixel(x, y))) > 60 ? 1 : 0;
  EXPECT_GT(different, 22 * 22 / 2);
}

TEST(Icone, A_disabled_picture_is_paler) {
  for (int i = 0; i < 6; ++i)
    EXPECT_LT(covered(drawn(IconaBarra(i), 24, 1, QIcon::Disabled)), 0.5 * covered(drawn(IconaBarra(i), 24)));
}

TEST(Icone, A_number_without_a_picture_gives_none) {
  for (const int number : {-1, 6, 100}) {
    EXPECT_TRUE(IconaBarra(number).isNull());
    EXPECT_TRUE(IconaAvviso(number).isNull());
  }
}

TEST(Icone, A_copy_and_the_notification_area_find_all_sizes) {
  const QIcon copy = IconaProgramma();
  EXPECT_TRUE(copy.availableSizes().contains(QSize(22, 22)));
  EXPECT_TRUE(copy.availableSizes().contains(QSize(64, 64)));
}

}  // namespace
}  // namespace tandemize

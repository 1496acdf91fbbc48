#include "core/common/color_contrast.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

constexpr Color kWhite{255, 255, 255};
constexpr Color kLightWindow{250, 250, 250};
constexpr Color kDarkWindow{36, 36, 36};

TEST(ColorContrastTest, RatiosAndTheLeastChangeThatReadsInBothStyles) {
  EXPECT_NEAR(contrastRatio(Color{0, 0, 0}, kWhite), 21.0, 1e-9);
  EXPECT_NEAR(contrastRatio(Color{241, 161, 72}, kWhite), 2.11, 0.01);
  EXPECT_DOUBLE_EQ(contrastRatio(kWhite, Color{241, 161, 72}), contrastRatio(Color{241, 161, 72}, kWhite));

  // The home categories' own colours as text on either window, and a light orange as a
  // background under white titles: each ends readable, and no nearer to the original.
  for (const Color& c : {Color{255, 106, 39}, Color{239, 49, 57}, Color{112, 176, 78}, Color{24, 152, 237},
                         Color{215, 59, 219}, Color{255, 230, 0}, Color{128, 128, 128}}) {
    for (const Color& window : {kLightWindow, kDarkWindow}) {
      const Color shown = readableOn(c, window, kNormalTextContrast);
      EXPECT_GE(contrastRatio(shown, window), kNormalTextContrast);
      if (contrastRatio(c, window) >= kNormalTextContrast) {
        EXPECT_EQ(shown, c) << "readable already: unchanged";
      }
    }
  }
  const Color banner = readableOn(Color{241, 161, 72}, kWhite, kLargeTextContrast);
  EXPECT_GE(contrastRatio(banner, kWhite), kLargeTextContrast);
  EXPECT_LT(banner.green, 161) << "darkened, white cannot be lightened toward";
  EXPECT_LT(contrastRatio(Color{banner.red + 1, banner.green + 1, banner.blue + 1}, kWhite), kLargeTextContrast)
      << "no darker than it has to be";
}

}  // namespace
}  // namespace qmv

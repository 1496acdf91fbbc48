#pragma once
// An sRGB colour with 0-255 components, as the screens name their colours.
namespace qmv {

struct Color {
  int red = 0;
  int green = 0;
  int blue = 0;
  double alpha = 1.0;

  friend bool operator==(const Color&, const Color&) = default;
};

}  // namespace qmv

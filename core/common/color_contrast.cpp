#include "core/common/color_contrast.h"

#include <algorithm>
#include <cmath>

namespace qmv {
namespace {

double linear(int component) {
  const double v = std::clamp(component, 0, 255) / 255.0;
  return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
}

double luminance(const Color& c) { return 0.2126 * linear(c.red) + 0.7152 * linear(c.green) + 0.0722 * linear(c.blue); }

Color mixed(const Color& c, int toward, int step, int steps) {
  const auto mix = [&](int from) {
    return static_cast<int>(std::lround(from + (toward - from) * double(step) / steps));
  };
  return {mix(c.red), mix(c.green), mix(c.blue), c.alpha};
}

}  // namespace

double contrastRatio(const Color& a, const Color& b) {
  const double la = luminance(a);
  const double lb = luminance(b);
  return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

Color readableOn(const Color& color, const Color& against, double ratio) {
  // In steps of 1/255, so the answer is the least mix a component can show.
  constexpr int kSteps = 255;
  for (int step = 0; step <= kSteps; ++step) {
    for (const int toward : {0, 255}) {
      const Color candidate = mixed(color, toward, step, kSteps);
      if (contrastRatio(candidate, against) >= ratio) return candidate;
    }
  }
  return contrastRatio(Color{0, 0, 0}, against) >= contrastRatio(Color{255, 255, 255}, against) ? Color{0, 0, 0}
                                                                                                : Color{255, 255, 255};
}

}  // namespace qmv

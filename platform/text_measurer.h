#pragma once
// Text layout measurement, a port so that record heights (address and description
// blocks) come from a real layout engine in the product and from fixed metrics in tests.
// Sizes are in points, as the screens lay them out; the screen width the records wrap
// against is part of the port because it is a property of the device.
#include <string>

namespace qmv {

class TextMeasurer {
 public:
  static constexpr double kDefaultScreenWidth = 375.0;

  virtual ~TextMeasurer() = default;

  // Height of `text` set in the system font of `fontPointSize` points and wrapped
  // (at word boundaries, within a word when it alone is too wide) to `width` points.
  // Empty text measures 0. A width below one point is treated as one point. Invalid
  // UTF-8 is measured as if its bad bytes were replacement characters.
  // Thread-safe.
  virtual double measure(const std::string& text, double fontPointSize, double width) const = 0;

  // Width of the device's screen in points; 375 unless configured.
  double screenWidth() const { return screenWidth_; }
  void setScreenWidth(double width) { screenWidth_ = width; }

 private:
  double screenWidth_ = kDefaultScreenWidth;
};

}  // namespace qmv

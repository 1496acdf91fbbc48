#pragma once
// A TextMeasurer with arithmetic metrics, for tests and benchmarks that must not depend
// on installed fonts: every code point below U+0800 advances half an em, every other
// one a full em; lines break where the next code point would overflow the width (or at
// "\n"), and each line is `lineHeightEm` ems tall.
#include <atomic>

#include "platform/text_measurer.h"

namespace qmv {

class FixedMetricsTextMeasurer : public TextMeasurer {
 public:
  explicit FixedMetricsTextMeasurer(double lineHeightEm = 1.2) : lineHeightEm_(lineHeightEm) {}

  double measure(const std::string& text, double fontPointSize, double width) const override;

  // How many times measure() was called, so a test can see that a height was computed.
  int measureCount() const { return measureCount_.load(); }

  // Number of lines measure() lays `text` out in (0 for empty text).
  static int lineCount(const std::string& text, double fontPointSize, double width);

 private:
  double lineHeightEm_;
  mutable std::atomic<int> measureCount_{0};
};

}  // namespace qmv

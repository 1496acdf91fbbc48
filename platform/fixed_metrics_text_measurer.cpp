#include "platform/fixed_metrics_text_measurer.h"

#include <algorithm>

namespace qmv {

int FixedMetricsTextMeasurer::lineCount(const std::string& text, double fontPointSize, double width) {
  if (text.empty()) return 0;
  width = std::max(width, 1.0);
  int lines = 1;
  double used = 0;
  for (std::size_t i = 0; i < text.size();) {
    const unsigned char lead = static_cast<unsigned char>(text[i]);
    if (lead == '\n') {
      ++lines;
      used = 0;
      ++i;
      continue;
    }
    // Lead bytes of 3- and 4-byte sequences start at 0xE0; anything else is narrow,
    // continuation bytes included, so bad UTF-8 still measures to something.
    std::size_t length = 1;
    if (lead >= 0xF0) {
      length = 4;
    } else if (lead >= 0xE0) {
      length = 3;
    } else if (lead >= 0xC0) {
      length = 2;
    }
    const double advance = (lead >= 0xE0 ? 1.0 : 0.5) * fontPointSize;
    if (used > 0 && used + advance > width) {
      ++lines;
      used = 0;
    }
    used += advance;
    i += length;
  }
  return lines;
}

double FixedMetricsTextMeasurer::measure(const std::string& text, double fontPointSize, double width) const {
  ++measureCount_;
  return lineCount(text, fontPointSize, width) * lineHeightEm_ * fontPointSize;
}

}  // namespace qmv

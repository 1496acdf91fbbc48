#pragma once
// TextMeasurer over Pango with FreeType and fontconfig, laying text out in one named
// font family (by default "Noto Sans CJK SC", from the fonts-noto-cjk package) at 72
// dots per inch so that one point is one layout pixel. fontconfig substitutes another
// font when the family is not installed; resolvedFamily() tells which one is used.
#include <memory>
#include <string>

#include "platform/text_measurer.h"

namespace qmv {

class PangoTextMeasurer : public TextMeasurer {
 public:
  static constexpr const char* kDefaultFamily = "Noto Sans CJK SC";

  explicit PangoTextMeasurer(std::string family = kDefaultFamily);
  ~PangoTextMeasurer() override;
  PangoTextMeasurer(const PangoTextMeasurer&) = delete;
  PangoTextMeasurer& operator=(const PangoTextMeasurer&) = delete;

  // Logical height of the wrapped layout, in points (fractional). Thread-safe: calls
  // of every instance are serialised, as they share Pango's (thread-unsafe) font map.
  double measure(const std::string& text, double fontPointSize, double width) const override;

  // Family of the font fontconfig actually picked for the configured family at 14 pt.
  std::string resolvedFamily() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qmv

#pragma once
// Text has to read on what it is drawn on, in the light style and the dark one. The
// measure is the contrast ratio of the two colours' relative luminances, (L1 + 0.05) /
// (L2 + 0.05), which text must reach: 4.5 for normal text, 3 for large text (18 point, or
// 14 point bold). A colour that falls short is moved the shortest way toward black or
// white until it reaches the ratio, so a brand or category colour keeps its hue.
#include "core/common/color.h"

namespace qmv {

inline constexpr double kNormalTextContrast = 4.5;
inline constexpr double kLargeTextContrast = 3.0;

// From 1 (the same luminance) to 21 (black on white). Alpha is ignored.
double contrastRatio(const Color& a, const Color& b);

// `color` when it reaches `ratio` against `against`, else the least mix of it with black
// or with white that does (with both, whichever needs less). REQUIRES: ratio <= 4.5,
// which black or white reaches on every colour. Used either way round: a text colour
// against its background, or a background against the text it carries.
Color readableOn(const Color& color, const Color& against, double ratio);

}  // namespace qmv

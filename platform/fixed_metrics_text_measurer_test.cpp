#include "platform/fixed_metrics_text_measurer.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

TEST(FixedMetricsTextMeasurerTest, BreaksLinesByEmAdvances) {
  // CJK characters are one em, ASCII half an em.
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount("", 10, 100), 0);
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount("一二三四五六七八九十", 10, 100), 1);
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount("一二三四五六七八九十一", 10, 100), 2);
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount(std::string(20, 'a'), 10, 100), 1);
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount(std::string(21, 'a'), 10, 100), 2);
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount("a\nb\n", 10, 100), 3);
  // A glyph wider than the line still takes a line of its own.
  EXPECT_EQ(FixedMetricsTextMeasurer::lineCount("一二", 10, 0), 2);

  FixedMetricsTextMeasurer measurer(1.5);
  EXPECT_DOUBLE_EQ(measurer.measure("一二三四五六七八九十一", 10, 100), 2 * 1.5 * 10);
  EXPECT_EQ(measurer.measure("", 10, 100), 0.0);
  EXPECT_EQ(measurer.measureCount(), 2);
}

}  // namespace
}  // namespace qmv

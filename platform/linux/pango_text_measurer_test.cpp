#include "platform/linux/pango_text_measurer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

namespace qmv {
namespace {

const std::string kShort = "临沂市兰山区";
const std::string kLong = "山东省临沂市兰山区金雀山街道沂蒙路与金雀山路交汇处东北角银座商城一楼东门往北五十米路西";

TEST(PangoTextMeasurerTest, UsesTheShippedCjkFont) {
  PangoTextMeasurer measurer;
  EXPECT_EQ(measurer.resolvedFamily(), PangoTextMeasurer::kDefaultFamily);
  EXPECT_EQ(measurer.screenWidth(), 375.0);
}

TEST(PangoTextMeasurerTest, WrapsToMoreLinesAsTextGrowsOrWidthShrinks) {
  PangoTextMeasurer measurer;
  const double width = measurer.screenWidth() - 15 - 32.5 - 3;
  const double oneLine = measurer.measure(kShort, 14, width);
  // One line of 14-point text: taller than the font size, shorter than two lines' worth.
  EXPECT_GT(oneLine, 14.0);
  EXPECT_LT(oneLine, 32.5);
  EXPECT_EQ(measurer.measure(kShort, 14, 2000), oneLine);

  const double longText = measurer.measure(kLong, 14, width);
  EXPECT_GE(longText, 2 * oneLine);  // 44 characters of about 14 points do not fit in 324.5
  EXPECT_GT(measurer.measure(kLong, 14, width / 2), longText);
  EXPECT_GT(measurer.measure(kShort, 20, width), oneLine);
  EXPECT_GT(measurer.measure(kShort + "\n" + kShort, 14, width), 1.5 * oneLine);
}

TEST(PangoTextMeasurerTest, OddInputsMeasureWithoutFailing) {
  PangoTextMeasurer measurer;
  EXPECT_EQ(measurer.measure("", 14, 300), 0.0);
  EXPECT_GT(measurer.measure("abc\xff\xfe def", 14, 300), 0.0);
  EXPECT_GT(measurer.measure(kLong, 14, 0), measurer.measure(kLong, 14, 300));  // one glyph per line
  EXPECT_GT(measurer.measure(kShort, 14, -5), 0.0);
  EXPECT_GT(measurer.measure(kShort, 0, 300), 0.0);
}

TEST(PangoTextMeasurerTest, ConcurrentCallsAgree) {
  PangoTextMeasurer measurer;
  const double shortHeight = measurer.measure(kShort, 14, 200);
  const double longHeight = measurer.measure(kLong, 14, 200);
  ASSERT_NE(shortHeight, longHeight);
  std::atomic<int> mismatches{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int n = 0; n < 20; ++n) {
        const bool isShort = n % 2 == 0;
        if (measurer.measure(isShort ? kShort : kLong, 14, 200) != (isShort ? shortHeight : longHeight)) ++mismatches;
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(mismatches.load(), 0);
}

}  // namespace
}  // namespace qmv

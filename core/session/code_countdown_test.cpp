#include "core/session/code_countdown.h"

#include <gtest/gtest.h>

#include <vector>

namespace qmv {
namespace {

TEST(CodeCountdownTest, DecrementsBeforeDisplayAndReturnsToIdleOneTickAfterZero) {
  std::vector<std::pair<std::string, bool>> titles;
  CodeCountdown countdown([&](const std::string& t, bool enabled) { titles.emplace_back(t, enabled); });
  countdown.intervalTimerCallback();  // idle ticks change nothing
  EXPECT_TRUE(titles.empty());
  EXPECT_EQ(countdown.title(), "获取验证码");

  countdown.codeSent();
  countdown.intervalTimerCallback();
  ASSERT_EQ(titles.size(), 1u);
  EXPECT_EQ(titles[0], std::make_pair(std::string("00:59"), false));  // 60 itself is never shown
  for (int i = 0; i < 59; ++i) countdown.intervalTimerCallback();
  EXPECT_EQ(countdown.title(), "00:00");
  EXPECT_EQ(countdown.count(), 0);
  countdown.intervalTimerCallback();
  EXPECT_EQ(titles.back(), std::make_pair(std::string("获取验证码"), true));
  EXPECT_EQ(titles.size(), 61u);

  EXPECT_EQ(CodeCountdown::format(75), "01:15");
  EXPECT_EQ(CodeCountdown::format(5), "00:05");
}

}  // namespace
}  // namespace qmv

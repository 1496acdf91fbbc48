#include "core/common/loop_stall_probe.h"

#include <gtest/gtest.h>

#include <time.h>

#include <chrono>

#include "platform/linux/asio_main_loop.h"

namespace qmv {
namespace {

using std::chrono::milliseconds;

std::chrono::nanoseconds threadCpu() {
  timespec ts{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &ts);
  return std::chrono::seconds(ts.tv_sec) + std::chrono::nanoseconds(ts.tv_nsec);
}

// Works for `span` of this thread's own CPU time, so that a busy machine, which stretches
// the wall time, cannot shorten what the probe must see.
void spin(milliseconds span) {
  const auto until = threadCpu() + span;
  while (threadCpu() < until) {
  }
}

// Off, nothing is timed; on, the loop's tasks are timed one by one, a stretch nested in
// another belongs to the outer one, and the longest keeps the last note made inside it.
TEST(LoopStallProbeTest, TimesEachLoopTaskAndNamesTheLongest) {
  LoopStallProbe::setEnabled(false);
  LoopStallProbe::reset();
  { LoopStallProbe::Stretch ignored("task"); }
  EXPECT_EQ(LoopStallProbe::summary().callbacks, 0u);

  LoopStallProbe::setEnabled(true);
  AsioMainLoop loop;
  int ran = 0;
  loop.post([&] {
    spin(milliseconds(1));
    ++ran;
  });
  loop.post([&] {
    LoopStallProbe::note("first");
    {
      LoopStallProbe::Stretch inner("timer");
      LoopStallProbe::note("completion of Slow");
      // Far longer than the first task, so that a loaded machine stretching that one
      // cannot make it the longest.
      spin(milliseconds(30));
    }
    ++ran;
  });
  loop.post([&] { ++ran; });
  ASSERT_TRUE(loop.runUntil([&] { return ran == 3; }, milliseconds(5000)));
  const LoopStallProbe::Summary s = LoopStallProbe::summary();
  LoopStallProbe::setEnabled(false);
  EXPECT_EQ(s.callbacks, 3u);
  EXPECT_GE(s.longest, milliseconds(30));
  EXPECT_GE(s.total, milliseconds(31));
  EXPECT_EQ(s.where, "task: completion of Slow");
  EXPECT_GT(s.longestCpu, milliseconds(15));  // spinning is the thread's own work
  EXPECT_NE(LoopStallProbe::describe().find("(task: completion of Slow)"), std::string::npos);
  LoopStallProbe::reset();
}

}  // namespace
}  // namespace qmv

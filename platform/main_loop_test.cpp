#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

#include "platform/linux/asio_main_loop.h"
#include "platform/linux/glib_main_loop.h"
#include "platform/manual_main_loop.h"

namespace qmv {
namespace {

using std::chrono::milliseconds;

TEST(ManualMainLoopTest, AdvanceRunsDueTimersInOrderAndHonoursCancel) {
  ManualMainLoop loop;
  std::vector<std::string> seen;
  loop.postAfter(milliseconds(30), [&] { seen.push_back("c@" + std::to_string(loop.nowMillis())); });
  loop.postAfter(milliseconds(10), [&] { seen.push_back("a@" + std::to_string(loop.nowMillis())); });
  const auto dropped = loop.postAfter(milliseconds(20), [&] { seen.push_back("dropped"); });
  loop.postAfter(milliseconds(10), [&] { seen.push_back("b@" + std::to_string(loop.nowMillis())); });
  int ticks = 0;
  MainLoop::TimerId repeating = 0;
  repeating = loop.scheduleRepeating(milliseconds(15), [&] {
    if (++ticks == 2) loop.cancelTimer(repeating);
  });
  loop.cancelTimer(dropped);
  loop.cancelTimer(9999);  // unknown ids are ignored

  loop.advance(milliseconds(9));
  EXPECT_TRUE(seen.empty());
  loop.advance(milliseconds(100));
  EXPECT_EQ(seen, (std::vector<std::string>{"a@10", "b@10", "c@30"}));
  EXPECT_EQ(ticks, 2);
  EXPECT_EQ(loop.nowMillis(), 109);
}

TEST(ManualMainLoopTest, RunUntilWaitsForWorkPostedFromOtherThreadsWithoutMovingTheClock) {
  ManualMainLoop loop;
  std::atomic<int> done{0};
  std::vector<std::thread> workers;
  for (int i = 0; i < 4; ++i) {
    workers.emplace_back([&] {
      std::this_thread::sleep_for(milliseconds(20));
      loop.post([&] { ++done; });
    });
  }
  EXPECT_TRUE(loop.runUntil([&] { return done == 4; }, milliseconds(5000)));
  EXPECT_EQ(loop.nowMillis(), 0);
  for (auto& w : workers) w.join();
  EXPECT_FALSE(loop.runUntil([] { return false; }, milliseconds(20)));
}

// The two loops that drive a real interface thread keep the same promises.
template <typename Loop>
class RealMainLoopTest : public ::testing::Test {};
using RealLoops = ::testing::Types<AsioMainLoop, GLibMainLoop>;
TYPED_TEST_SUITE(RealMainLoopTest, RealLoops);

TYPED_TEST(RealMainLoopTest, PostsInOrderFiresTimersAndCancels) {
  TypeParam loop;
  std::vector<int> order;
  std::atomic<bool> fromThread{false};
  loop.post([&] { order.push_back(1); });
  loop.post([&] { order.push_back(2); });
  // Measured from before the timer is set: on a busy machine the thread below can take
  // longer to start and join than the margin the check leaves.
  const auto start = loop.nowMillis();
  loop.postAfter(milliseconds(30), [&] { order.push_back(4); });
  const auto cancelled = loop.postAfter(milliseconds(10), [&] { order.push_back(99); });
  std::thread other([&] {
    loop.cancelTimer(cancelled);
    loop.post([&] { fromThread = true; });
  });
  other.join();
  int ticks = 0;
  MainLoop::TimerId repeating = 0;
  repeating = loop.scheduleRepeating(milliseconds(5), [&] {
    if (++ticks == 3) loop.cancelTimer(repeating);
  });
  EXPECT_TRUE(loop.runUntil([&] { return order.size() == 3 && ticks == 3; }, milliseconds(5000)));
  EXPECT_GE(loop.nowMillis() - start, 25);
  EXPECT_EQ(order, (std::vector<int>{1, 2, 4}));
  EXPECT_TRUE(fromThread);
  // The repeating timer stays cancelled.
  loop.runUntil([] { return false; }, milliseconds(30));
  EXPECT_EQ(ticks, 3);

  loop.postAfter(milliseconds(1), [&] { loop.stop(); });
  loop.run();  // returns because of stop()
}

// Readiness reports follow what the owner wants: again and again while it leaves data
// unread, never while it wants nothing, and for data that arrived meanwhile once it wants
// again, whether or not it had stopped right after a report.
TYPED_TEST(RealMainLoopTest, WatchesReportReadinessWhileItIsWanted) {
  TypeParam loop;
  int fds[2];
  ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, fds), 0);
  enum class OnReport { drain, leave, drainAndStop } onReport = OnReport::drain;
  std::vector<int> seen;
  std::unique_ptr<IoWatcher::Watch> watch;
  watch = loop.watch(fds[0], [&](int events) {
    seen.push_back(events);
    char buffer[16];
    if (onReport != OnReport::leave) {
      while (read(fds[0], buffer, sizeof buffer) > 0) {
      }
    }
    if (onReport == OnReport::drainAndStop) watch->want(0);
  });
  ASSERT_NE(watch, nullptr);
  const auto send = [&] { ASSERT_EQ(write(fds[1], "x", 1), 1); };
  const auto settle = [&] { loop.runUntil([] { return false; }, milliseconds(30)); };
  const std::vector<int> once{IoWatcher::kReadable};

  watch->want(IoWatcher::kReadable);
  settle();
  EXPECT_TRUE(seen.empty());
  send();
  settle();
  EXPECT_EQ(seen, once);

  seen.clear();
  onReport = OnReport::leave;
  send();
  EXPECT_TRUE(loop.runUntil([&] { return seen.size() >= 3; }, milliseconds(2000)));
  watch->want(0);
  settle();
  seen.clear();
  send();  // on top of the unread byte
  settle();
  EXPECT_TRUE(seen.empty());
  onReport = OnReport::drain;
  watch->want(IoWatcher::kReadable);
  settle();
  EXPECT_EQ(seen, once);

  for (int round = 0; round < 2; ++round) {
    seen.clear();
    onReport = OnReport::drainAndStop;
    watch->want(IoWatcher::kReadable);
    settle();
    EXPECT_TRUE(seen.empty()) << round;
    send();
    settle();
    EXPECT_EQ(seen, once) << round;
  }

  // Writability is reported while wanted, and not once the owner only wants to read.
  seen.clear();
  onReport = OnReport::drain;
  watch->want(IoWatcher::kWritable);
  EXPECT_TRUE(loop.runUntil([&] { return !seen.empty(); }, milliseconds(2000)));
  EXPECT_EQ(seen.front(), IoWatcher::kWritable);
  watch->want(IoWatcher::kReadable);
  settle();
  seen.clear();
  send();
  settle();
  EXPECT_EQ(seen, once);
  watch.reset();
  close(fds[0]);
  close(fds[1]);
}

}  // namespace
}  // namespace qmv

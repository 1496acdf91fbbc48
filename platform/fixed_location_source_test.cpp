#include "platform/fixed_location_source.h"

#include <gtest/gtest.h>

#include <deque>
#include <vector>

#include "platform/main_loop.h"

namespace qmv {
namespace {

// Runs posted tasks only when the test says so.
class QueueLoop : public MainLoop {
 public:
  void post(Task task) override { tasks_.push_back(std::move(task)); }
  TimerId postAfter(Duration, Task task) override {
    post(std::move(task));
    return 0;
  }
  TimerId scheduleRepeating(Duration, Task) override { return 0; }
  void cancelTimer(TimerId) override {}
  void run() override { drain(); }
  bool runUntil(const std::function<bool()>& done, Duration) override {
    drain();
    return done();
  }
  void stop() override {}
  std::int64_t nowMillis() const override { return 0; }

  void drain() {
    while (!tasks_.empty()) {
      Task task = std::move(tasks_.front());
      tasks_.pop_front();
      task();
    }
  }
  std::size_t pending() const { return tasks_.size(); }

 private:
  std::deque<Task> tasks_;
};

TEST(FixedLocationSourceTest, ParsesLatitudeCommaLongitude) {
  const auto at = FixedLocationSource::parsePosition("35.104672,118.356448");
  ASSERT_TRUE(at);
  EXPECT_EQ(at->latitude, 35.104672);
  EXPECT_EQ(at->longitude, 118.356448);
  const auto spaced = FixedLocationSource::parsePosition(" -33.5 , +151 ");
  ASSERT_TRUE(spaced);
  EXPECT_EQ(spaced->latitude, -33.5);
  EXPECT_EQ(spaced->longitude, 151.0);
  for (const char* bad : {"", "35.1", "35.1,", ",118.3", "35.1;118.3", "91,118", "35,181", "35.1,118.3,0", "a,b",
                          "35.1x,118.3", "nan,118", "inf,118"}) {
    EXPECT_FALSE(FixedLocationSource::parsePosition(bad)) << bad;
  }
}

TEST(FixedLocationSourceTest, DeliversOnTheLoopUnlessStopped) {
  auto loop = std::make_shared<QueueLoop>();
  FixedLocationSource source(loop, Coordinate{35.1, 118.3});
  EXPECT_TRUE(source.locationServicesEnabled());
  std::vector<Coordinate> updates;
  int failures = 0;
  source.startUpdatingLocation([&](Coordinate c) { updates.push_back(c); }, [&] { ++failures; });
  EXPECT_TRUE(updates.empty());  // not from inside the start
  loop->drain();
  ASSERT_EQ(updates.size(), 1u);
  EXPECT_EQ(updates[0].latitude, 35.1);
  EXPECT_EQ(failures, 0);

  source.startUpdatingLocation([&](Coordinate c) { updates.push_back(c); }, [&] { ++failures; });
  source.stopUpdatingLocation();
  loop->drain();
  EXPECT_EQ(updates.size(), 1u);

  // A restart drops what the earlier start had queued.
  int firstHandler = 0;
  source.startUpdatingLocation([&](Coordinate) { ++firstHandler; }, nullptr);
  source.startUpdatingLocation([&](Coordinate c) { updates.push_back(c); }, nullptr);
  loop->drain();
  EXPECT_EQ(firstHandler, 0);
  EXPECT_EQ(updates.size(), 2u);
}

TEST(FixedLocationSourceTest, NoPositionFailsAndDisabledDeliversNothing) {
  auto loop = std::make_shared<QueueLoop>();
  FixedLocationSource unknown(loop, std::nullopt);
  int failures = 0;
  unknown.startUpdatingLocation([](Coordinate) { FAIL(); }, [&] { ++failures; });
  loop->drain();
  EXPECT_EQ(failures, 1);

  FixedLocationSource disabled(loop, Coordinate{35.1, 118.3}, /*enabled=*/false);
  EXPECT_FALSE(disabled.locationServicesEnabled());
  disabled.startUpdatingLocation([](Coordinate) { FAIL(); }, [] { FAIL(); });
  EXPECT_EQ(loop->pending(), 0u);
}

}  // namespace
}  // namespace qmv

#include "platform/linux/loop_notification_center.h"

#include <gtest/gtest.h>

#include <thread>

#include "platform/manual_main_loop.h"

namespace qmv {
namespace {

TEST(LoopNotificationCenterTest, DeliversOnTheLoopToCurrentObserversOnly) {
  auto loop = std::make_shared<ManualMainLoop>();
  auto center = std::make_shared<LoopNotificationCenter>(loop);
  std::vector<std::string> seen;
  const auto pay = center->addObserver("pay_success_noti", [&](const std::string& name, const Json& info) {
    seen.push_back(name + (info.is_null() ? "" : ":" + info.dump()));
  });
  const auto url = center->addObserver(
      "changeBaseUrl", [&](const std::string&, const Json& info) { seen.push_back("url=" + info.value("type", "")); });

  center->post("pay_success_noti");
  center->post("changeBaseUrl", Json{{"type", "http://127.0.0.1:1/qmv/app/v3/"}});
  center->post("city_changed_noti", Json{{"city", "济南市"}});  // nobody listens
  EXPECT_TRUE(seen.empty());                                    // nothing before the loop turns
  loop->runPending();
  EXPECT_EQ(seen, (std::vector<std::string>{"pay_success_noti", "url=http://127.0.0.1:1/qmv/app/v3/"}));

  // Removal wins over a delivery that is already queued.
  center->post("pay_success_noti");
  center->removeObserver(pay);
  loop->runPending();
  EXPECT_EQ(seen.size(), 2u);

  // Posting from another thread still delivers on the loop.
  std::thread worker([&] { center->post("changeBaseUrl", Json{{"type", "x"}}); });
  worker.join();
  loop->runPending();
  EXPECT_EQ(seen.back(), "url=x");
  center->removeObserver(url);
  center->removeObserver(url);  // unknown tokens are ignored
}

TEST(LoopNotificationCenterTest, AnObserverMayRemoveAnotherDuringDelivery) {
  auto loop = std::make_shared<ManualMainLoop>();
  auto center = std::make_shared<LoopNotificationCenter>(loop);
  int secondCalls = 0;
  NotificationCenter::ObserverToken second = 0;
  center->addObserver("n", [&](const std::string&, const Json&) { center->removeObserver(second); });
  second = center->addObserver("n", [&](const std::string&, const Json&) { ++secondCalls; });
  center->post("n");
  loop->runPending();
  EXPECT_EQ(secondCalls, 0);
}

}  // namespace
}  // namespace qmv

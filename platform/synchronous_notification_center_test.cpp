#include "platform/synchronous_notification_center.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qmv {
namespace {

TEST(SynchronousNotificationCenterTest, DeliversBeforePostReturnsToTheObserversOfThatMoment) {
  SynchronousNotificationCenter center;
  std::vector<std::string> seen;
  NotificationCenter::ObserverToken second = 0;
  NotificationCenter::ObserverToken late = 0;
  const auto first = center.addObserver("n", [&](const std::string&, const Json& info) {
    seen.push_back("first:" + (info.is_object() ? info.value("type", "") : std::string()));
    center.removeObserver(second);  // removed during the delivery: not called for it
    if (late == 0) {
      late = center.addObserver("n", [&](const std::string&, const Json&) { seen.push_back("late"); });
    }
  });
  second = center.addObserver("n", [&](const std::string&, const Json&) { seen.push_back("second"); });
  center.addObserver("other", [&](const std::string&, const Json&) { seen.push_back("other"); });

  center.post("n", Json{{"type", "x"}});
  EXPECT_EQ(seen, std::vector<std::string>{"first:x"}) << "added during the delivery: waits for the next post";
  center.post("n");
  EXPECT_EQ(seen, (std::vector<std::string>{"first:x", "first:", "late"}));

  // An observer may post again; the inner post is delivered whole before the outer goes on.
  seen.clear();
  center.removeObserver(first);
  center.removeObserver(first);  // unknown tokens are ignored
  center.removeObserver(late);
  center.addObserver("outer", [&](const std::string&, const Json&) {
    seen.push_back("outer");
    center.post("other");
  });
  center.addObserver("outer", [&](const std::string&, const Json&) { seen.push_back("outer2"); });
  center.post("outer");
  EXPECT_EQ(seen, (std::vector<std::string>{"outer", "other", "outer2"}));
}

}  // namespace
}  // namespace qmv

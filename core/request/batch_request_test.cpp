#include "core/request/batch_request.h"

#include "core/request/chain_request.h"
#include "core/request/request_test_support.h"

namespace qmv {
namespace {

using namespace std::chrono_literals;
using testsupport::Events;
using testsupport::TestRequest;

class GroupedRequestTest : public testsupport::RequestTest {};

TEST_F(GroupedRequestTest, BatchSucceedsWhenAllDoAndFailsAtTheFirstFailure) {
  auto batch = std::make_shared<BatchRequest>(std::vector<std::shared_ptr<BaseRequest>>{
      makeRequest("json"), makeRequest("status/299"), makeRequest("concurrent")});
  int successes = 0;
  int failures = 0;
  batch->startWithCompletionBlockWithSuccess(
      [&](BatchRequest& b) {
        ++successes;
        for (const auto& r : b.requestArray()) EXPECT_FALSE(r->isExecuting());
      },
      [&](BatchRequest&) { ++failures; });
  batch.reset();  // the running batch keeps itself alive
  ASSERT_TRUE(loop_->runUntil([&] { return successes + failures > 0; }, 10s));
  EXPECT_EQ(successes, 1);
  EXPECT_EQ(failures, 0);

  auto slow = makeRequest("slow");
  Events slowEvents;
  slow->addAccessory(std::make_shared<testsupport::RecordingAccessory>(slowEvents));
  auto failing = makeRequest("status/404");
  auto second = std::make_shared<BatchRequest>(std::vector<std::shared_ptr<BaseRequest>>{slow, failing});
  std::shared_ptr<BaseRequest> failedOne;
  second->startWithCompletionBlockWithSuccess([&](BatchRequest&) { ++successes; },
                                              [&](BatchRequest& b) { failedOne = b.failedRequest(); });
  ASSERT_TRUE(loop_->runUntil([&] { return failedOne != nullptr; }, 2s));
  EXPECT_EQ(failedOne, failing);
  EXPECT_FALSE(slow->isExecuting());  // stopped, not left running
  EXPECT_EQ(slowEvents, (Events{"willStart", "willStop", "didStop"}));
  spin(100ms);
  EXPECT_EQ(successes, 1);
}

TEST_F(GroupedRequestTest, ChainRunsStepsInOrderAndStepsMayAddTheNext) {
  std::vector<std::string> order;
  auto chain = std::make_shared<ChainRequest>();
  auto first = makeRequest("json");
  chain->addRequest(first, [&](ChainRequest& c, BaseRequest& done) {
    order.push_back("first:" + done.responseJSONObject()["name"].get<std::string>());
    // The next step depends on the answer of this one.
    auto next = makeRequest("echo?from=" + done.responseJSONObject()["name"].get<std::string>());
    c.addRequest(next, [&](ChainRequest&, BaseRequest& r) { order.push_back(r.responseJSONObject()["target"]); });
  });
  bool finished = false;
  chain->startWithCompletionBlockWithSuccess([&](ChainRequest&) { finished = true; }, nullptr);
  ASSERT_TRUE(loop_->runUntil([&] { return finished; }, 10s));
  EXPECT_EQ(order, (std::vector<std::string>{"first:qmv", "/echo?from=qmv"}));

  auto failing = std::make_shared<ChainRequest>();
  bool thirdRan = false;
  failing->addRequest(makeRequest("json"));
  auto broken = makeRequest("status/404");
  failing->addRequest(broken, [&](ChainRequest&, BaseRequest&) { thirdRan = true; });
  failing->addRequest(makeRequest("json"), [&](ChainRequest&, BaseRequest&) { thirdRan = true; });
  std::shared_ptr<BaseRequest> failedStep;
  failing->startWithCompletionBlockWithSuccess(nullptr, [&](ChainRequest& c) { failedStep = c.failedRequest(); });
  ASSERT_TRUE(loop_->runUntil([&] { return failedStep != nullptr; }, 10s));
  EXPECT_EQ(failedStep, broken);
  spin(100ms);
  EXPECT_FALSE(thirdRan);

  testsupport::LogCapture log;
  std::make_shared<ChainRequest>()->start();
  EXPECT_TRUE(log.contains("Error! Chain request array is empty."));
}

}  // namespace
}  // namespace qmv

#include "features/orders/prepare_pay_net_api.h"

#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/orders/my_order_net_api.h"

namespace qmv {
namespace {

using testsupport::Arguments;

class OrderEndpointsTest : public testsupport::ApiServerTest {};

TEST_F(OrderEndpointsTest, PreparePayPicksEndpointAndArgumentsByWhatIsBought) {
  logIn("S1");
  ASSERT_EQ(run(std::make_shared<PreparePayNetApi>("1250", "0", "st9", false)), "success");
  EXPECT_EQ(last().method, "POST");
  EXPECT_EQ(last().endpoint, "postPayForStore");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"},
                                         {"totalFee", "1250"},
                                         {"accountType", "0"},
                                         {"useBalance", "false"},
                                         {"storeId", "st9"}}));

  ASSERT_EQ(run(std::make_shared<PreparePayNetApi>("2100", "3", "st9", true, "act5", "3", "1")), "success");
  EXPECT_EQ(last().endpoint, "postPayForActivity");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"},
                                         {"totalFee", "2100"},
                                         {"accountType", "3"},
                                         {"useBalance", "true"},
                                         {"storeId", "st9"},
                                         {"activityId", "act5"},
                                         {"activityCount", "3"},
                                         {"isFirstOrder", "1"}}));

  ASSERT_EQ(run(std::make_shared<PreparePayNetApi>("100", "1", "p7", "12", "2", true)), "success");
  EXPECT_EQ(last().endpoint, "postPayForIndiana");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"},
                                         {"totalFee", "100"},
                                         {"accountType", "1"},
                                         {"useBalance", "true"},
                                         {"productId", "p7"},
                                         {"series", "12"},
                                         {"acount", "2"}}));

  // An activity purchase whose offer id is empty is paid as a store payment.
  ASSERT_EQ(run(std::make_shared<PreparePayNetApi>("100", "2", "st9", false, "", "1", "0")), "success");
  EXPECT_EQ(last().endpoint, "postPayForStore");
  EXPECT_EQ(last().arguments.back(), (std::pair<std::string, std::string>{"storeId", "st9"}));

  ASSERT_EQ(run(std::make_shared<MyOrderNetApi>("2", 3)), "success");
  EXPECT_EQ(last().method, "GET");
  EXPECT_EQ(last().endpoint, "getMyPosts");
  EXPECT_EQ(last().arguments, (Arguments{{"sessionId", "S1"}, {"page", "2"}, {"type", "3"}}));
}

}  // namespace
}  // namespace qmv

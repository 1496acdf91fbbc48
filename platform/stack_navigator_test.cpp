#include "platform/stack_navigator.h"

#include <gtest/gtest.h>

namespace qmv {
namespace {

std::vector<std::string> names(const std::vector<Screen>& layer) {
  std::vector<std::string> out;
  for (const auto& s : layer) out.push_back(s.name);
  return out;
}

TEST(StackNavigatorTest, PushPopAndPopToKeepRoots) {
  StackNavigator nav;
  EXPECT_FALSE(nav.topScreen());
  nav.push("MainViewController");
  const ScreenId detail = nav.push("StoreDetailViewController", Json{{"storeId", "7"}});
  nav.push("QXSubmitOderViewController");
  nav.push("QXPayNowViewController");
  EXPECT_TRUE(nav.popTo(detail));
  EXPECT_EQ(names(nav.layers()[0]), (std::vector<std::string>{"MainViewController", "StoreDetailViewController"}));
  EXPECT_EQ(nav.topScreen()->payload["storeId"], "7");
  EXPECT_FALSE(nav.popTo(9999));  // an id that is gone or never existed changes nothing
  EXPECT_EQ(nav.layers()[0].size(), 2u);
  EXPECT_TRUE(nav.pop());
  EXPECT_FALSE(nav.pop());  // the root stays
  EXPECT_EQ(nav.topScreen()->name, "MainViewController");
}

TEST(StackNavigatorTest, PresentOpensALayerThatDismissCloses) {
  StackNavigator nav;
  nav.push("MainViewController");
  const ScreenId login = nav.present("LoginViewController");
  nav.push("QXRegisterViewController");
  ASSERT_EQ(nav.layers().size(), 2u);
  EXPECT_EQ(nav.topScreen()->name, "QXRegisterViewController");
  nav.popToRoot();
  EXPECT_EQ(nav.topScreen()->id, login);
  EXPECT_FALSE(nav.pop());
  EXPECT_TRUE(nav.dismiss());
  EXPECT_FALSE(nav.dismiss());
  EXPECT_EQ(nav.topScreen()->name, "MainViewController");
  EXPECT_EQ(nav.history(), (std::vector<std::string>{"push MainViewController", "present LoginViewController",
                                                     "push QXRegisterViewController", "popToRoot LoginViewController",
                                                     "dismiss LoginViewController"}));
}

}  // namespace
}  // namespace qmv

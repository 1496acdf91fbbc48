#include <gtest/gtest.h>

#include <sstream>

#include "platform/linux/stream_alerts.h"
#include "platform/linux/stream_status_overlay.h"

namespace qmv {
namespace {

TEST(StreamStatusOverlayTest, PrintsEachStatusOnItsOwnLine) {
  std::ostringstream out;
  StreamStatusOverlay overlay(out);
  overlay.showImage("", "连接服务器失败,请稍后再试");
  overlay.showImage("success", "");
  overlay.showImage("success", "支付成功");
  EXPECT_EQ(out.str(), "连接服务器失败,请稍后再试\n支付成功\n");
}

TEST(StreamAlertsTest, PrintsTitleAndMessageThenWaitsForTheFrontEnd) {
  std::ostringstream out;
  StreamAlerts alerts(out, nullptr);
  int chosen = -1;
  alerts.show({"提示", "是否确定解除银行卡绑定？", {"取消", "确定"}, {}},
              [&](const AlertAnswer& a) { chosen = a.buttonIndex; });
  alerts.show({"", "您的设备无法拍照，请至设置中打开相机", {"知道了"}, {}}, nullptr);
  EXPECT_EQ(out.str(), "提示\n是否确定解除银行卡绑定？\n您的设备无法拍照，请至设置中打开相机\n");
  EXPECT_EQ(chosen, -1);
  EXPECT_TRUE(alerts.answer({1, {}}));
  EXPECT_EQ(chosen, 1);
  EXPECT_TRUE(alerts.answer({0, {}}));  // no callback: answered and dropped
  EXPECT_FALSE(alerts.answer({0, {}}));
}

}  // namespace
}  // namespace qmv

// Order records from hostile answers: missing, null and mistyped fields, and "data" of the
// wrong shape, read and shown without a crash.
#include <gtest/gtest.h>

#include "core/request/net_api_test_support.h"
#include "features/orders/my_order_net_api.h"
#include "features/orders/order_detail_net_api.h"
#include "features/orders/qx_my_activity_order_detail_view_controller.h"
#include "features/orders/qx_my_order_table_view_cell.h"

namespace qmv {
namespace {

class OrderRecordsTest : public testsupport::ApiServerTest {};

TEST_F(OrderRecordsTest, MistypedFieldsAndMisshapenDataRenderWithoutCrashing) {
  logIn("S1");
  answer("getMyPosts",
         R"({"success":"0","data":{"dataList":[
              {"orderId":20161,"status":null,"number":[1],"price":{"a":1},"orderName":true,"blance":"9","money":"3"},
              7, "x", null]}})");
  auto list = std::make_shared<MyOrderNetApi>("1", 0);
  ASSERT_EQ(run(list), "success");
  const auto orders = list->getOrderList();
  ASSERT_EQ(orders.size(), 4u) << "every element is a row, the odd ones empty";
  EXPECT_EQ(orders[0].orderId, "20161");
  EXPECT_EQ(orders[0].balancePaid, "") << "never read from the answer";
  EXPECT_EQ(orders[0].money, "");
  QXMyOrderTableViewCell cell;
  cell.setData(orders[0]);
  EXPECT_EQ(cell.priceText, "总价:¥");
  EXPECT_EQ(cell.nameText, "1") << "true reads as 1, as the platform reads it";
  EXPECT_FALSE(cell.numberHidden);
  EXPECT_EQ(cell.look.buttonTitle, "已完成");
  cell.setData(orders[3]);
  cell.rightBtnAction();  // no status, no id: nothing opens
  EXPECT_FALSE(navigator_->topScreen().has_value());

  for (const char* body : {R"({"success":"0","data":[1,2]})", R"({"success":"0","data":"x"})", R"({"success":"0"})",
                           R"({"success":"0","data":{"dataList":{"orderId":"1"}}})", "not json"}) {
    answer("getMyPosts", body);
    answer("getOrderDetail", body);
    ASSERT_EQ(run(list), "success");
    EXPECT_TRUE(list->getOrderList().empty()) << body;
    auto detail = std::make_shared<OrderDetailNetApi>("SB1");
    ASSERT_EQ(run(detail), "success");
    EXPECT_EQ(detail->getOrderDetail().has_value(), std::string(body).find("dataList") != std::string::npos) << body;
  }

  // The detail answer need not carry the id; a numeric code is still grouped.
  answer("getOrderDetail", R"({"success":"0","data":{"promotionCode":1234567890,"number":null,"content":5}})");
  QXMyActivityOrderDetailViewController screen("SB9");
  bool loaded = false;
  screen.onLoaded = [&](bool ok) { loaded = ok; };
  screen.viewWillAppear();
  ASSERT_TRUE(loop_->runUntil([&] { return loaded; }, std::chrono::seconds(10)));
  EXPECT_EQ(screen.orderIdText, "订单号:SB9");
  EXPECT_EQ(screen.codeText, "验证码:1234 5678 90");
  EXPECT_EQ(screen.priceText, "￥ x 件");
  EXPECT_EQ(screen.contentText, "5");
  EXPECT_FALSE(screen.qrCode.has_value()) << "no generator installed";
  // Characters, not bytes, are grouped.
  EXPECT_EQ(QXMyActivityOrderDetailViewController::groupedCode("优惠码AB12"), "优惠码A B12");
  EXPECT_EQ(QXMyActivityOrderDetailViewController::groupedCode("\x80\x80\xE4"), "\x80\x80\xE4");
}

}  // namespace
}  // namespace qmv

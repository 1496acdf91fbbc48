#pragma once
// The texts the order screens show, in one place. "%@" in the system's own texts becomes
// plain concatenation.
namespace qmv::order_texts {

inline constexpr const char* kMyOrdersTitle = "我的订单";
inline constexpr const char* kOrderDetailTitle = "订单详情";
inline constexpr const char* kPlaceholderImage = "zhanweitu_200";

// List rows. The row's total uses the half-width yen sign, the detail screens the
// full-width yuan sign.
// A tab without orders.
inline constexpr const char* kNoOrders = "暂无订单";
inline constexpr const char* kOrderIdPrefix = "订单号:";
inline constexpr const char* kRowTotalPrefix = "总价:¥";
inline constexpr const char* kNumberPrefix = "数量:";
inline constexpr const char* kHiddenNumber = "0";

// Status texts and row buttons.
inline constexpr const char* kStatusToUse = "待使用";
inline constexpr const char* kStatusToRate = "待评价";
inline constexpr const char* kStatusDone = "已完成";
inline constexpr const char* kButtonRefund = "退款";
inline constexpr const char* kButtonRate = "评价";
inline constexpr const char* kButtonRefunded = "已退款";
inline constexpr const char* kButtonDone = "已完成";

// The refund question of a row.
inline constexpr const char* kRefundTitle = "提示";
inline constexpr const char* kRefundMessage = "请确定是否退款，退款后优惠码失效！";
inline constexpr const char* kCancel = "取消";
inline constexpr const char* kConfirm = "确定";

// Detail screens.
inline constexpr const char* kDetailPricePrefix = "￥";
inline constexpr const char* kTimesSign = " x ";
inline constexpr const char* kPiecesSuffix = "件";
inline constexpr const char* kPhonePrefix = "手机号码:";
inline constexpr const char* kPaidTimePrefix = "付款时间:";
inline constexpr const char* kCodePrefix = "验证码:";
inline constexpr const char* kTotalPrefix = "总价:";
// What the detail's price is: the price of one unit of an activity order, the amount
// paid of a store order; and, when units cost less than that in total, the first-purchase
// saving that makes up the difference ("首单优惠 -¥%.2f").
inline constexpr const char* kUnitPriceLabel = "单价";
inline constexpr const char* kPaidPriceLabel = "实付";
inline constexpr const char* kFirstOrderSavingFormat = "首单优惠 -¥%.2f";
// Before the status in a detail.
inline constexpr const char* kStatusPrefix = "状态:";

// The rating screen.
inline constexpr const char* kRateTitle = "评价";
inline constexpr const char* kRateStarsLabel = "评分";
inline constexpr const char* kRatePlaceholder = "说说您的消费体验吧";
inline constexpr const char* kRateSubmit = "提交";
inline constexpr const char* kRateDone = "评价成功";
inline constexpr const char* kRateNoStar = "请选择评分";
inline constexpr const char* kRateTooLong = "评价内容不能超过200字";
inline constexpr const char* kRateBadText = "评价内容含有无法识别的字符";
inline constexpr const char* kErrorImage = "error";

// Tab button images, normal and selected, by tab index.
inline constexpr const char* kTabImages[4] = {"order_all", "order_waitUse", "order_waitComment", "order_done"};
inline constexpr const char* kTabSelectedImages[4] = {"order_all_s", "order_waitUse_s", "order_waitComment_s",
                                                      "order_done_s"};

// Screens the order screens open, by name, and the list itself (payload "type": its tab).
inline constexpr const char* kMyOrdersScreen = "QXMyOrderViewController";
inline constexpr const char* kStoreOrderDetailScreen = "QXMyStoreOrderDetailViewController";
inline constexpr const char* kActivityOrderDetailScreen = "QXMyActivityOrderDetailViewController";
inline constexpr const char* kGradeStoreScreen = "GradeStoreViewController";

}  // namespace qmv::order_texts

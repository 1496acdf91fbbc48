#pragma once
// The texts and pictures of checkout (the submit and pay-now screens, the receipt), in
// one place. "%@" in the system's own texts becomes concatenation; numeric formats are
// printf formats.
#include "features/discovery/discovery_texts.h"

namespace qmv::checkout_texts {

// Screen names on the navigator.
inline constexpr const char* kSubmitScreen = discovery_texts::kSubmitScreen;
inline constexpr const char* kPayNowScreen = "QXPayNowViewController";

inline constexpr const char* kSubmitTitle = "提交订单";
// The offer screen's way on to the submit screen.
inline constexpr const char* kBuyButton = "立即购买";
inline constexpr const char* kPayNowTitle = "支付订单";

// Submit screen: the unit price "%@元", quantities "%ld", the total "%.2f".
inline constexpr const char* kYuanSuffix = "元";
inline constexpr const char* kQuantityFormat = "%ld";
// Between a price and the number of units it is paid for.
inline constexpr const char* kTimesSign = " x ";
inline constexpr const char* kTotalFormat = "%.2f";
// A total that no price list can mean (not a finite number, or beyond what one checkout
// may take): shown in its place, and said when submitting.
inline constexpr const char* kTotalInvalid = "金额有误";
inline constexpr const char* kTotalRefused = "订单金额有误,无法提交";

// Pay-now screen.
inline constexpr const char* kTotalPrefix = "¥";
inline constexpr const char* kConfirm = "确认支付";
inline constexpr const char* kConfirmAmountFormat = "确认支付¥%.2f";
inline constexpr const char* kBalanceFormat = "我的余额 ¥%.2f";
inline constexpr const char* kPaySuccess = "支付成功";
inline constexpr const char* kPayFailed = "支付失败";
inline constexpr const char* kPayCancelled = "支付取消";
// No amount to charge is known (a draw whose share price could not be read): shown in
// place of the total, and said on confirm instead of paying.
inline constexpr const char* kTotalUnknown = "金额未知";
inline constexpr const char* kAmountUnknown = "未能确认支付金额,请稍后再试";
inline constexpr const char* kBalanceChecked = "yuegouxuan_h";
inline constexpr const char* kBalanceUnchecked = "yuegouxuan_g";
inline constexpr const char* kChannelChecked = "gouxuan";
inline constexpr const char* kChannelUnchecked = "gouxuan_g";
// The name of a draw product opened from a page: "一元夺宝-第%@期" with the series.
inline constexpr const char* kDrawNamePrefix = "一元夺宝-第";
inline constexpr const char* kDrawNameSuffix = "期";

// The channels as the pay-now screen names them beside their pictures.
inline constexpr const char* kAlipayName = "支付宝";
inline constexpr const char* kWeChatName = "微信支付";
inline constexpr const char* kUnionPayName = "银联支付";

// Channel codes sent as "accountType".
inline constexpr const char* kAlipayCode = "0";
inline constexpr const char* kWeChatCode = "1";
inline constexpr const char* kUnionPayCode = "2";
inline constexpr const char* kBalanceCode = "3";

// WeChat payment request.
inline constexpr const char* kWeChatPackage = "Sign=WXPay";

// Receipt panel.
inline constexpr const char* kReceiptPrice = "消费金额";
inline constexpr const char* kReceiptBalance = "余额抵现";
inline constexpr const char* kReceiptMoney = "还需支付";
inline constexpr const char* kReceiptValueFormat = "%.2f元";
inline constexpr const char* kReceiptNote = "为了确保您成功消费，请尽快和商家确认";

// The payment result, opened when a payment has ended.
inline constexpr const char* kPayResultScreen = "PayResultViewController";
inline constexpr const char* kPayResultTitle = "支付结果";
inline constexpr const char* kPaidAmountPrefix = "实付 ¥";
inline constexpr const char* kUnpaidAmountPrefix = "未支付 ¥";
inline constexpr const char* kPayAgainNote = "支付未完成,可返回重新支付";
inline constexpr const char* kViewOrder = "查看订单";

}  // namespace qmv::checkout_texts

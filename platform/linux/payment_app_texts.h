#pragma once
// What the payment applications' stand-ins say back, as their vendors' apps do.
namespace qmv::payment_app_texts {

inline constexpr char16_t kAlipayCancelled[] = u"用户中途取消";
inline constexpr char16_t kAlipayFailed[] = u"订单支付失败";

}  // namespace qmv::payment_app_texts

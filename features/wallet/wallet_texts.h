#pragma once
// Every text the wallet screens show: titles, labels, button titles and the messages of
// their checks and results. "%@" of the system's own formats becomes concatenation.
namespace qmv::wallet_texts {

// My bank card.
inline constexpr const char* kMyBankCardTitle = "我的银行卡";
inline constexpr const char* kAddCardButton = "+ 添加银行卡";
// Between the holder's name and the bank on the card ("%@   %@").
inline constexpr const char* kNameBankSeparator = "   ";
inline constexpr const char* kUnbindAlertTitle = "提示";
inline constexpr const char* kUnbindAlertMessage = "是否确定解除银行卡绑定？";
inline constexpr const char* kCancel = "取消";
inline constexpr const char* kConfirm = "确定";
inline constexpr const char* kUnbound = "解绑成功";

// Bind bank card.
inline constexpr const char* kBindTitle = "绑定银行卡";
// Before the masked phone on the bind screen.
inline constexpr const char* kPhoneLabelPrefix = "    ";
inline constexpr const char* kNoHolderName = "请输入持卡人姓名";
inline constexpr const char* kNoIdNumber = "请输入身份证号码";
inline constexpr const char* kNoCardNumber = "请输入银行卡号";
inline constexpr const char* kBadHolderName = "持卡人姓名格式不正确";
inline constexpr const char* kBadIdNumber = "身份证号格式不正确";
inline constexpr const char* kBadCardNumber = "银行卡格式不正确";
// A card number that fails the checksum is reported as an unsupported card, on purpose.
inline constexpr const char* kUnsupportedCard = "暂时不支持此类银行卡";
inline constexpr const char* kNoCode = "请输入验证码";
inline constexpr const char* kBound = "绑定成功";

// Withdrawal.
inline constexpr const char* kWithDrawTitle = "提现";
inline constexpr const char* kAmountLabel = "  金额 (元) : ";
inline constexpr const char* kChooseCard = "选择银行卡";
inline constexpr const char* kBalanceSuffix = "元";
inline constexpr const char* kNoAmount = "请输入提现金额";
inline constexpr const char* kBelowMinimum = "提现最小金额为10元";
inline constexpr const char* kBadAmount = "金额为整数或者最多两位小数";
inline constexpr const char* kInsufficientBalance = "余额不足";
inline constexpr const char* kWithDrawSubmitted = "您的提现申请已提交,申请将在1-3个工作日内处理完成";
// The picture of the error overlay the withdrawal checks show.
inline constexpr const char* kErrorImage = "error";

// Member record values of bankCardNum.
inline constexpr const char* kCardBound = "1";
inline constexpr const char* kNoCard = "0";

// Screens, by name.
inline constexpr const char* kMyBankCardScreen = "MyBankCardViewController";
inline constexpr const char* kBindScreen = "QXBindBankCardViewController";
inline constexpr const char* kWithDrawScreen = "QXWithDrawViewController";

// The wallet tab ("钱包").
inline constexpr const char* kWealthTitle = "钱包";
inline constexpr const char* kBalanceLabel = "账户余额(元)";
inline constexpr const char* kNoBoundCard = "未绑定银行卡";
// Between the bank and the card's last four digits: "中国银行 尾号3446".
inline constexpr const char* kCardTailPrefix = " 尾号";
inline constexpr const char* kWithDrawEntry = "提现";
inline constexpr const char* kBankCardEntry = "我的银行卡";
inline constexpr const char* kFundRecordEntry = "资金明细";
inline constexpr const char* kVoucherEntry = "我的代金券";

// Fund records ("资金明细"): the kinds of the filter, in the order of their "type" values.
inline constexpr const char* kFundRecordTitle = "资金明细";
inline constexpr const char* kFundKinds[] = {"全部", "充值", "消费", "提现", "退款", "奖励"};
inline constexpr const char* kNoFundRecords = "暂无资金记录";

// Vouchers ("我的代金券").
inline constexpr const char* kVoucherTitle = "我的代金券";
inline constexpr const char* kVoucherValidUntil = "有效期至";
// Between the first and the last day: "2026-01-01至2026-03-31".
inline constexpr const char* kVoucherDateSeparator = "至";
inline constexpr const char* kVoucherAllStores = "全部门店通用";
inline constexpr const char* kVoucherUnused = "未使用";
inline constexpr const char* kVoucherUsed = "已使用";
inline constexpr const char* kVoucherExpired = "已过期";
inline constexpr const char* kVoucherYuanSuffix = "元";
inline constexpr const char* kNoVouchers = "暂无代金券";

// Screens of the wallet tab, by name.
inline constexpr const char* kWealthScreen = "WealthViewController";
inline constexpr const char* kFundRecordScreen = "FundRecordViewController";
inline constexpr const char* kVoucherScreen = "MyVoucherViewController";

}  // namespace qmv::wallet_texts

#pragma once
// The command line's own texts in the application's language: the member block's labels
// and the examples its help gives. Everything else it prints comes from the screens.
namespace qmv::cli_texts {

inline constexpr const char* kAccountLabel = "账号: ";
inline constexpr const char* kNicknameLabel = "昵称: ";
inline constexpr const char* kPhoneLabel = "手机: ";
inline constexpr const char* kBalanceLabel = "余额: ￥";
inline constexpr const char* kInviteCodeLabel = "邀请码: ";
inline constexpr const char* kInviteLinkLabel = "链接: ";
inline constexpr const char* kQrFileLabel = "二维码: ";
inline constexpr const char* kFirstContactsLabel = "一级人脉: ";
inline constexpr const char* kSecondContactsLabel = "  二级人脉: ";

inline constexpr const char* kCityHelp = "city name, e.g. 济南市";
inline constexpr const char* kRefundHelp = "refund an order to be used (answer the question with --answer 确定)";
inline constexpr const char* kUnbindHelp = "unbind the card (answer the question with --answer 确定)";
inline constexpr const char* kPageHelp =
    "a server page by type (0 一元夺宝, 1 圈子, 2 幸运大转盘, 3 绑定地址, 4 个人等级, 5 我的帖子)";

}  // namespace qmv::cli_texts

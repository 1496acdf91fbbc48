#pragma once
// Texts and screen names of the member centre's password, level, profile, phone change and
// invitation screens. The password
// rule, its message and the other account messages are the registration's and recovery's
// (core/session/account_texts.h), shared so that every screen says them alike.
namespace qmv::account_centre_texts {

// Password change ("修改密码").
inline constexpr const char* kChangePasswordTitle = "修改密码";
inline constexpr const char* kOldPasswordPlaceholder = "原密码";
inline constexpr const char* kNoOldPassword = "请输入原密码";
inline constexpr const char* kSamePassword = "新密码不能与原密码相同";

// Member level ("会员等级").
inline constexpr const char* kMemberLevelTitle = "会员等级";
inline constexpr const char* kLevelPageEntry = "等级说明";

// Profile ("个人资料"): labels, the sex values' names and each field's refusal.
inline constexpr const char* kProfileTitle = "个人资料";
inline constexpr const char* kNickNameLabel = "昵称";
inline constexpr const char* kNameLabel = "真实姓名";
inline constexpr const char* kSexLabel = "性别";
inline constexpr const char* kBirthdayLabel = "生日";
inline constexpr const char* kEmailLabel = "邮箱";
inline constexpr const char* kAddressLabel = "收货地址";
inline constexpr const char* kAddressNameLabel = "收货人";
inline constexpr const char* kAddressPhoneLabel = "收货电话";
inline constexpr const char* kPostcodeLabel = "邮编";
inline constexpr const char* kMale = "男";
inline constexpr const char* kFemale = "女";
inline constexpr const char* kUnknownField = "不支持修改该资料";
inline constexpr const char* kBadCharacters = "资料包含无法识别的字符";
inline constexpr const char* kBadNickName = "昵称须为1-20个字";
inline constexpr const char* kBadName = "真实姓名须为1-20个字";
inline constexpr const char* kBadSex = "请选择性别";
inline constexpr const char* kBadBirthday = "请输入正确的生日";
inline constexpr const char* kBadEmail = "请输入正确的邮箱";
inline constexpr const char* kBadAddress = "收货地址须为1-100个字";
inline constexpr const char* kBadAddressName = "收货人须为1-20个字";
inline constexpr const char* kBadPostcode = "请输入正确的邮编";
inline constexpr const char* kProfileChanged = "修改成功";

// Phone change ("更换手机号").
inline constexpr const char* kChangePhoneTitle = "更换手机号";
inline constexpr const char* kNewPhonePlaceholder = "新手机号";
inline constexpr const char* kSamePhone = "新手机号与原手机号相同";
inline constexpr const char* kNoCodeSent = "请先获取验证码";
inline constexpr const char* kPhoneChanged = "手机号修改成功";

// Invitation ("邀请好友"): the registration page the link opens.
inline constexpr const char* kInviteTitle = "邀请好友";
inline constexpr const char* kInvitePath = "/static/register/index.html?inviteID=";
inline constexpr const char* kNoInviteCode = "暂无邀请码";
inline constexpr const char* kLinkCopied = "链接已复制";

// Screens, by name. The server's level page is the page host's type 4.
inline constexpr const char* kChangePasswordScreen = "ChangePasswordViewController";
inline constexpr const char* kMemberLevelScreen = "MemberLevelViewController";
inline constexpr const char* kProfileScreen = "ProfileViewController";
inline constexpr const char* kChangePhoneScreen = "ChangePhoneViewController";
inline constexpr const char* kInviteScreen = "InviteViewController";
inline constexpr const char* kH5Screen = "QXH5ViewController";
inline constexpr const char* kH5TypeKey = "h5Type";
inline constexpr long kLevelPageType = 4;

}  // namespace qmv::account_centre_texts

#pragma once
// Texts and screen names of the member centre's password and level screens. The password
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

// Screens, by name. The server's level page is the page host's type 4.
inline constexpr const char* kChangePasswordScreen = "ChangePasswordViewController";
inline constexpr const char* kMemberLevelScreen = "MemberLevelViewController";
inline constexpr const char* kH5Screen = "QXH5ViewController";
inline constexpr const char* kH5TypeKey = "h5Type";
inline constexpr long kLevelPageType = 4;

}  // namespace qmv::account_centre_texts

#pragma once
// Every text the account screens show: titles, placeholders, button titles and the
// messages of their checks and results, kept together so that wording changes in one
// place. The push alias values are BaseViewController's.
namespace qmv::account_texts {

// Login.
inline constexpr const char* kLoginTitle = "账号登录";
inline constexpr const char* kPhonePlaceholder = "手机号码";
inline constexpr const char* kPasswordPlaceholder = "密码";
inline constexpr const char* kLoginButton = "登录";
inline constexpr const char* kCancelButton = "取消";
inline constexpr const char* kRegisterButton = "新用户注册";
inline constexpr const char* kForgetButton = "忘记密码";
// Signing out, asked first.
inline constexpr const char* kLogoutAlertTitle = "退出登录";
inline constexpr const char* kLogoutAlertMessage = "确定要退出登录吗?";
inline constexpr const char* kLogoutCancel = "取消";
inline constexpr const char* kLogoutConfirm = "退出";
// Any account change whose phone and password could not be stored (a full disk).
inline constexpr const char* kAccountNotSaved = "账号信息保存失败,请检查存储空间";

// Registration.
inline constexpr const char* kRegisterTitle = "注册账号";
inline constexpr const char* kBadPhone = "请输入正确的手机号";
inline constexpr const char* kGetCode = "获取验证码";  // the code button while idle
inline constexpr const char* kCodeSent = "验证码发送成功";
inline constexpr const char* kNoPassword = "请输入密码";
inline constexpr const char* kBadPassword = "密码须为6-16位字母或数字的组合";
inline constexpr const char* kPasswordsDiffer = "两次输入密码不一致";
inline constexpr const char* kNoCode = "请输入验证码";
inline constexpr const char* kRegistered = "注册成功";
inline constexpr const char* kNoCamera = "您的设备无法拍照，请至设置中打开相机";
inline constexpr const char* kNoCameraButton = "知道了";
inline constexpr const char* kBadQrCode = "无效二维码";
inline constexpr const char* kInviteMarker = "inviteid=";
// The fields that say nothing else about themselves.
inline constexpr const char* kUserNamePlaceholder = "用户名";
inline constexpr const char* kConfirmPasswordPlaceholder = "确认密码";
inline constexpr const char* kInvitePlaceholder = "邀请码(选填)";

// Password recovery.
inline constexpr const char* kFindPwdTitle = "找回密码";
inline constexpr const char* kFindPhonePlaceholder = "手机号";
inline constexpr const char* kCodePlaceholder = "验证码";
inline constexpr const char* kNextButton = "下一步";
inline constexpr const char* kBadPhoneFormat = "手机号码格式错误";
inline constexpr const char* kNewPasswordPlaceholder = "新密码(6-16位数字或字母的组合)";
inline constexpr const char* kConfirmPlaceholder = "确认新密码";
inline constexpr const char* kSubmitButton = "提交";
inline constexpr const char* kNoNewPassword = "请新输入密码";
inline constexpr const char* kPasswordChanged = "密码修改成功";

// Screen names handed to the navigator (the login screen's is BaseViewController's).
inline constexpr const char* kRegisterScreen = "QXRegisterViewController";
inline constexpr const char* kFindPwdScreen = "FindPwdViewController";
inline constexpr const char* kFindPwdStep2Screen = "FindPwdStep2ViewController";

}  // namespace qmv::account_texts

#pragma once
// The graphical client's own texts; everything else it shows comes from the screens.
#include <cstddef>
#include <string>

namespace qmv::gtk_texts {

inline constexpr const char* kBack = "返回";  // the back button's tooltip
// The eye of a password field.
inline constexpr const char* kShowPassword = "显示密码";
inline constexpr const char* kHidePassword = "隐藏密码";
inline constexpr const char* kYuanPrefix = "￥";
inline constexpr const char* kUnreadablePicture = "无法读取图片";
inline constexpr const char* kLaunchPicture = "启动图";
inline constexpr const char* kUnderstood = "知道了";
inline constexpr const char* kLogout = "退出登录";  // the member tab's sign-out button
// A screen this client does not draw yet.
inline constexpr const char* kUndrawnTitle = "暂未开放";
inline constexpr const char* kUndrawnNote = "此功能暂未在本客户端提供";
// A failed list's button that loads it again.
inline constexpr const char* kRetry = "重试";
inline constexpr const char* kClearKeyword = "清除搜索";  // ends the nearby list's keyword search
inline constexpr const char* kMyLocation = "我的位置";  // the member's marker on a map
// The profile's edit dialog and the portrait's and invitation's file choosers.
inline constexpr const char* kCancel = "取消";
inline constexpr const char* kSave = "保存";
inline constexpr const char* kChoosePortrait = "选择头像";
inline constexpr const char* kChooseQrPicture = "选择二维码图片";  // the scanner without a camera
inline constexpr const char* kCopyLink = "复制链接";
inline constexpr const char* kSaveQrCode = "保存二维码";
inline constexpr const char* kQrSaved = "二维码已保存";
inline constexpr const char* kQrNotSaved = "二维码保存失败";
inline constexpr const char* kPictureFiles = "图片";
// The picture browser.
inline constexpr const char* kClose = "关闭";
// "图片 2/5": a picture's place among a record's pictures, for its label and the browser.
inline std::string pictureOf(std::size_t number, std::size_t count) {
  return std::string(kPictureFiles) + " " + std::to_string(number) + "/" + std::to_string(count);
}
// Names of icon-only controls, said by a screen reader and shown as their tooltips.
inline constexpr const char* kLoadMore = "加载更多";
inline constexpr const char* kChooseCity = "选择城市";
inline constexpr const char* kSearch = "搜索";
inline constexpr const char* kShowMap = "地图";
inline constexpr const char* kShowList = "列表";
inline constexpr const char* kRefresh = "刷新";
inline constexpr const char* kNavigate = "导航";
inline constexpr const char* kCall = "拨打电话";
inline constexpr const char* kBookmark = "收藏";
inline constexpr const char* kScanInvite = "扫描邀请二维码";
inline constexpr const char* kSpin = "抽奖";
inline constexpr const char* kFewer = "减少数量";
inline constexpr const char* kMore = "增加数量";
inline constexpr const char* kZoomIn = "放大";
inline constexpr const char* kZoomOut = "缩小";
// The picture browser's zoom button, the keys' way to what a double click does.
inline constexpr const char* kZoomPicture = "放大图片";
inline constexpr const char* kFitPicture = "还原图片";
inline constexpr const char* kAllOrders = "全部";
inline std::string starsOf(int count) { return std::to_string(count) + "星"; }
// Fields the form shows without a placeholder.
inline constexpr const char* kUserName = "用户名";
inline constexpr const char* kConfirmPassword = "确认密码";
inline constexpr const char* kInviteCode = "邀请码";
// The balance's mark on the pay-now screen, for a screen reader.
inline constexpr const char* kBalanceMark = "余额";
// What a screen reader says for a member's portrait.
inline std::string portraitOf(const std::string& name) { return name + "的头像"; }

}  // namespace qmv::gtk_texts

#pragma once
// The graphical client's own texts; everything else it shows comes from the screens.
namespace qmv::gtk_texts {

inline constexpr const char* kBack = "返回";  // the back button's tooltip
inline constexpr const char* kYuanPrefix = "￥";
inline constexpr const char* kUnreadablePicture = "无法读取图片";
inline constexpr const char* kUnderstood = "知道了";

}  // namespace qmv::gtk_texts

#pragma once
// Every text of the portrait screen ("头像").
namespace qmv::portrait_texts {

inline constexpr const char* kTitle = "头像";
inline constexpr const char* kNotAPicture = "请选择图片";
inline constexpr const char* kTooLarge = "图片过大";
inline constexpr const char* kUploadFailed = "头像上传失败";
inline constexpr const char* kNoPortrait = "暂无头像";

inline constexpr const char* kScreen = "PortraitViewController";

}  // namespace qmv::portrait_texts

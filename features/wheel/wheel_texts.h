#pragma once
// The texts of the wheel screen, in one place.
namespace qmv::wheel_texts {

inline constexpr const char* kTitle = "幸运大转盘";
inline constexpr const char* kWheelScreen = "WheelViewController";
// "活动时间: %@ 至 %@" and "剩余抽奖次数: %@".
inline constexpr const char* kPeriodPrefix = "活动时间: ";
inline constexpr const char* kPeriodSeparator = " 至 ";
inline constexpr const char* kLeftCountPrefix = "剩余抽奖次数: ";

// Why a spin was not drawn.
inline constexpr const char* kNoWheel = "暂无转盘活动";
inline constexpr const char* kNoSpinsLeft = "您的抽奖次数已用完";
inline constexpr const char* kNotStarted = "活动尚未开始";
inline constexpr const char* kEnded = "活动已结束";
inline constexpr const char* kNoResult = "抽奖失败,请稍后再试";

}  // namespace qmv::wheel_texts

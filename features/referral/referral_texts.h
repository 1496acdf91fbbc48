#pragma once
// The texts and pictures of the contacts screens, in one place. "%@" formats are written
// as prefix and suffix.
namespace qmv::referral_texts {

// A contacts list without anyone in it.
inline constexpr const char* kNoContacts = "暂无人脉";

inline constexpr const char* kMyContactTitle = "我的人脉";
// "%@的邀请" with the contact's name.
inline constexpr const char* kSecondContactTitleSuffix = "的邀请";
inline constexpr const char* kMyContactScreen = "MyContactViewController";
inline constexpr const char* kSecondContactScreen = "MySecondContactViewController";

// Cells: "手机号:%@", "加入时间:%@", "邀请%@人" (first level only).
inline constexpr const char* kPhonePrefix = "手机号:";
inline constexpr const char* kJoinTimePrefix = "加入时间:";
inline constexpr const char* kInvitedPrefix = "邀请";
inline constexpr const char* kInvitedSuffix = "人";
inline constexpr const char* kPortraitPlaceholder = "v4_morentouxiang";
inline constexpr const char* kInviteArrowImage = "yaoqinganniu";

}  // namespace qmv::referral_texts

#pragma once
// App-wide notification names, exact.
namespace qmv {

inline constexpr const char* kChangeBaseUrlNotification = "changeBaseUrl";
inline constexpr const char* kPaySuccessNotification = "pay_success_noti";
inline constexpr const char* kCityChangedNotification = "city_changed_noti";
// This client's own: the session's member changed (see changeSelfInfo).
inline constexpr const char* kSelfInfoChangedNotification = "self_info_changed_noti";

}  // namespace qmv

#pragma once
// Texts of the session's shared screens: the loading overlay and the home tab's built-in
// categories.
namespace qmv::session_texts {

inline constexpr const char* kLoading = "努力加载中…";

inline constexpr const char* kFoodCategory = "餐饮美食";
inline constexpr const char* kLeisureCategory = "休闲娱乐";
inline constexpr const char* kBeautyCategory = "丽人美妆";
inline constexpr const char* kDiscoveriesCategory = "最新发现";
inline constexpr const char* kOffersCategory = "专属活动";

}  // namespace qmv::session_texts

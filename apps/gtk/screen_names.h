#pragma once
// Names of the screens the graphical client opens by itself (the core's screens are
// named in their features' texts).
namespace qmv::gtk {

inline constexpr const char* kTabBarScreen = "TabBarViewController";
inline constexpr const char* kGuideScreen = "LaunchViewController";
inline constexpr const char* kCityScreen = "AreaSelectView";

}  // namespace qmv::gtk

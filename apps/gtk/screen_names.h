#pragma once
// Names of the screens the graphical client opens by itself (the core's screens are
// named in their features' texts).
namespace qmv::gtk {

inline constexpr const char* kTabBarScreen = "TabBarViewController";
inline constexpr const char* kGuideScreen = "LaunchViewController";
inline constexpr const char* kCityScreen = "AreaSelectView";
// A record's pictures full screen; its payload: "urls" (addresses) and "index" (the first shown).
inline constexpr const char* kImageBrowserScreen = "ImageBrowser";

}  // namespace qmv::gtk

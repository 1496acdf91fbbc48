#pragma once
// The application's own pictures, under the names the screens give them, drawn as themed
// symbolic icons so that they follow the light and dark styles.
#include <string>
#include <string_view>

namespace qmv::gtk {

// The icon drawn for the picture named `name`; `fallback` for a name not known here.
inline std::string iconOfPicture(std::string_view name, const char* fallback = "image-x-generic-symbolic") {
  struct Known {
    std::string_view picture;
    const char* icon;
  };
  static constexpr Known kKnown[] = {
      {"v4_morentouxiang", "avatar-default-symbolic"},  // a portrait not (yet) there
      {"meishi", "emoji-food-symbolic"},
      {"xiuxian", "emoji-activities-symbolic"},
      {"liren", "emoji-people-symbolic"},
      {"faxian", "emoji-travel-symbolic"},
      {"huodong", "starred-symbolic"},
  };
  for (const Known& known : kKnown) {
    if (known.picture == name) return known.icon;
  }
  return fallback;
}

}  // namespace qmv::gtk

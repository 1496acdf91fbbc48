#include "apps/gtk/chinese_locale.h"

#include <clocale>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qmv::gtk {

namespace {

bool isChinese(std::string_view name) { return name.starts_with("zh"); }

// The variables speakChinese set, with the member's values (none: unset).
std::vector<std::pair<const char*, std::optional<std::string>>>& memberValues() {
  static std::vector<std::pair<const char*, std::optional<std::string>>> values;
  return values;
}

}  // namespace

bool messagesAreChinese(const char* messages, const char* language) {
  if (messages == nullptr || !isChinese(messages)) return false;
  return language == nullptr || *language == '\0' || isChinese(language);
}

bool speakChinese() {
  std::setlocale(LC_ALL, "");
  if (messagesAreChinese(std::setlocale(LC_MESSAGES, nullptr), std::getenv("LANGUAGE"))) return true;
  for (const char* name : {"zh_CN.UTF-8", "zh_CN.utf8"}) {
    if (std::setlocale(LC_ALL, name) == nullptr) continue;
    for (const auto& [variable, value] : {std::pair{"LC_ALL", name}, std::pair{"LANGUAGE", "zh_CN"}}) {
      const char* was = std::getenv(variable);
      memberValues().emplace_back(variable, was != nullptr ? std::optional<std::string>(was) : std::nullopt);
      setenv(variable, value, 1);
    }
    return true;
  }
  std::setlocale(LC_ALL, "");
  return false;
}

void restoreMemberLocale(GAppLaunchContext* context) {
  for (const auto& [variable, value] : memberValues()) {
    if (value) {
      g_app_launch_context_setenv(context, variable, value->c_str());
    } else {
      g_app_launch_context_unsetenv(context, variable);
    }
  }
}

}  // namespace qmv::gtk

#pragma once
// Texts of the application's shell: the tab bar and the server switch.
namespace qmv::shell_texts {

// Under each tab's icon, in the tabs' order.
inline constexpr const char* kTabTitles[] = {"首页", "附近", "财富", "社区", "我的"};

inline constexpr const char* kProductionServer = "正式环境";
inline constexpr const char* kTestServer = "测试环境";
inline constexpr const char* kManualServer = "手动输入";

}  // namespace qmv::shell_texts

#pragma once
// The home view's server switch: an action sheet "正式环境" / "测试环境" / "手动输入".
// Every choice posts "changeBaseUrl" with user info "type" = the chosen base URL; manual
// entry asks for a host in an alert with one field ("IP:") and forms
// "http://%@/qmv/app/v3/" from it.
#include <functional>
#include <string>

#include "shell/app_config.h"
#include "shell/shell_texts.h"

namespace qmv {

class ServerSwitch {
 public:
  static constexpr const char* kProduction = shell_texts::kProductionServer;
  static constexpr const char* kTest = shell_texts::kTestServer;
  static constexpr const char* kManual = shell_texts::kManualServer;
  static constexpr const char* kHostField = "IP:";
  static constexpr const char* kOk = "OK";
  // Where a server answers the application's endpoints.
  static constexpr const char* kApplicationPath = "/qmv/app/v3/";

  using Switched = std::function<void(const std::string& baseUrl)>;

  explicit ServerSwitch(const AppConfig& config) : production_(config.productionServer), test_(config.testServer) {}

  // showAlert: the sheet, then for manual entry the host alert. `onSwitched`, when
  // given, runs after "changeBaseUrl" was posted (so the new base is in place); it does
  // not run when the sheet is dismissed. The object may go away before the answer.
  // REQUIRES: the interface thread; without an Alerts port nothing is shown.
  void showAlert(Switched onSwitched = {}) const;

  // A server named by its root alone ("http://host:8080" or "http://host:8080/") means its
  // application path; any other URL is kept as given.
  static std::string withApplicationPath(const std::string& url);

  const std::string& production() const { return production_; }
  const std::string& test() const { return test_; }

  static std::string manualBaseUrl(const std::string& host);

 private:
  std::string production_;
  std::string test_;
};

}  // namespace qmv

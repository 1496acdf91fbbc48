#pragma once
// The home view's server switch: an action sheet "正式环境" / "测试环境" / "手动输入".
// Every choice posts "changeBaseUrl" with user info "type" = the chosen base URL; manual
// entry asks for a host in an alert with one field ("IP:") and forms
// "http://%@/qmv/app/v3/" from it.
#include <string>

#include "shell/app_config.h"

namespace qmv {

class ServerSwitch {
 public:
  explicit ServerSwitch(const AppConfig& config) : production_(config.productionServer), test_(config.testServer) {}
  // showAlert: REQUIRES the interface thread and the Alerts and NotificationCenter ports.
  void showAlert();

  static std::string manualBaseUrl(const std::string& host);

 private:
  static void askForHost();

  std::string production_;
  std::string test_;
};

}  // namespace qmv

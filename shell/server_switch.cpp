#include "shell/server_switch.h"

#include "core/common/notification_names.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/notification_center.h"

namespace qmv {
namespace {

void postBaseUrl(const std::string& baseUrl, const ServerSwitch::Switched& onSwitched) {
  Env::current().notifications->post(kChangeBaseUrlNotification, Json{{"type", baseUrl}});
  if (onSwitched) onSwitched(baseUrl);
}

void askForHost(ServerSwitch::Switched onSwitched) {
  Env::current().alerts->show(AlertSpec{"", "", {ServerSwitch::kOk}, {ServerSwitch::kHostField}},
               [onSwitched = std::move(onSwitched)](const AlertAnswer& answer) {
                 const std::string host = answer.fieldTexts.empty() ? std::string() : answer.fieldTexts.front();
                 postBaseUrl(ServerSwitch::manualBaseUrl(host), onSwitched);
               });
}

}  // namespace

std::string ServerSwitch::manualBaseUrl(const std::string& host) { return "http://" + host + kApplicationPath; }

std::string ServerSwitch::withApplicationPath(const std::string& url) {
  const auto authority = url.find("://");
  if (authority == std::string::npos) return url;
  const auto path = url.find_first_of("/?#", authority + 3);
  if (path == std::string::npos) return url + kApplicationPath;
  if (path + 1 == url.size() && url[path] == '/') return url.substr(0, path) + kApplicationPath;
  return url;
}

void ServerSwitch::showAlert(Switched onSwitched) const {
  Env::current().alerts->show(AlertSpec{"", "", {kProduction, kTest, kManual}, {}},
               [production = production_, test = test_, onSwitched = std::move(onSwitched)](const AlertAnswer& answer) {
                 if (answer.buttonIndex == 0) {
                   postBaseUrl(production, onSwitched);
                 } else if (answer.buttonIndex == 1) {
                   postBaseUrl(test, onSwitched);
                 } else if (answer.buttonIndex == 2) {
                   askForHost(onSwitched);
                 }
               });
}

}  // namespace qmv

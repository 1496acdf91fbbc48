#include "shell/server_switch.h"

#include "core/common/notification_names.h"
#include "platform/alerts.h"
#include "platform/env.h"
#include "platform/notification_center.h"

namespace qmv {
namespace {

void postBaseUrl(const std::string& baseUrl) {
  if (auto center = Env::current().notifications) center->post(kChangeBaseUrlNotification, Json{{"type", baseUrl}});
}

}  // namespace

std::string ServerSwitch::manualBaseUrl(const std::string& host) { return "http://" + host + "/qmv/app/v3/"; }

void ServerSwitch::showAlert() {
  const auto alerts = Env::current().alerts;
  if (!alerts) return;
  alerts->show(AlertSpec{"", "", {"正式环境", "测试环境", "手动输入"}, {}},
               [production = production_, test = test_](const AlertAnswer& answer) {
                 if (answer.buttonIndex == 0) {
                   postBaseUrl(production);
                 } else if (answer.buttonIndex == 1) {
                   postBaseUrl(test);
                 } else if (answer.buttonIndex == 2) {
                   askForHost();
                 }
               });
}

void ServerSwitch::askForHost() {
  const auto alerts = Env::current().alerts;
  if (!alerts) return;
  alerts->show(AlertSpec{"", "", {"OK"}, {"IP:"}}, [](const AlertAnswer& answer) {
    const std::string host = answer.fieldTexts.empty() ? std::string() : answer.fieldTexts.front();
    postBaseUrl(manualBaseUrl(host));
  });
}

}  // namespace qmv

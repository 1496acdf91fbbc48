#include "core/request/base_net_api.h"

#include "core/common/dictionary.h"
#include "core/common/string_util.h"
#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

constexpr const char* kSuccessKey = "success";
constexpr const char* kMessageKey = "message";
constexpr const char* kDataKey = "data";
constexpr const char* kCorrect = "0";
constexpr const char* kSessionExpired = "2";

void showStatus(const std::string& text) {
  if (const auto& overlay = Env::current().overlay) overlay->showImage("", text);
}

}  // namespace

Json BaseNetApi::getBaseArgument() const {
  Json arguments = Json::object();
  if (const auto& user = GlobalData::sharedInstance().selfInfo())
    setCustomString(arguments, user->sessionId, "sessionId");
  return arguments;
}

Json BaseNetApi::responseData() const {
  const Json root = responseEnvelope();
  if (!root.is_object()) return nullptr;
  const auto it = root.find(kDataKey);
  return it == root.end() ? Json() : *it;
}

void BaseNetApi::requestCompleteFilter() {
  const std::string& text = responseString();
  if (text.empty()) return;
  const Json root = parseJson(text);
  const std::string success = strForKey(root, kSuccessKey);
  if (success == kSessionExpired) {
    if (sessionDelegate) sessionDelegate->sessionIsExpire(*this);
    return;
  }
  if (success == kCorrect) {
    isCorrectResult_ = true;
    return;
  }
  if (!needShowError) return;
  const std::string message = StringUtil::convertUnicodeToString(strForKey(root, kMessageKey));
  if (!message.empty()) showStatus(message);
}

void BaseNetApi::requestFailedFilter() {
  if (needShowError) showStatus(kConnectionFailedMessage);
  if (noNetWorkingDelegate) noNetWorkingDelegate->noNetWorking();
}

void BaseNetApi::toggleAccessoriesWillStartCallBack() {
  if (netLoadingDelegate) netLoadingDelegate->startLoading();
}

void BaseNetApi::toggleAccessoriesWillStopCallBack() {
  if (netLoadingDelegate) netLoadingDelegate->stopLoading();
}

}  // namespace qmv

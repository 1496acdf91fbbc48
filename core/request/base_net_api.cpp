#include "core/request/base_net_api.h"

#include "core/common/dictionary.h"
#include "core/common/string_util.h"
#include "core/request/request_operation.h"
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

// The response text as the operation parsed it, once per response: the envelope check and
// the readers of "data" all look at it instead of each parsing the text again. Text that
// does not parse reads as null, which no reader takes for an object.
const Json& parsedResponse(const BaseRequest& request) {
  static const Json kNothing;
  return request.requestOperation ? request.requestOperation->responseObject() : kNothing;
}

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
  const Json& root = parsedResponse(*this);
  if (!root.is_object()) return nullptr;
  const auto it = root.find(kDataKey);
  return it == root.end() ? Json() : *it;
}

void BaseNetApi::requestCompleteFilter() {
  if (responseString().empty()) return;
  const Json& root = parsedResponse(*this);
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

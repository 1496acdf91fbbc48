#include "core/request/base_net_api.h"

#include <utility>

#include "core/common/dictionary.h"
#include "core/common/fast_json.h"
#include "core/common/log.h"
#include "core/common/string_util.h"
#include "core/request/envelope_reader.h"
#include "core/request/request_operation.h"
#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

constexpr const char* kSuccessKey = "success";
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

// What the verdict needs of an answer, read without the parsed response where the text
// allows: a large answer whose "data" is read elsewhere is then never built into a tree,
// nor into simdjson's tape (many times its text), for two short texts.
Envelope envelopeOf(const BaseRequest& request) {
  if (request.requestOperation && !request.responseString().empty()) {
    const std::string& text = request.responseString();
    if (auto scanned = scanEnvelope(text)) return std::move(*scanned);
    Envelope envelope;
    if (fastjson::readDocument(text, [&envelope](fastjson::Element root) { envelope = envelopeIn(root); })) {
      return envelope;
    }
  }
  return envelopeIn(parsedResponse(request));
}

}  // namespace

Json BaseNetApi::getBaseArgument() const {
  Json arguments = Json::object();
  if (const auto& user = GlobalData::sharedInstance().selfInfo())
    setCustomString(arguments, user->sessionId, "sessionId");
  return arguments;
}

const Json& BaseNetApi::responseList(const char* key) const {
  static const Json kNoList = Json::array();
  const Json& data = responseData();
  if (!data.is_object()) return kNoList;
  const auto it = data.find(key);
  if (it != data.end() && it->is_array()) return *it;
  if (verdict_ == Verdict::Correct && !std::exchange(dataWarned_, true)) {
    logWarning("the answer of " + requestUrl() + " carried no \"" + key + "\" array");
  }
  return kNoList;
}

const Json& BaseNetApi::responseData() const {
  static const Json kNothing;
  const Json& root = parsedResponse(*this);
  if (!root.is_object()) return kNothing;
  const auto it = root.find(kDataKey);
  const Json& data = it == root.end() ? kNothing : *it;
  // Every payload of this server is an object. A correct envelope without one leaves the
  // screen with nothing to show and no message from the system, so the user hears it here.
  if (!data.is_object() && strForKey(root, kSuccessKey) == kCorrect && !std::exchange(dataWarned_, true)) {
    logWarning("the answer of " + requestUrl() + " carried no \"data\" object");
  }
  return data;
}

void BaseNetApi::requestCompleteFilter() {
  dataWarned_ = false;
  refusal_.clear();
  const std::string& text = responseString();
  const Envelope envelope = envelopeOf(*this);
  if (!envelope.isObject) {
    verdict_ = Verdict::Unreadable;
    // No envelope, so no message to show: the answer fails without a word from the
    // system, and the user learns why here. Refused too: nesting deeper than parseJson
    // allows.
    logWarning("the answer of " + requestUrl() + " could not be read (" + std::to_string(text.size()) +
               " bytes, not a JSON object)");
    return;
  }
  const std::string& success = envelope.success;
  if (success == kSessionExpired) {
    verdict_ = Verdict::SessionExpired;
    // The login screen comes up; a front end that draws none has only this line to say why.
    if (needShowError) logWarning(requestUrl() + ": " + failureReason());
    if (sessionDelegate) sessionDelegate->sessionExpired(*this);
    return;
  }
  if (success == kCorrect) {
    verdict_ = Verdict::Correct;
    isCorrectResult_ = true;
    return;
  }
  verdict_ = Verdict::Refused;
  refusal_ = StringUtil::convertUnicodeToString(envelope.message);
  if (!needShowError) return;
  if (refusal_.empty()) {
    logWarning(requestUrl() + ": " + failureReason());
  } else {
    Env::current().overlay->showImage("", refusal_);
  }
}

void BaseNetApi::requestFailedFilter() {
  verdict_ = Verdict::Failed;
  if (needShowError) {
    Env::current().overlay->showImage("", kConnectionFailedMessage);
    logWarning(requestUrl() + ": " + failureReason());
  }
  if (networkFailedDelegate) networkFailedDelegate->networkFailed();
}

std::string BaseNetApi::failureReason() const {
  switch (verdict_) {
    case Verdict::None:
    case Verdict::Correct:
      return {};
    case Verdict::SessionExpired:
      return "the session has expired";
    case Verdict::Refused:
      return refusal_.empty() ? "refused without a message" : "refused: " + refusal_;
    case Verdict::Unreadable:
      return "the answer could not be read";
    case Verdict::Failed:
      break;
  }
  if (requestOperation && requestOperation->response().error != TransportError::none) {
    const std::string& why = requestOperation->response().errorMessage;
    return why.empty() ? std::string("the connection failed") : why;
  }
  if (!statusCodeValidator()) return "HTTP status " + std::to_string(responseStatusCode());
  return "the answer did not have the expected form";
}

void BaseNetApi::toggleAccessoriesWillStartCallBack() {
  if (netLoadingDelegate) netLoadingDelegate->startLoading();
}

void BaseNetApi::toggleAccessoriesWillStopCallBack() {
  if (netLoadingDelegate) netLoadingDelegate->stopLoading();
}

}  // namespace qmv

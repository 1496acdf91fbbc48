#pragma once
// Base of every application endpoint. Adds to the request object the common argument
// "sessionId", the decoding of the response envelope ({"success", "message", "data"})
// into the verdict isCorrectResult(), the display of server and connection errors in
// the status overlay, and the screen's delegates for session expiry, loading and a
// failed connection.
//
// An envelope failure is a transport success: success callbacks run for every answer in
// 200..299, and must test isCorrectResult().
#include <string>

#include "core/common/json.h"
#include "core/request/cached_request.h"
#include "core/request/net_api_delegates.h"
#include "core/request/request_texts.h"

namespace qmv {

class BaseNetApi : public CachedRequest {
 public:
  static constexpr const char* kConnectionFailedMessage = request_texts::kConnectionFailed;

  BaseNetApi() = default;

  // An empty object, plus "sessionId" of the logged-in member when that is non-empty.
  Json getBaseArgument() const;

  // YES once an answer carried "success" "0". Never reset: a request started again
  // keeps an earlier YES until a new correct answer, so reusers must not trust it
  // before their own answer arrived.
  bool isCorrectResult() const { return isCorrectResult_; }

  // Envelope decoding, run after the status check passed: "0" correct, "2" session
  // expired (sessionDelegate told, nothing shown), anything else a failure whose
  // decoded "message" is shown when needShowError. What the system shows nothing for
  // (an expired session, a refusal without a message, an answer that is no envelope)
  // is reported with logWarning, unless needShowError is off.
  void requestCompleteFilter() override;
  // Shows kConnectionFailedMessage when needShowError, and reports failureReason() with
  // logWarning (the message alone does not say what failed); then tells
  // networkFailedDelegate.
  void requestFailedFilter() override;

  // Why the last answer was not correct, for a person to read: the transport's own words
  // ("answer larger than 8388608 bytes"), "HTTP status 404", "the session has expired",
  // "refused: <message>", "refused without a message" or "the answer could not be read".
  // Empty before an answer and after a correct one.
  std::string failureReason() const;
  // Replace the accessory walks: they tell netLoadingDelegate instead.
  void toggleAccessoriesWillStartCallBack() override;
  void toggleAccessoriesWillStopCallBack() override;

  bool needShowError = true;
  SessionExpireDelegate* sessionDelegate = nullptr;      // not owned
  NetLoadingDelegate* netLoadingDelegate = nullptr;      // not owned
  // The system's noNetWorkingDelegate.
  NoNetWorkingDelegate* networkFailedDelegate = nullptr;  // not owned

 protected:
  // "data" of the response, or null when absent or the text is not a JSON object. A
  // correct answer whose "data" is not an object is reported once (logWarning). The
  // value lives as long as the response.
  const Json& responseData() const;
  // The array under `key` of "data" ("dataList" of the list endpoints); an empty array
  // when there is none. A correct answer whose "data" is an object without such an array
  // is reported once (logWarning), as a missing "data" is.
  const Json& responseList(const char* key = "dataList") const;

 private:
  enum class Verdict { None, Correct, Refused, SessionExpired, Unreadable, Failed };

  bool isCorrectResult_ = false;
  Verdict verdict_ = Verdict::None;
  std::string refusal_;  // the decoded message of the last refusal
  mutable bool dataWarned_ = false;
};

}  // namespace qmv

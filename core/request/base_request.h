#pragma once
// One call to the server, as an object. A subclass answers the overridable properties
// (URL, method, arguments, ...); NetworkAgent turns it into an HTTP transfer and, when the
// transfer ends, calls the request's filters, delegate, blocks and accessories in a fixed
// order on the interface thread.
//
// Requests are held by std::shared_ptr (create them with std::make_shared): start() hands
// a strong reference to the agent, which keeps the request alive while it runs. The
// delegate is not owned. Blocks are cleared after every completion, which breaks cycles
// between a request and blocks that capture it.
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/common/json.h"
#include "core/request/multipart_form_data.h"
#include "core/request/request_callbacks.h"

namespace qmv {

class BaseRequest;
class RequestOperation;
struct HttpRequest;

// Integer values are fixed: subclasses return them, and any other value is refused.
enum class RequestMethod : int { GET = 0, POST = 1, HEAD = 2, PUT = 3, DELETE = 4, PATCH = 5 };

enum class RequestSerializerType : int { HTTP = 0, JSON = 1 };

// Told of a request's outcome. Not owned by the request.
class RequestDelegate {
 public:
  virtual ~RequestDelegate() = default;
  virtual void requestFinished(BaseRequest& /*request*/) {}
  virtual void requestFailed(BaseRequest& /*request*/) {}
};

// Told when a request will start, will stop and did stop. Every method is optional.
using RequestAccessory = AccessoryOf<BaseRequest>;

class BaseRequest : public std::enable_shared_from_this<BaseRequest>, public RequestCallbacks<BaseRequest> {
 public:
  using ConstructingBodyBlock = std::function<void(MultipartFormData&)>;
  using ProgressBlock = std::function<void(std::int64_t received, std::int64_t expected)>;

  BaseRequest();
  virtual ~BaseRequest();
  BaseRequest(const BaseRequest&) = delete;
  BaseRequest& operator=(const BaseRequest&) = delete;

  // ---- Overridable properties (defaults of the base class) ----
  virtual std::string requestUrl() const { return {}; }
  virtual std::string cdnUrl() const { return {}; }
  virtual std::string baseUrl() const { return {}; }
  virtual double requestTimeoutInterval() const { return 10.0; }
  // Null, or an object of parameters (keys are sent in insertion order).
  virtual Json requestArgument() const { return nullptr; }
  virtual Json cacheFileNameFilterForRequestArgument(const Json& argument) const { return argument; }
  virtual RequestMethod requestMethod() const { return RequestMethod::GET; }
  virtual RequestSerializerType requestSerializerType() const { return RequestSerializerType::HTTP; }
  // Null, or a two-element array: user name, password (basic authorisation).
  virtual Json requestAuthorizationHeaderFieldArray() const { return nullptr; }
  // Null, or an object of header fields; entries whose key or value is not text are logged and
  // skipped.
  virtual Json requestHeaderFieldValueDictionary() const { return nullptr; }
  // A ready request that replaces URL, method and arguments.
  virtual std::optional<HttpRequest> buildCustomUrlRequest() const;
  virtual bool useCDN() const { return false; }
  // Null, or a template for NetworkUtil::checkJson.
  virtual Json jsonValidator() const { return nullptr; }
  // Default: status in 200..299.
  virtual bool statusCodeValidator() const;
  // Set: a POST becomes a multipart POST built by the block.
  virtual ConstructingBodyBlock constructingBodyBlock() const { return {}; }
  // Non-empty: a GET becomes a resumable download to that path.
  virtual std::string resumableDownloadPath() const { return {}; }
  virtual ProgressBlock resumableDownloadProgressBlock() const { return {}; }
  // Hooks run before the success and failure callbacks.
  virtual void requestCompleteFilter() {}
  virtual void requestFailedFilter() {}

  // ---- Derived response values ----
  // The body decoded as JSON; null when there is no body or it is not JSON.
  virtual Json responseJSONObject() const;
  const std::string& responseString() const;
  long responseStatusCode() const;
  // Header fields of the response, in the order received.
  const std::vector<std::pair<std::string, std::string>>& responseHeaders() const;
  bool isExecuting() const;

  // ---- Caller state ----
  long tag = 0;
  Json userInfo;
  RequestDelegate* delegate = nullptr;

  // The operation carrying this request; null before start. Set by the agent.
  std::shared_ptr<RequestOperation> requestOperation;

  // ---- Actions (interface thread) ----
  // Will-start accessories, then the agent sends the request.
  virtual void start();
  // Will-stop accessories, drop the delegate, cancel, did-stop accessories.
  virtual void stop();

  // The class name used in log lines ("Add request: %@"): the dynamic type's own name,
  // without its namespace. Not virtual, so that no subclass spells its name by hand.
  std::string className() const;
};

}  // namespace qmv

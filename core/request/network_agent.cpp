#include "core/request/network_agent.h"

#include <algorithm>
#include <chrono>

#include "core/common/log.h"
#include "core/common/loop_stall_probe.h"
#include "core/request/network_config.h"
#include "core/request/network_util.h"
#include "core/request/request_operation.h"
#include "platform/env.h"
#include "platform/http_transport.h"

namespace qmv {
namespace {

constexpr const char* kFormContentType = "application/x-www-form-urlencoded";
constexpr const char* kJsonContentType = "application/json";

const char* methodName(RequestMethod method) {
  switch (method) {
    case RequestMethod::GET:
      return "GET";
    case RequestMethod::POST:
      return "POST";
    case RequestMethod::HEAD:
      return "HEAD";
    case RequestMethod::PUT:
      return "PUT";
    case RequestMethod::DELETE:
      return "DELETE";
    case RequestMethod::PATCH:
      return "PATCH";
  }
  return nullptr;
}

// Form/query pairs of one value; nested objects become key[sub], arrays key[].
void appendPairs(const std::string& key, const Json& value, std::string& out) {
  if (value.is_object()) {
    for (const auto& [sub, item] : value.items()) appendPairs(key + "[" + sub + "]", item, out);
    return;
  }
  if (value.is_array()) {
    for (const auto& item : value) appendPairs(key + "[]", item, out);
    return;
  }
  if (!out.empty()) out += '&';
  out += NetworkUtil::urlEncode(key);
  // A null value sends the bare key.
  if (!value.is_null()) out += "=" + NetworkUtil::urlEncode(NetworkUtil::descriptionOf(value));
}

std::string formEncoded(const Json& arguments) {
  std::string out;
  if (arguments.is_object()) {
    for (const auto& [key, value] : arguments.items()) appendPairs(key, value, out);
  }
  return out;
}

// In place: most requests have no arguments, and their URL is then left as it is.
void appendQuery(std::string& url, const Json& arguments) {
  if (!arguments.is_object()) return;
  const std::string query = formEncoded(arguments);
  if (query.empty()) return;
  url += url.find('?') != std::string::npos ? '&' : '?';
  url += query;
}

// Form fields of the arguments first, then the parts the block appends.
void setMultipartBody(HttpRequest& http, const Json& arguments, const BaseRequest::ConstructingBodyBlock& block) {
  MultipartFormData form;
  if (arguments.is_object()) {
    for (const auto& [key, value] : arguments.items())
      form.appendPartWithFormData(NetworkUtil::descriptionOf(value), key);
  }
  block(form);
  http.form = form.takeParts();
}

void setBody(HttpRequest& http, const Json& arguments, RequestSerializerType serializer) {
  if (serializer == RequestSerializerType::JSON) {
    if (arguments.is_null()) return;
    http.body = dumpJson(arguments);
    http.contentType = kJsonContentType;
  } else {
    http.body = formEncoded(arguments);
    http.contentType = kFormContentType;
  }
}

}  // namespace

NetworkAgent& NetworkAgent::sharedInstance() {
  static NetworkAgent agent;
  return agent;
}

std::string NetworkAgent::buildRequestUrl(const BaseRequest& request) const {
  std::string detail = request.requestUrl();
  if (detail.starts_with("http")) return detail;
  const NetworkConfig& config = NetworkConfig::sharedInstance();
  if (!config.urlFilters().empty()) {
    // A copy: a filter may change the configuration's list while it runs.
    const auto filters = config.urlFilters();
    for (const auto& filter : filters) detail = filter->filterUrl(detail, request);
  }
  const bool cdn = request.useCDN();
  const std::string own = cdn ? request.cdnUrl() : request.baseUrl();
  const std::string& base = !own.empty() ? own : cdn ? config.cdnUrl() : config.baseUrl();
  std::string url;
  url.reserve(base.size() + detail.size());
  url.append(base).append(detail);
  return url;
}

void NetworkAgent::addRequest(const std::shared_ptr<BaseRequest>& request) {
  if (!request) return;
  // The transport is a platform port: the core cannot pick one of its own.
  auto transport = Env::current().http;
  const RequestMethod method = request->requestMethod();
  std::string url = buildRequestUrl(*request);
  const Json arguments = request->requestArgument();
  const auto bodyBlock = request->constructingBodyBlock();
  const RequestSerializerType serializer = request->requestSerializerType();

  HttpRequest http;
  http.timeout = std::chrono::milliseconds(static_cast<long long>(request->requestTimeoutInterval() * 1000.0));
  http.maxResponseBytes = NetworkConfig::sharedInstance().maxResponseBytes();

  const Json auth = request->requestAuthorizationHeaderFieldArray();
  if (auth.is_array() && !auth.empty()) {
    http.basicAuth = BasicAuth{NetworkUtil::descriptionOf(auth.front()), NetworkUtil::descriptionOf(auth.back())};
  }
  const Json headers = request->requestHeaderFieldValueDictionary();
  if (headers.is_object()) {
    for (const auto& [name, value] : headers.items()) {
      if (value.is_string()) {
        http.headers.emplace_back(name, value.get<std::string>());
      } else {
        logLine("Error, class of key/value in headerFieldValueDictionary should be NSString.");
      }
    }
  }

  std::optional<HttpRequest> custom = request->buildCustomUrlRequest();
  if (custom) {
    http = std::move(*custom);
  } else {
    const char* name = methodName(method);
    if (name == nullptr) {
      logLine("Error, unsupport method type");
      return;
    }
    if (method != RequestMethod::GET) http.method = name;  // GET is the default
    switch (method) {
      case RequestMethod::GET:
        if (const std::string path = request->resumableDownloadPath(); !path.empty()) {
          http.url =
              NetworkUtil::urlStringWithOriginUrlString(url, NetworkUtil::urlParametersStringFromParameters(arguments));
          http.downloadPath = path;
          http.resume = true;
          http.progress = request->resumableDownloadProgressBlock();
        } else {
          http.url = std::move(url);
          appendQuery(http.url, arguments);
        }
        break;
      case RequestMethod::HEAD:
      case RequestMethod::DELETE:
        http.url = std::move(url);
        appendQuery(http.url, arguments);
        break;
      case RequestMethod::POST:
        http.url = std::move(url);
        if (bodyBlock) {
          setMultipartBody(http, arguments, bodyBlock);
        } else {
          setBody(http, arguments, serializer);
        }
        break;
      case RequestMethod::PUT:
      case RequestMethod::PATCH:
        http.url = std::move(url);
        setBody(http, arguments, serializer);
        break;
    }
  }

  // An ended operation that nothing else holds carries the next transfer, which spares
  // making one and freeing the last.
  std::shared_ptr<RequestOperation> operation;
  if (RequestOperation::renewable(request->requestOperation)) {
    operation = request->requestOperation;
    operation->renew();
  } else {
    operation = std::make_shared<RequestOperation>();
    request->requestOperation = operation;
  }
  operation->start(std::move(transport), std::move(http),
                   [this](const std::shared_ptr<RequestOperation>& op) { handleRequestResult(op); });
  if (logLineEnabled()) logLine("Add request: " + request->className());
  addOperation(request);
}

void NetworkAgent::handleRequestResult(const std::shared_ptr<RequestOperation>& operation) {
  const std::uint64_t key = operation->hash();
  std::shared_ptr<BaseRequest> request;
  {
    std::lock_guard lock(recordMutex_);
    if (auto it = findRecorded(key); it != requestsRecord_.end()) request = it->second;
  }
  if (logLineEnabled()) logLine("Finished Request: " + (request ? request->className() : std::string("(null)")));
  if (request && LoopStallProbe::enabled()) LoopStallProbe::note("completion of " + request->className());
  if (request) {
    if (checkResult(*request)) {
      request->toggleAccessoriesWillStopCallBack();
      request->requestCompleteFilter();
      if (request->delegate != nullptr) request->delegate->requestFinished(*request);
      if (auto block = request->successCompletionBlock) block(*request);
    } else {
      if (logLineEnabled()) {
        logLine("Request " + request->className() +
                " failed, status code = " + std::to_string(request->responseStatusCode()));
      }
      request->toggleAccessoriesWillStopCallBack();
      request->requestFailedFilter();
      if (request->delegate != nullptr) request->delegate->requestFailed(*request);
      if (auto block = request->failureCompletionBlock) block(*request);
    }
    request->toggleAccessoriesDidStopCallBack();
  }
  removeOperation(*operation);
  if (request) request->clearCompletionBlock();
}

bool NetworkAgent::checkResult(const BaseRequest& request) const {
  if (!request.statusCodeValidator()) return false;
  const Json validator = request.jsonValidator();
  if (validator.is_null()) return true;
  return NetworkUtil::checkJson(request.responseJSONObject(), validator);
}

std::string NetworkAgent::requestHashKey(const RequestOperation& operation) const {
  return std::to_string(operation.hash());
}

void NetworkAgent::addOperation(const std::shared_ptr<BaseRequest>& request) {
  if (!request || !request->requestOperation) return;
  const std::uint64_t key = request->requestOperation->hash();
  std::lock_guard lock(recordMutex_);
  if (auto it = findRecorded(key); it != requestsRecord_.end()) {
    it->second = request;
  } else {
    requestsRecord_.emplace_back(key, request);
  }
}

NetworkAgent::Record::iterator NetworkAgent::findRecorded(std::uint64_t key) {
  return std::find_if(requestsRecord_.begin(), requestsRecord_.end(),
                      [key](const auto& entry) { return entry.first == key; });
}

void NetworkAgent::removeOperation(const RequestOperation& operation) {
  const std::uint64_t key = operation.hash();
  std::shared_ptr<BaseRequest> removed;  // released after the lock
  std::size_t remaining;
  {
    std::lock_guard lock(recordMutex_);
    if (auto it = findRecorded(key); it != requestsRecord_.end()) {
      removed = std::move(it->second);
      // The record has no order to keep.
      if (it != requestsRecord_.end() - 1) *it = std::move(requestsRecord_.back());
      requestsRecord_.pop_back();
    }
    remaining = requestsRecord_.size();
  }
  if (logLineEnabled()) logLine("Request queue size = " + std::to_string(remaining));
}

void NetworkAgent::cancelRequest(BaseRequest& request) {
  if (auto operation = request.requestOperation) {
    operation->cancel();
    removeOperation(*operation);
  }
  request.clearCompletionBlock();
}

void NetworkAgent::cancelAllRequests() {
  std::vector<std::shared_ptr<BaseRequest>> requests;
  {
    std::lock_guard lock(recordMutex_);
    for (const auto& [key, request] : requestsRecord_) requests.push_back(request);
  }
  for (const auto& request : requests) request->stop();
}

std::size_t NetworkAgent::requestCount() const {
  std::lock_guard lock(recordMutex_);
  return requestsRecord_.size();
}

}  // namespace qmv

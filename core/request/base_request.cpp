#include "core/request/base_request.h"

#include <cxxabi.h>

#include <cstdlib>
#include <typeinfo>
#include <unordered_map>

#include "core/common/log.h"
#include "core/request/network_agent.h"
#include "core/request/request_operation.h"
#include "platform/http_transport.h"

namespace qmv {
namespace {

const std::string& emptyText() {
  static const std::string text;
  return text;
}

}  // namespace

BaseRequest::BaseRequest() = default;
BaseRequest::~BaseRequest() = default;

std::optional<HttpRequest> BaseRequest::buildCustomUrlRequest() const { return std::nullopt; }

bool BaseRequest::statusCodeValidator() const {
  // Unsigned wrap makes codes below 200 fail too.
  return static_cast<unsigned long>(responseStatusCode() - 200) < 100;
}

Json BaseRequest::responseJSONObject() const { return requestOperation ? requestOperation->responseObject() : Json(); }

const std::string& BaseRequest::responseString() const {
  return requestOperation ? requestOperation->response().body : emptyText();
}

long BaseRequest::responseStatusCode() const { return requestOperation ? requestOperation->response().status : 0; }

const std::vector<std::pair<std::string, std::string>>& BaseRequest::responseHeaders() const {
  static const std::vector<std::pair<std::string, std::string>> none;
  return requestOperation ? requestOperation->response().headers.fields() : none;
}

bool BaseRequest::isExecuting() const { return requestOperation && requestOperation->isExecuting(); }

void BaseRequest::start() {
  auto self = weak_from_this().lock();
  if (!self) {
    logLine("Error, request " + className() + " must be held by std::shared_ptr to start");
    return;
  }
  toggleAccessoriesWillStartCallBack();
  NetworkAgent::sharedInstance().addRequest(self);
}

void BaseRequest::stop() {
  // The agent may drop the last reference while this runs.
  auto self = weak_from_this().lock();
  toggleAccessoriesWillStopCallBack();
  delegate = nullptr;
  NetworkAgent::sharedInstance().cancelRequest(*this);
  toggleAccessoriesDidStopCallBack();
}

std::string BaseRequest::className() const {
  const char* mangled = typeid(*this).name();
  // Demangling allocates; every request logs its class twice, so remember the answer.
  static thread_local std::unordered_map<const char*, std::string> known;
  if (const auto it = known.find(mangled); it != known.end()) return it->second;
  int status = 0;
  char* demangled = abi::__cxa_demangle(mangled, nullptr, nullptr, &status);
  std::string name = (status == 0 && demangled != nullptr) ? demangled : mangled;
  std::free(demangled);
  // Log lines name the class, not its namespace.
  const auto template_ = name.find('<');
  const auto colon = name.rfind("::", template_);
  if (colon != std::string::npos) name = name.substr(colon + 2);
  known.emplace(mangled, name);
  return name;
}

}  // namespace qmv

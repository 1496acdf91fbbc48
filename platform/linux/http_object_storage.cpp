#include "platform/linux/http_object_storage.h"

#include "core/common/log.h"
#include "core/common/url_parts.h"
#include "platform/env.h"
#include "platform/http_transport.h"

namespace qmv {
namespace {

bool isSuccess(const HttpResponse& response) {
  return response.error == TransportError::none && response.status >= 200 && response.status < 300;
}

// Percent-encodes everything but the unreserved characters, so a name is one path segment.

}  // namespace

HttpObjectStorage::HttpObjectStorage(std::string baseUrl, std::shared_ptr<HttpTransport> transport)
    : baseUrl_(std::move(baseUrl)), transport_(std::move(transport)) {
  while (!baseUrl_.empty() && baseUrl_.back() == '/') baseUrl_.pop_back();
}

std::shared_ptr<HttpTransport> HttpObjectStorage::transport() const {
  return transport_ ? transport_ : Env::current().http;
}

std::string HttpObjectStorage::urlFor(const std::string& objectName) const {
  return baseUrl_ + "/" + percentEncode(objectName);
}

void HttpObjectStorage::download(const std::string& objectName, std::function<void(std::optional<Bytes>)> completion) {
  const auto http = transport();
  if (!http || objectName.empty()) {
    if (completion) completion(std::nullopt);
    return;
  }
  HttpRequest request;
  request.method = "GET";
  request.url = urlFor(objectName);
  http->send(std::move(request), [completion = std::move(completion), objectName](HttpResponse response) {
    std::optional<Bytes> bytes;
    if (isSuccess(response) && !response.body.empty()) {
      bytes = Bytes(response.body.begin(), response.body.end());
    } else {
      logLine("object " + objectName + " not downloaded: status " + std::to_string(response.status) + " " +
              response.errorMessage);
    }
    if (completion) completion(std::move(bytes));
  });
}

void HttpObjectStorage::upload(const std::string& objectName, const Bytes& data,
                               std::function<void(bool ok)> completion) {
  const auto http = transport();
  if (!http || objectName.empty()) {
    if (completion) completion(false);
    return;
  }
  HttpRequest request;
  request.method = "PUT";
  request.url = urlFor(objectName);
  request.body.assign(data.begin(), data.end());
  request.contentType = "application/octet-stream";
  http->send(std::move(request), [completion = std::move(completion)](HttpResponse response) {
    if (completion) completion(isSuccess(response));
  });
}

}  // namespace qmv

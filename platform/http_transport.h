#pragma once
// The HTTP port. A request is a typed value (method, URL, header fields, body, basic
// authorisation, timeout, optional download to a file); the answer is a plain response
// whose status is whatever the server sent (a 404 is a status, not an error) and whose
// `error` is set only when no complete response arrived. Transfers never block the
// interface thread; completions and download progress are posted to a main loop.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/common/inline_function.h"
#include "platform/response_headers.h"

namespace qmv {

struct BasicAuth {
  std::string user;
  std::string password;
};

// One part of a multipart/form-data body. The transport writes the body around the parts.
struct HttpFormPart {
  std::string name;
  std::string fileName;  // empty for a plain form field
  std::string mimeType;  // empty for a plain form field
  std::string data;
};

enum class TransportError { none, timeout, connection, cancelled, tooLarge, other };

struct HttpResponse {
  long status = 0;  // 0 when no response arrived
  std::string body;
  ResponseHeaders headers;  // of the final response
  TransportError error = TransportError::none;
  std::string errorMessage;

  // As if new, keeping the buffers for the next answer.
  void clear() {
    status = 0;
    body.clear();
    headers.clear();
    error = TransportError::none;
    errorMessage.clear();
  }
};

struct HttpRequest {
  using ProgressCallback = std::function<void(std::int64_t received, std::int64_t expected)>;

  // Far above any answer of the application server; a peer that sends more (or never
  // stops) must not be able to take the device's memory.
  static constexpr std::size_t kDefaultMaxResponseBytes = std::size_t{8} << 20;

  std::string method = "GET";  // sent as written: GET, POST, HEAD, PUT, DELETE, PATCH, ...
  std::string url;
  HeaderFields headers;
  std::string body;         // bytes; sent when non-empty
  std::string contentType;  // Content-Type of `body`; empty sends none
  // Non-empty: sent as a multipart/form-data body (with its own Content-Type) instead of `body`.
  std::vector<HttpFormPart> form;
  std::optional<BasicAuth> basicAuth;
  // Idle limit: the transfer fails once no byte has moved (connecting, sending or
  // receiving) for this long; a slow transfer that keeps moving is never cut. Zero: none.
  std::chrono::milliseconds timeout{10000};
  // Bytes of header fields and of a body kept in memory (not one written to
  // downloadPath) beyond which the transfer ends with TransportError::tooLarge.
  std::size_t maxResponseBytes = kDefaultMaxResponseBytes;

  // Non-empty: the body of a 2xx answer is written to this file instead of the response.
  std::string downloadPath;
  // With downloadPath: keep an existing partial file and ask only for the rest
  // (an answer of 200 instead of 206 rewrites the file from the start).
  bool resume = false;
  // Bytes of the whole file so far and its expected size (0 when unknown); posted to the loop.
  ProgressCallback progress;

  // Not sent: a response the caller is done with, whose buffers (body, header lines) the
  // transport may fill with this request's answer rather than allocate new ones, which
  // a request sent again and again would otherwise do every time. Its contents are
  // dropped; a transport may also ignore it.
  HttpResponse spare;
};

using TransferId = std::uint64_t;

class HttpTransport {
 public:
  // The response is handed over, not copied: taking it by value costs one move more.
  // Kept in place when it captures no more than a few pointers (a shared_ptr to its
  // owner, say), so that sending a request allocates nothing for it.
  using Completion = InlineFunction<void(HttpResponse&&)>;

  virtual ~HttpTransport() = default;

  // Thread-safe. Queues the transfer and returns at once. `completion` runs exactly once
  // on the main loop: with the response, or with an error (a cancelled transfer completes
  // with TransportError::cancelled).
  // The request is handed over: a small GET is sent without one move of every field.
  virtual TransferId send(HttpRequest&& request, Completion completion) = 0;

  // Thread-safe. Stops a queued or running transfer; unknown or finished ids are ignored.
  virtual void cancel(TransferId id) = 0;
};

}  // namespace qmv

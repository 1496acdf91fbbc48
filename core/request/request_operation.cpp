#include "core/request/request_operation.h"

#include <atomic>
#include <utility>

namespace qmv {
namespace {

std::uint64_t nextHash() {
  static std::atomic<std::uint64_t> next{1};
  return next++;
}

}  // namespace

RequestOperation::RequestOperation() : hash_(nextHash()) {}

void RequestOperation::renew() {
  hash_ = nextHash();
  spare_ = std::move(response_);
  response_.clear();
  responseObject_.reset();
  transport_.reset();
  completion_ = nullptr;
  transferId_ = 0;
  cancelled_ = false;
}

const Json& RequestOperation::responseObject() const {
  if (!responseObject_) {
    Json parsed = response_.body.empty() ? Json() : parseJson(response_.body);
    responseObject_ = isParsed(parsed) ? std::move(parsed) : Json();
  }
  return *responseObject_;
}

std::string RequestOperation::takeBody() {
  responseObject_.reset();
  return std::exchange(response_.body, {});
}

void RequestOperation::start(std::shared_ptr<HttpTransport> transport, HttpRequest&& request, Completion completion) {
  transport_ = std::move(transport);
  completion_ = std::move(completion);
  executing_ = true;
  request.spare = std::move(spare_);
  // The transfer keeps its operation alive until it reports.
  // Taken as an rvalue, as the transport hands it over: a parameter of its own would be
  // one more move of every field.
  transferId_ = transport_->send(std::move(request), [self = shared_from_this()](HttpResponse&& response) {
    if (self->cancelled_) return;
    self->response_ = std::move(response);
    self->responseObject_.reset();
    self->executing_ = false;
    // Let go of once run: what it captured may hold this operation.
    const Completion completion = std::move(self->completion_);
    self->completion_ = nullptr;
    if (completion) completion(self);
  });
}

void RequestOperation::cancel() {
  if (!executing_) return;
  cancelled_ = true;
  executing_ = false;
  completion_ = nullptr;
  // Let go of too: the cancelled transfer's report may sit unrun in a loop that the
  // transport holds, and would hold the transport through this operation.
  if (const auto transport = std::exchange(transport_, nullptr)) transport->cancel(transferId_);
}

}  // namespace qmv

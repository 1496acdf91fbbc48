#include "core/request/batch_request.h"

#include "core/common/log.h"

namespace qmv {

BatchRequest::BatchRequest(std::vector<std::shared_ptr<BaseRequest>> requests) : requests_(std::move(requests)) {
  std::erase(requests_, nullptr);
}

BatchRequest::~BatchRequest() {
  for (const auto& r : requests_) {
    if (r->delegate == this) r->delegate = nullptr;
  }
}

void BatchRequest::start() {
  if (self_) {
    logLine("Error! Batch request has already started.");
    return;
  }
  self_ = weak_from_this().lock();
  failedRequest_ = nullptr;
  finishedCount_ = 0;
  toggleAccessoriesWillStartCallBack();
  if (requests_.empty()) {
    finish();
    return;
  }
  const auto requests = requests_;
  for (const auto& r : requests) {
    r->delegate = this;
    r->clearCompletionBlock();
    r->start();
  }
}

void BatchRequest::stop() {
  auto keep = self_;
  toggleAccessoriesWillStopCallBack();
  delegate = nullptr;
  stopRequests();
  toggleAccessoriesDidStopCallBack();
  self_.reset();
}

void BatchRequest::stopRequests() {
  // Requests that already ended (the failed one included) are not stopped again.
  for (const auto& r : requests_) {
    if (r->delegate == this && r->isExecuting()) r->stop();
  }
}

void BatchRequest::requestFinished(BaseRequest& /*request*/) {
  if (++finishedCount_ == requests_.size()) finish();
}

void BatchRequest::finish() {
  auto keep = std::move(self_);
  toggleAccessoriesWillStopCallBack();
  if (delegate != nullptr) delegate->batchRequestFinished(*this);
  if (auto block = successCompletionBlock) block(*this);
  clearCompletionBlock();
  toggleAccessoriesDidStopCallBack();
}

void BatchRequest::requestFailed(BaseRequest& request) {
  auto keep = std::move(self_);
  failedRequest_ = request.shared_from_this();
  toggleAccessoriesWillStopCallBack();
  stopRequests();
  if (delegate != nullptr) delegate->batchRequestFailed(*this);
  if (auto block = failureCompletionBlock) block(*this);
  clearCompletionBlock();
  toggleAccessoriesDidStopCallBack();
}

}  // namespace qmv

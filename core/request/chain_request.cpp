#include "core/request/chain_request.h"

#include "core/common/log.h"

namespace qmv {

ChainRequest::~ChainRequest() {
  for (const auto& r : requests_) {
    if (r->delegate == this) r->delegate = nullptr;
  }
}

void ChainRequest::addRequest(std::shared_ptr<BaseRequest> request, ChainCallback callback) {
  if (!request) return;
  requests_.push_back(std::move(request));
  callbacks_.push_back(std::move(callback));
}

void ChainRequest::start() {
  if (nextRequestIndex_ > 0) {
    logLine("Error! Chain request has already started.");
    return;
  }
  if (requests_.empty()) {
    logLine("Error! Chain request array is empty.");
    return;
  }
  self_ = weak_from_this().lock();
  failedRequest_ = nullptr;
  toggleAccessoriesWillStartCallBack();
  startNextRequest();
}

bool ChainRequest::startNextRequest() {
  if (nextRequestIndex_ >= requests_.size()) return false;
  auto request = requests_[nextRequestIndex_++];
  request->delegate = this;
  request->clearCompletionBlock();
  request->start();
  return true;
}

void ChainRequest::requestFinished(BaseRequest& request) {
  auto keep = self_;
  const std::size_t index = nextRequestIndex_ - 1;
  if (index < callbacks_.size() && callbacks_[index]) {
    auto callback = callbacks_[index];
    callback(*this, request);
  }
  if (startNextRequest()) return;
  self_.reset();
  nextRequestIndex_ = 0;
  toggleAccessoriesWillStopCallBack();
  if (delegate != nullptr) delegate->chainRequestFinished(*this);
  if (auto block = successCompletionBlock) block(*this);
  clearCompletionBlock();
  toggleAccessoriesDidStopCallBack();
}

void ChainRequest::requestFailed(BaseRequest& request) {
  auto keep = std::move(self_);
  nextRequestIndex_ = 0;
  failedRequest_ = request.shared_from_this();
  toggleAccessoriesWillStopCallBack();
  if (delegate != nullptr) delegate->chainRequestFailed(*this, request);
  if (auto block = failureCompletionBlock) block(*this);
  clearCompletionBlock();
  toggleAccessoriesDidStopCallBack();
}

void ChainRequest::stop() {
  auto keep = std::move(self_);
  toggleAccessoriesWillStopCallBack();
  delegate = nullptr;
  if (nextRequestIndex_ > 0 && nextRequestIndex_ <= requests_.size()) {
    const auto& running = requests_[nextRequestIndex_ - 1];
    if (running->isExecuting()) running->stop();
  }
  nextRequestIndex_ = 0;
  toggleAccessoriesDidStopCallBack();
}

}  // namespace qmv

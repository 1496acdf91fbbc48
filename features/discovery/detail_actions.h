#pragma once
// Actions the store and offer screens share.
#include <string>

namespace qmv {

// Shows "该商家暂未提供电话" when `phone` is empty, else opens "tel:<phone>" through the
// Env's URL opener. Returns whether a number was handed over.
bool callPhone(const std::string& phone);

// Stops a screen's request and clears every tie back to the screen, which is going.
template <typename Request>
void detachRequest(Request& request) {
  if (!request) return;
  request->clearCompletionBlock();
  request->netLoadingDelegate = nullptr;
  request->sessionDelegate = nullptr;
  request->noNetWorkingDelegate = nullptr;
  request->stop();
}

}  // namespace qmv

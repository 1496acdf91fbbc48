#pragma once
// Base of an endpoint class. Its completion blocks receive the endpoint as its own type,
// so a block reads the endpoint's answer without casting the request back.
#include <functional>
#include <utility>

#include "core/request/base_net_api.h"

namespace qmv {

template <class Derived>
class NetApi : public BaseNetApi {
 public:
  using TypedBlock = std::function<void(Derived&)>;

  // These hide the untyped forms; a block taking a BaseRequest& still converts.
  void startWithCompletionBlockWithSuccess(TypedBlock success, TypedBlock failure) {
    setCompletionBlockWithSuccess(std::move(success), std::move(failure));
    start();
  }
  void setCompletionBlockWithSuccess(TypedBlock success, TypedBlock failure) {
    BaseNetApi::setCompletionBlockWithSuccess(typed(std::move(success)), typed(std::move(failure)));
  }

 protected:
  NetApi() = default;

 private:
  // The agent only ever calls a request's blocks with that request, so the cast holds.
  static CompletionBlock typed(TypedBlock block) {
    if (!block) return nullptr;
    return [block = std::move(block)](BaseRequest& request) { block(static_cast<Derived&>(request)); };
  }
};

}  // namespace qmv

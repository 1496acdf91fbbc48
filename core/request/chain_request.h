#pragma once
// Requests run one after another. Each step may carry a callback, run when that step
// succeeds and before the next starts, which may append further steps (so a step can
// depend on the previous answer). The chain fails at the first failing step.
#include <functional>
#include <memory>
#include <vector>

#include "core/request/base_request.h"

namespace qmv {

class ChainRequest;

class ChainRequestDelegate {
 public:
  virtual ~ChainRequestDelegate() = default;
  virtual void chainRequestFinished(ChainRequest& /*chain*/) {}
  virtual void chainRequestFailed(ChainRequest& /*chain*/, BaseRequest& /*failedRequest*/) {}
};

// Told when a chain will start, will stop and did stop. Every method is optional.
using ChainRequestAccessory = AccessoryOf<ChainRequest>;

class ChainRequest : public std::enable_shared_from_this<ChainRequest>,
                     public RequestCallbacks<ChainRequest>,
                     private RequestDelegate {
 public:
  using ChainCallback = std::function<void(ChainRequest&, BaseRequest&)>;

  // Create with std::make_shared.
  ChainRequest() = default;
  ~ChainRequest() override;

  // Appends a step; allowed before start and from a step's callback.
  void addRequest(std::shared_ptr<BaseRequest> request, ChainCallback callback = {});
  const std::vector<std::shared_ptr<BaseRequest>>& requestArray() const { return requests_; }
  // The step whose failure ended the chain; null otherwise.
  const std::shared_ptr<BaseRequest>& failedRequest() const { return failedRequest_; }

  ChainRequestDelegate* delegate = nullptr;

  // Starts the first step. Logged and ignored when already started or empty.
  void start();
  // Will-stop accessories, drop the delegate, stop the running step, did-stop accessories.
  void stop();

 private:
  void requestFinished(BaseRequest& request) override;
  void requestFailed(BaseRequest& request) override;
  bool startNextRequest();

  std::vector<std::shared_ptr<BaseRequest>> requests_;
  std::vector<ChainCallback> callbacks_;
  std::shared_ptr<BaseRequest> failedRequest_;
  std::shared_ptr<ChainRequest> self_;  // set while running
  std::size_t nextRequestIndex_ = 0;
};

}  // namespace qmv

#pragma once
// Several requests started together that succeed together: the batch finishes when every
// request has succeeded, and fails at the first failure, stopping the others. While it
// runs, the batch is each request's delegate and keeps itself alive.
#include <functional>
#include <memory>
#include <vector>

#include "core/request/base_request.h"

namespace qmv {

class BatchRequest;

class BatchRequestDelegate {
 public:
  virtual ~BatchRequestDelegate() = default;
  virtual void batchRequestFinished(BatchRequest& /*batch*/) {}
  virtual void batchRequestFailed(BatchRequest& /*batch*/) {}
};

// Told when a batch will start, will stop and did stop. Every method is optional.
using BatchRequestAccessory = AccessoryOf<BatchRequest>;

class BatchRequest : public std::enable_shared_from_this<BatchRequest>,
                     public RequestCallbacks<BatchRequest>,
                     private RequestDelegate {
 public:
  // Create with std::make_shared.
  explicit BatchRequest(std::vector<std::shared_ptr<BaseRequest>> requests);
  ~BatchRequest() override;

  const std::vector<std::shared_ptr<BaseRequest>>& requestArray() const { return requests_; }
  // The request whose failure ended the batch; null otherwise.
  const std::shared_ptr<BaseRequest>& failedRequest() const { return failedRequest_; }

  long tag = 0;
  BatchRequestDelegate* delegate = nullptr;

  // Starts every request. A batch already running is left alone (logged).
  void start();
  // Will-stop accessories, drop the delegate, stop every request, did-stop accessories.
  void stop();

 private:
  void requestFinished(BaseRequest& request) override;
  void requestFailed(BaseRequest& request) override;
  void stopRequests();
  void finish();

  std::vector<std::shared_ptr<BaseRequest>> requests_;
  std::shared_ptr<BaseRequest> failedRequest_;
  std::shared_ptr<BatchRequest> self_;  // set while running
  std::size_t finishedCount_ = 0;
};

}  // namespace qmv

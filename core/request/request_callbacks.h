#pragma once
// What a request, a batch and a chain offer their callers alike: success and failure
// blocks, cleared once used, and accessories told of start and stop in insertion order.
// `Owner` is the class deriving from this (a request, batch or chain).
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace qmv {

// Told when an `Owner` will start, will stop and did stop. Every method is optional.
template <class Owner>
class AccessoryOf {
 public:
  virtual ~AccessoryOf() = default;
  virtual void requestWillStart(Owner& /*owner*/) {}
  virtual void requestWillStop(Owner& /*owner*/) {}
  virtual void requestDidStop(Owner& /*owner*/) {}
};

template <class Owner>
class RequestCallbacks {
 public:
  using CompletionBlock = std::function<void(Owner&)>;
  using Accessory = AccessoryOf<Owner>;

  virtual ~RequestCallbacks() = default;

  CompletionBlock successCompletionBlock;
  CompletionBlock failureCompletionBlock;
  std::vector<std::shared_ptr<Accessory>> requestAccessories;

  void startWithCompletionBlockWithSuccess(CompletionBlock success, CompletionBlock failure) {
    setCompletionBlockWithSuccess(std::move(success), std::move(failure));
    owner().start();
  }
  void setCompletionBlockWithSuccess(CompletionBlock success, CompletionBlock failure) {
    successCompletionBlock = std::move(success);
    failureCompletionBlock = std::move(failure);
  }
  void clearCompletionBlock() {
    successCompletionBlock = nullptr;
    failureCompletionBlock = nullptr;
  }
  void addAccessory(std::shared_ptr<Accessory> accessory) {
    if (accessory) requestAccessories.push_back(std::move(accessory));
  }

  // Accessory walks, in insertion order. Subclasses may replace them.
  virtual void toggleAccessoriesWillStartCallBack() { walk(&Accessory::requestWillStart); }
  virtual void toggleAccessoriesWillStopCallBack() { walk(&Accessory::requestWillStop); }
  virtual void toggleAccessoriesDidStopCallBack() { walk(&Accessory::requestDidStop); }

 private:
  Owner& owner() { return static_cast<Owner&>(*this); }

  void walk(void (Accessory::*call)(Owner&)) {
    if (requestAccessories.empty()) return;
    const auto accessories = requestAccessories;  // an accessory may add another
    for (const auto& a : accessories) (a.get()->*call)(owner());
  }
};

}  // namespace qmv

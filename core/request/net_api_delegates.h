#pragma once
// The three reactions a screen offers the requests it owns: an expired session, loading
// start and stop, and a failed connection. Screens implement them (BaseViewController)
// and set themselves as the request's delegates; requests never own their delegates.
namespace qmv {

class BaseNetApi;

class SessionExpireDelegate {
 public:
  virtual ~SessionExpireDelegate() = default;
  virtual void sessionExpired(BaseNetApi& request) = 0;  // the system's sessionIsExpire:
};

class NetLoadingDelegate {
 public:
  virtual ~NetLoadingDelegate() = default;
  virtual void startLoading() = 0;
  virtual void stopLoading() = 0;
};

class NoNetWorkingDelegate {
 public:
  virtual ~NoNetWorkingDelegate() = default;
  virtual void networkFailed() = 0;  // the system's noNetWorking
};

}  // namespace qmv

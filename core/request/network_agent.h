#pragma once
// Turns request objects into HTTP transfers and reports their outcome. The agent builds
// the URL (filters, base or CDN), the body (form, JSON or multipart), timeout, basic
// authorisation and header fields, sends through the Env's HTTP transport (at most four
// transfers at once), records the running request under the operation's hash key, and
// on completion calls the request's accessories, filter, delegate and blocks in order on
// the interface thread. The record is the only state shared with other threads.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "core/request/base_request.h"

namespace qmv {

class RequestOperation;

class NetworkAgent {
 public:
  static NetworkAgent& sharedInstance();

  // Sends `request` and records it. An unknown method is logged and dropped: no transfer,
  // no record, no callback. REQUIRES: interface thread.
  void addRequest(const std::shared_ptr<BaseRequest>& request);
  // Cancels the request's transfer (its callbacks never run), forgets it, clears its blocks.
  void cancelRequest(BaseRequest& request);
  // Sends stop() to every recorded request, so their will-stop and did-stop accessories run.
  void cancelAllRequests();
  // Absolute requestUrl ("http" prefix) as is; else the filtered path after the base.
  std::string buildRequestUrl(const BaseRequest& request) const;

  // ---- Steps of a transfer's life, public for subclasses and tests ----
  void handleRequestResult(const std::shared_ptr<RequestOperation>& operation);
  bool checkResult(const BaseRequest& request) const;
  std::string requestHashKey(const RequestOperation& operation) const;
  void addOperation(const std::shared_ptr<BaseRequest>& request);
  void removeOperation(const RequestOperation& operation);
  // Number of requests recorded as running.
  std::size_t requestCount() const;

 private:
  NetworkAgent() = default;

  using Record = std::vector<std::pair<std::uint64_t, std::shared_ptr<BaseRequest>>>;
  // The entry under `key`, or end().
  Record::iterator findRecorded(std::uint64_t key);

  mutable std::mutex recordMutex_;
  // Keyed by the operation's hash, of which requestHashKey() is the text. A few requests
  // run at a time: a list searched in place keeps them without an allocation each.
  Record requestsRecord_;
};

}  // namespace qmv

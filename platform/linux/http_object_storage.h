#pragma once
// Object storage over plain HTTP: each object is a file under a base URL, fetched with
// GET <base>/<name> and stored with PUT <base>/<name>, through the HttpTransport port.
// Names are percent-encoded. A status outside 200..299, a transport error or an empty
// download counts as missing/failed. Completions run on the main loop the transport
// posts to. A store that lets only the signed-in member write (the sandbox's) knows him by
// the session cookie its application server set at login: the transport's cookie store
// sends it along, so the transport should be the one the requests use.
#include <memory>
#include <string>

#include "platform/object_storage.h"

namespace qmv {

class HttpTransport;

class HttpObjectStorage : public ObjectStorage {
 public:
  // `baseUrl` without a trailing slash is fine either way. `transport` null: the one
  // installed in Env when a transfer is sent.
  explicit HttpObjectStorage(std::string baseUrl, std::shared_ptr<HttpTransport> transport = nullptr);

  void download(const std::string& objectName, std::function<void(std::optional<Bytes>)> completion) override;
  void upload(const std::string& objectName, const Bytes& data, std::function<void(bool ok)> completion) override;

  // The URL of an object.
  std::string urlFor(const std::string& objectName) const;

 private:
  std::shared_ptr<HttpTransport> transport() const;

  std::string baseUrl_;
  std::shared_ptr<HttpTransport> transport_;
};

}  // namespace qmv

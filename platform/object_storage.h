#pragma once
// The object-storage client through which portraits are uploaded and downloaded.
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace qmv {

class ObjectStorage {
 public:
  using Bytes = std::vector<std::uint8_t>;
  virtual ~ObjectStorage() = default;
  // Completion runs on the interface thread with the object's bytes, or nullopt when
  // the object is missing or the store is unreachable.
  virtual void download(const std::string& objectName, std::function<void(std::optional<Bytes>)> completion) = 0;
  virtual void upload(const std::string& objectName, const Bytes& data, std::function<void(bool ok)> completion) = 0;
};

}  // namespace qmv

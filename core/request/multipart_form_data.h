#pragma once
// The body of a multipart POST, filled by a request's constructingBodyBlock.
#include <string>
#include <utility>
#include <vector>

#include "platform/http_transport.h"

namespace qmv {

class MultipartFormData {
 public:
  using Part = HttpFormPart;

  void appendPartWithFileData(std::string data, std::string name, std::string fileName, std::string mimeType) {
    parts_.push_back({std::move(name), std::move(fileName), std::move(mimeType), std::move(data)});
  }
  void appendPartWithFormData(std::string data, std::string name) {
    parts_.push_back({std::move(name), {}, {}, std::move(data)});
  }
  const std::vector<Part>& parts() const { return parts_; }
  std::vector<Part> takeParts() { return std::move(parts_); }

 private:
  std::vector<Part> parts_;
};

}  // namespace qmv

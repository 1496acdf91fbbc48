#pragma once
// The body of a multipart POST, filled by a request's constructingBodyBlock.
#include <string>
#include <vector>

namespace qmv {

class MultipartFormData {
 public:
  struct Part {
    std::string name;
    std::string fileName;  // empty for a plain form field
    std::string mimeType;  // empty for a plain form field
    std::string data;
  };

  void appendPartWithFileData(std::string data, std::string name, std::string fileName, std::string mimeType) {
    parts_.push_back({std::move(name), std::move(fileName), std::move(mimeType), std::move(data)});
  }
  void appendPartWithFormData(std::string data, std::string name) {
    parts_.push_back({std::move(name), {}, {}, std::move(data)});
  }
  const std::vector<Part>& parts() const { return parts_; }

 private:
  std::vector<Part> parts_;
};

}  // namespace qmv

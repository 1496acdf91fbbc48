#pragma once
// Uploads the member's portrait as a multipart POST: the JPEG travels as the file part
// "file" (file name "portrait.jpg"); the session is a form argument.
#include <string>

#include "core/request/net_api.h"

namespace qmv {

class UploadFaceNetApi : public NetApi<UploadFaceNetApi> {
 public:
  explicit UploadFaceNetApi(std::string jpegData);

  std::string requestUrl() const override { return "postPortrait"; }
  RequestMethod requestMethod() const override { return RequestMethod::POST; }
  Json requestArgument() const override { return getBaseArgument(); }
  ConstructingBodyBlock constructingBodyBlock() const override;

  std::string jpegData;
};

}  // namespace qmv

#include "core/session/upload_face_net_api.h"

#include <utility>

namespace qmv {

UploadFaceNetApi::UploadFaceNetApi(std::string jpegData) : jpegData(std::move(jpegData)) {}

BaseRequest::ConstructingBodyBlock UploadFaceNetApi::constructingBodyBlock() const {
  return [data = jpegData](MultipartFormData& form) {
    form.appendPartWithFileData(data, "file", "portrait.jpg", "image/jpeg");
  };
}

}  // namespace qmv

#include "platform/linux/image_file_camera.h"

#include "platform/linux/qr_png.h"

namespace qmv {

void ImageFileCamera::scanQrCode(std::function<void(std::optional<std::string>)> completion) {
  completion(scanQrImage(image_).text);
}

}  // namespace qmv

#pragma once
// A camera that "scans" the QR code in one PNG file (the --invite-qr option).
#include <filesystem>

#include "platform/camera.h"

namespace qmv {

class ImageFileCamera : public Camera {
 public:
  explicit ImageFileCamera(std::filesystem::path image) : image_(std::move(image)) {}
  // Available when an image was named; an unreadable image scans as nothing (a front end
  // that can say why asks qrImageProblem first).
  bool isAvailable() const override { return !image_.empty(); }
  void scanQrCode(std::function<void(std::optional<std::string>)> completion) override;

 private:
  std::filesystem::path image_;
};

}  // namespace qmv

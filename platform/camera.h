#pragma once
// The camera as a QR scanner. On Linux the "camera" reads a QR code from an image file.
#include <functional>
#include <optional>
#include <string>

namespace qmv {

class Camera {
 public:
  virtual ~Camera() = default;
  virtual bool isAvailable() const = 0;
  // Completion gets the decoded text, or nullopt when nothing could be read.
  virtual void scanQrCode(std::function<void(std::optional<std::string>)> completion) = 0;
};

}  // namespace qmv

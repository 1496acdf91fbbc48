#pragma once
// The portrait screen ("头像"), headless: the member picks a picture, which is checked,
// shrunk and sent; the stored portrait is what the member centre shows.
//
// A picture is at most 10 MiB and within the decoder's caps; it is decoded, scaled so its
// longer side is at most 640 px, and encoded as JPEG of quality 85. That JPEG goes to the
// object store as "<userName>.png" (the name the login downloads) and then to the
// application server ("postPortrait"). Only when both take it does it become the stored
// portrait. Refusals: "请选择图片" (not a picture), "图片过大", "头像上传失败".
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/member/portrait_texts.h"

namespace qmv {

class UploadFaceNetApi;

class PortraitViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = portrait_texts::kTitle;
  static constexpr std::size_t kMaxPictureBytes = 10 * 1024 * 1024;
  static constexpr int kLongestSide = 640;
  static constexpr int kJpegQuality = 85;

  PortraitViewController() = default;
  // Stops a sending still running; its callbacks never arrive.
  ~PortraitViewController() override;
  PortraitViewController(const PortraitViewController&) = delete;
  PortraitViewController& operator=(const PortraitViewController&) = delete;

  const char* title() const { return kTitle; }

  // The chosen picture's bytes: checks and prepares them, then sends. False, with the
  // refusal shown, when the picture is refused here or a sending still runs.
  bool upload(const std::string& pictureBytes);
  bool isSending() const { return sending_; }

  // The stored portrait (JPEG); empty when there is none.
  std::string currentPortrait() const;

  // After each sending ends: whether the portrait was taken and stored.
  std::function<void(bool stored)> onFinished;

 private:
  void sendToServer(std::string jpeg);
  void finish(bool stored);

  bool sending_ = false;
  std::shared_ptr<UploadFaceNetApi> request_;
  // Tells the object store's completion whether this screen is still there.
  std::shared_ptr<int> alive_ = std::make_shared<int>(0);
};

}  // namespace qmv

#include "features/member/portrait_view_controller.h"

#include "core/common/settings_keys.h"
#include "core/session/global_data.h"
#include "core/session/upload_face_net_api.h"
#include "core/session/user_info_model.h"
#include "platform/env.h"
#include "platform/image_decoder.h"
#include "platform/object_storage.h"
#include "platform/settings_store.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

const char* refusalFor(const Status& status) {
  return imageErrorOf(status) == ImageError::kTooLarge ? portrait_texts::kTooLarge : portrait_texts::kNotAPicture;
}

void show(const char* text) { Env::current().overlay->showImage("", text); }

}  // namespace

PortraitViewController::~PortraitViewController() { detachRequest(request_); }

std::string PortraitViewController::currentPortrait() const {
  const auto stored = Env::current().settings->dataForKey(kHeaderImageNowKey);
  return stored ? std::string(stored->begin(), stored->end()) : std::string();
}

bool PortraitViewController::upload(const std::string& pictureBytes) {
  if (sending_) return false;
  if (pictureBytes.size() > kMaxPictureBytes) {
    show(portrait_texts::kTooLarge);
    return false;
  }
  const ImageDecoder& decoder = *Env::current().imageDecoder;
  ImageLimits limits;
  limits.maxBytes = kMaxPictureBytes;
  const auto size = decoder.readSize(pictureBytes, limits);
  if (!size.ok()) {
    show(refusalFor(size.status()));
    return false;
  }
  const auto image = decoder.decode(pictureBytes, limits, fitWithin(*size, kLongestSide));
  if (!image.ok()) {
    show(refusalFor(image.status()));
    return false;
  }
  auto jpeg = decoder.encodeJpeg(*image, kJpegQuality);
  const auto& info = GlobalData::sharedInstance().selfInfo();
  if (!jpeg.ok() || !info || info->userName.empty()) {
    show(portrait_texts::kUploadFailed);
    return false;
  }
  sending_ = true;
  const ObjectStorage::Bytes bytes(jpeg->begin(), jpeg->end());
  Env::current().objectStorage->upload(
      info->userName + ".png", bytes,
      [this, alive = std::weak_ptr<int>(alive_), jpeg = std::move(jpeg).value()](bool ok) mutable {
        if (!alive.lock()) return;
        if (!ok) return finish(false);
        sendToServer(std::move(jpeg));
      });
  return true;
}

void PortraitViewController::sendToServer(std::string jpeg) {
  detachRequest(request_);
  request_ = std::make_shared<UploadFaceNetApi>(jpeg);
  attachRequest(*request_);
  request_->startWithCompletionBlockWithSuccess(
      [this, jpeg](UploadFaceNetApi& api) {
        if (!api.isCorrectResult()) return finish(false);
        const auto& settings = Env::current().settings;
        settings->setData(std::vector<std::uint8_t>(jpeg.begin(), jpeg.end()), kHeaderImageNowKey);
        settings->synchronize();
        finish(true);
      },
      [this](BaseRequest&) { finish(false); });
}

void PortraitViewController::finish(bool stored) {
  sending_ = false;
  if (!stored) show(portrait_texts::kUploadFailed);
  if (onFinished) onFinished(stored);
}

}  // namespace qmv

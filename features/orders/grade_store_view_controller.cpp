#include "features/orders/grade_store_view_controller.h"

#include <algorithm>
#include <utility>

#include "core/common/utf8.h"
#include "core/session/form_submission.h"
#include "features/discovery/grade_store_net_api.h"
#include "features/orders/order_texts.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

// Characters of `text`, a stray byte counting as one.
std::size_t characterCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) at += std::max<std::size_t>(1, utf8::sequenceLength(text, at));
  return count;
}

}  // namespace

GradeStoreViewController::GradeStoreViewController(std::string orderId, std::string storeName,
                                                   std::string* successOrderID)
    : orderId_(std::move(orderId)), storeName_(std::move(storeName)), successOrderID_(successOrderID) {}

GradeStoreViewController::~GradeStoreViewController() { detachRequest(request_); }

std::string GradeStoreViewController::title() const { return order_texts::kRateTitle; }

void GradeStoreViewController::selectStar(int n) { star_ = std::clamp(n, kMinStar, kMaxStar); }

std::string GradeStoreViewController::countText() const {
  return std::to_string(characterCount(contentText)) + "/" + std::to_string(kMaxContentChars);
}

bool GradeStoreViewController::isSubmitting() const { return request_ && request_->isExecuting(); }

bool GradeStoreViewController::submitAction() {
  if (isSubmitting() || orderId_.empty()) return false;
  if (star_ < kMinStar) {
    Env::current().overlay->showImage(order_texts::kErrorImage, order_texts::kRateNoStar);
    return false;
  }
  if (!utf8::isValid(contentText)) {
    Env::current().overlay->showImage(order_texts::kErrorImage, order_texts::kRateBadText);
    return false;
  }
  if (characterCount(contentText) > kMaxContentChars) {
    Env::current().overlay->showImage(order_texts::kErrorImage, order_texts::kRateTooLong);
    return false;
  }
  submitForm(
      *this, request_, std::make_shared<GradeStoreNetApi>(orderId_, std::to_string(star_), contentText),
      [this] {
        if (successOrderID_ != nullptr) *successOrderID_ = orderId_;
        Env::current().overlay->showImage("", order_texts::kRateDone);
        return true;
      },
      onFinished);
  return true;
}

}  // namespace qmv

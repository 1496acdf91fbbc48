#include "features/member/feedback_view_controller.h"

#include <optional>

#include "core/common/string_util.h"
#include "core/common/utf8.h"
#include "core/session/form_submission.h"
#include "features/discovery/feedback_net_api.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
FeedbackViewController::~FeedbackViewController() { detachRequest(request_); }

std::string FeedbackViewController::countText() const {
  const auto count = utf8::typedLength(trimmed(contentText), true);
  return std::to_string(count.value_or(0)) + member_centre_texts::kCountSeparator + std::to_string(kMaxContent);
}

const char* FeedbackViewController::refusal() const {
  const std::string_view content = trimmed(contentText);
  if (content.empty()) return member_centre_texts::kNoFeedback;
  const auto contentLength = utf8::typedLength(content, true);
  if (!contentLength) return member_centre_texts::kBadFeedback;
  if (*contentLength > kMaxContent) return member_centre_texts::kFeedbackTooLong;
  const auto contactLength = utf8::typedLength(trimmed(contactText), false);
  if (!contactLength) return member_centre_texts::kBadContact;
  if (*contactLength > kMaxContact) return member_centre_texts::kContactTooLong;
  return nullptr;
}

bool FeedbackViewController::isSending() const { return request_ && request_->isExecuting(); }

bool FeedbackViewController::submitAction() {
  if (isSending()) return false;
  if (const char* refused = refusal()) {
    Env::current().overlay->showImage("", refused);
    return false;
  }
  submitForm(
      *this, request_,
      std::make_shared<FeedbackNetApi>(std::string(trimmed(contentText)), std::string(trimmed(contactText))),
      [] {
        Env::current().overlay->showImage("", member_centre_texts::kFeedbackSent);
        return true;
      },
      onFinished);
  return true;
}

}  // namespace qmv

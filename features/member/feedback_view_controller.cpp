#include "features/member/feedback_view_controller.h"

#include <optional>

#include "core/common/string_util.h"
#include "core/common/utf8.h"
#include "core/session/form_submission.h"
#include "features/discovery/feedback_net_api.h"
#include "platform/env.h"
#include "platform/status_overlay.h"

namespace qmv {
namespace {

// Code points of `text`; nullopt when it is not UTF-8 or holds a control character (C0,
// DEL or C1) other than, with `lineBreaks`, a line feed, carriage return or tab.
std::optional<std::size_t> characters(std::string_view text, bool lineBreaks) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < text.size(); ++count) {
    const std::size_t length = utf8::sequenceLength(text, at);
    if (length == 0) return std::nullopt;
    const auto first = static_cast<unsigned char>(text[at]);
    const bool c0 = length == 1 && (first < 0x20 || first == 0x7f);
    const bool c1 = length == 2 && first == 0xc2 && static_cast<unsigned char>(text[at + 1]) < 0xa0;
    const bool allowed = lineBreaks && (first == '\n' || first == '\r' || first == '\t');
    if ((c0 && !allowed) || c1) return std::nullopt;
    at += length;
  }
  return count;
}

}  // namespace

FeedbackViewController::~FeedbackViewController() { detachRequest(request_); }

std::string FeedbackViewController::countText() const {
  const auto count = characters(trimmed(contentText), true);
  return std::to_string(count.value_or(0)) + member_centre_texts::kCountSeparator + std::to_string(kMaxContent);
}

const char* FeedbackViewController::refusal() const {
  const std::string_view content = trimmed(contentText);
  if (content.empty()) return member_centre_texts::kNoFeedback;
  const auto contentLength = characters(content, true);
  if (!contentLength) return member_centre_texts::kBadFeedback;
  if (*contentLength > kMaxContent) return member_centre_texts::kFeedbackTooLong;
  const auto contactLength = characters(trimmed(contactText), false);
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

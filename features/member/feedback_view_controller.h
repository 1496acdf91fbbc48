#pragma once
// The feedback screen ("意见反馈"), headless: the member's text and, optionally, how to
// reach him; sent as feedback of type "0" ("postFeedback"; the server names the text
// "concent").
//
// Choices: the text is required and holds at most 500 characters, the contact at most 50;
// characters are code points, so a Chinese character counts once. Both are sent without
// the white space at their ends, and a text of white space only counts as none. The text
// may hold line breaks and tabs; no other control character, nor bytes that are not
// UTF-8, in either field. The checks run in that order and show the first failure; a
// correct answer shows "提交成功,感谢您的反馈" and pops the screen. While a sending runs,
// the submit button does nothing.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "core/session/base_view_controller.h"
#include "features/member/member_centre_texts.h"

namespace qmv {

class FeedbackNetApi;

class FeedbackViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = member_centre_texts::kFeedbackTitle;
  static constexpr std::size_t kMaxContent = 500;
  static constexpr std::size_t kMaxContact = 50;

  FeedbackViewController() = default;
  // Stops a sending still running; its callbacks never arrive.
  ~FeedbackViewController() override;
  FeedbackViewController(const FeedbackViewController&) = delete;
  FeedbackViewController& operator=(const FeedbackViewController&) = delete;

  const char* title() const { return kTitle; }

  // Field texts, edited by the front end.
  std::string contentText;
  std::string contactText;

  // The counter under the text: characters typed (code points of valid UTF-8, without
  // the white space at the ends), "/", the most allowed: "12/500".
  std::string countText() const;
  // The message of the first check that the fields fail; nullptr when they pass.
  const char* refusal() const;
  // The submit button: the checks, then the sending. Returns whether it was sent.
  bool submitAction();
  bool isSending() const;

  // After each sending ends: whether the server took the feedback.
  std::function<void(bool correct)> onFinished;

 private:
  std::shared_ptr<FeedbackNetApi> request_;
};

}  // namespace qmv

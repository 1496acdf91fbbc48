#pragma once
// The member tab's messages badge, headless: how many of the member's newest messages he
// has not read, without opening the messages screen (which would mark them read).
//
// Choices: each appearance of the tab asks page 1 of "getMyMessage" silently (no loading
// view, no message on a failure) and counts its rows whose "isRead" is "0", as the
// messages screen marks them; older pages are not walked for a badge. A failed or refused
// answer keeps the count shown. Signed out, nothing is sent and the count is 0. An expired
// session is left to the screens the member opens: the badge logs nobody out.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>

namespace qmv {

class MyNewsNetApi;

class UnreadMessageBadge {
 public:
  UnreadMessageBadge() = default;
  // Stops an asking still running; its callbacks never arrive.
  ~UnreadMessageBadge();
  UnreadMessageBadge(const UnreadMessageBadge&) = delete;
  UnreadMessageBadge& operator=(const UnreadMessageBadge&) = delete;

  // The tab appears: page 1 again, or, signed out, the count cleared. REQUIRES: interface thread.
  void viewWillAppear();
  std::size_t unreadCount() const { return unread_; }
  // The count as the badge shows it; empty when there is nothing unread.
  std::string badgeText() const;
  bool isLoading() const;

  // After each answer or clearing that may have changed the count.
  std::function<void()> onChange;

 private:
  std::size_t unread_ = 0;
  std::shared_ptr<MyNewsNetApi> request_;
};

}  // namespace qmv

#pragma once
// The member tab ("我的"), headless: who is signed in (his name, masked phone, balance and
// level), his portrait, the unread messages' badge and the ways into his own
// screens.
//
// Choices: the record is shown as the session holds it; the tab sends no request of its
// own for it (the wallet tab and the screens that change the record keep it current), only
// the badge's page 1 of messages on each appearance. The name is the nick name, else the
// account name masked as a phone is (for most members it is their phone). The phone is
// masked as everywhere else ("1381***5678"). The portrait is the stored "headerImage_now" picture decoded within the decoder's caps and shrunk to fit
// kPortraitSide; none without a member, a stored picture or a decoder, or when the picture
// cannot be read (the tab then shows no portrait rather than an error). Entries open their
// screens whether or not the record holds what they need: each screen says what is missing.
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "core/common/decoded_image.h"
#include "core/session/base_view_controller.h"
#include "features/member/member_centre_texts.h"
#include "features/member/unread_message_badge.h"

namespace qmv {

class ZDMyViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = member_centre_texts::kMemberTabTitle;
  static constexpr int kPortraitSide = 128;

  struct Entry {
    const char* title;
    const char* screen;
    const char* payloadKey = nullptr;  // with payloadValue, the screen's one argument
    long payloadValue = 0;
  };

  ZDMyViewController();
  ZDMyViewController(const ZDMyViewController&) = delete;
  ZDMyViewController& operator=(const ZDMyViewController&) = delete;

  const char* title() const { return kTitle; }
  // Counts the unread messages again (signed out: clears the count).
  void viewWillAppear();
  bool hasMember() const;
  bool hasData() const override { return hasMember(); }

  // The record's lines; "" signed out.
  std::string nameText() const;
  std::string phoneText() const;    // masked
  std::string balanceText() const;  // yuan, "%.2f"
  std::string levelText() const;    // "LV3  120/300"
  std::string remainingText() const;

  // The portrait, decoded; null when there is none to show. Decodes again only when the
  // stored picture changed.
  const DecodedImage* portrait();

  // The member's screens, in the order the tab lists them.
  static std::span<const Entry> entries();
  // The badge on entries()[index]: the unread count on the messages entry, "" elsewhere.
  std::string badgeOf(std::size_t index) const;
  // Pushes the screen of entries()[index]; nothing for an index out of range.
  void openEntry(std::size_t index);

  // After each change of the badge.
  std::function<void()> onChanged;

 private:
  UnreadMessageBadge badge_;
  std::string portraitBytes_;  // what portrait_ was decoded from
  std::optional<DecodedImage> portrait_;
};

}  // namespace qmv

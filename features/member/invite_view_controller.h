#pragma once
// The invitation screen ("邀请好友"), headless: the member's invitation code, the link to
// the server's registration page that carries it, and that link as a QR code, which the
// registration's scanner reads back into its invitation field.
//
// Choices: the code is the member number ("num"; the server takes a number or a phone as
// an inviter); without a member or a number there is no code, and the link and the QR code
// are empty. The link is the web host, without trailing slashes, then
// "/static/register/index.html?inviteID=" and the code: "inviteID" comes last because the
// scanner takes everything after "inviteid=" as the code. Without a web host there is no
// link either. It sends nothing.
#include <optional>
#include <string>

#include "core/session/base_view_controller.h"
#include "features/member/account_centre_texts.h"
#include "platform/qr_generator.h"

namespace qmv {

class InviteViewController : public BaseViewController {
 public:
  static constexpr const char* kTitle = account_centre_texts::kInviteTitle;

  const char* title() const { return kTitle; }
  bool hasData() const override { return !inviteCode().empty(); }

  std::string inviteCode() const;
  std::string inviteLink() const;
  // The link's QR code through the Env's generator; nullopt without a link or generator.
  std::optional<QrMatrix> qrCode() const;
  // Hands the link to the sharing port (the GTK client: the clipboard). False without a
  // link or a port.
  bool shareLink() const;
};

}  // namespace qmv

#include "features/member/invite_view_controller.h"

#include "core/request/network_config.h"
#include "core/session/global_data.h"
#include "core/session/user_info_model.h"
#include "platform/env.h"
#include "platform/vendor_sdks.h"

namespace qmv {

std::string InviteViewController::inviteCode() const {
  const auto& me = GlobalData::sharedInstance().selfInfo();
  return me ? me->num : std::string();
}

std::string InviteViewController::inviteLink() const {
  const std::string code = inviteCode();
  std::string host = NetworkConfig::sharedInstance().webHost();
  while (!host.empty() && host.back() == '/') host.pop_back();
  if (code.empty() || host.empty()) return {};
  return host + account_centre_texts::kInvitePath + code;
}

std::optional<QrMatrix> InviteViewController::qrCode() const {
  const std::string link = inviteLink();
  const auto& generator = Env::current().qrGenerator;
  if (link.empty() || !generator) return std::nullopt;
  return generator->encode(link);
}

bool InviteViewController::shareLink() const {
  const std::string link = inviteLink();
  const auto& sharing = Env::current().sharing;
  if (link.empty() || !sharing) return false;
  sharing->share(link, "", kTitle, inviteCode());
  return true;
}

}  // namespace qmv

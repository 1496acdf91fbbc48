#include "features/discovery/detail_actions.h"

#include "features/discovery/discovery_texts.h"
#include "platform/env.h"
#include "platform/status_overlay.h"
#include "platform/url_opener.h"

namespace qmv {

bool callPhone(const std::string& phone) {
  Env& env = Env::current();
  if (phone.empty()) {
    env.overlay->showImage("", discovery_texts::kNoPhone);
    return false;
  }
  env.urlOpener->openURL(discovery_texts::kTelPrefix + phone);
  return true;
}

}  // namespace qmv

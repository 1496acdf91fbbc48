#include "shell/app_links.h"

#include "core/common/url_parts.h"
#include "core/session/login_screen.h"
#include "features/orders/checkout_texts.h"
#include "features/orders/qx_pay_now_view_controller.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "shell/h5_texts.h"

namespace qmv {

namespace {

void openPayNow(const std::string& url) {
  if (!hasSession()) return presentLoginScreen();
  // A key the link repeats counts with its last value; a missing one stays unset.
  const auto pairs = urlQueryPairs(url);
  const auto value = [&pairs](const char* key) {
    const auto found = pairs.find(key);
    return found == pairs.end() ? std::string() : found->second;
  };
  const Json payload =
      QXPayNowViewController::drawProductPayload(value("productId"), value("series"), value("acount"));
  Env::current().navigator->push(checkout_texts::kPayNowScreen, payload);
}

}  // namespace

bool isAppLink(const std::string& url) {
  if (urlScheme(url) != h5_texts::kAppScheme) return false;
  const std::string host = urlHost(url);
  return host == h5_texts::kLoginHost || host == h5_texts::kPayHost;
}

bool openAppLink(const std::string& url) {
  if (!isAppLink(url)) return false;
  const std::string host = urlHost(url);
  if (host == h5_texts::kLoginHost) {
    presentLoginScreen();
    return true;
  }
  if (host == h5_texts::kPayHost) {
    openPayNow(url);
    return true;
  }
  return false;
}

}  // namespace qmv

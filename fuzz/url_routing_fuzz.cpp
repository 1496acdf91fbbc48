// Inbound URLs: what another application hands to the client (payment results coming
// back, links of the server's pages). Input: the source application on the first line,
// the URL after it. The URL goes through the application delegate's routing to the
// payment libraries' result readers and the result handlers behind them, and through the
// URL readers the routing and the pages use.
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "core/common/url_parts.h"
#include "fuzz/fuzz_env.h"
#include "platform/linux/url_result_payment_channels.h"
#include "platform/payment_channels.h"
#include "platform/synchronous_notification_center.h"
#include "shell/app_delegate.h"

namespace qmv::fuzz {
namespace {

AppDelegate& delegate() {
  static AppDelegate* instance = [] {
    FuzzEnv::get();
    Env& env = Env::current();
    auto channels = std::make_shared<PaymentChannels>();
    channels->wechat = std::make_shared<UrlResultWeChatApi>();
    channels->alipay = std::make_shared<UrlResultAlipayService>();
    channels->uppay = std::make_shared<UrlResultUPPayControl>();
    env.payments = channels;
    env.notifications = std::make_shared<SynchronousNotificationCenter>();
    return new AppDelegate(AppConfig{});
  }();
  return *instance;
}

std::size_t g_read = 0;

}  // namespace
}  // namespace qmv::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace qmv::fuzz;
  const auto [source, url] = splitFirstLine(asText(data, size));
  const std::string text(url);
  g_read += delegate().openURL(text, std::string(source)) ? 1 : 0;
  // Delayed reactions (the pay-now screen's notice) run too.
  FuzzEnv::get().loop->advance(std::chrono::seconds(1));

  const std::string authority = qmv::urlAuthority(text);
  // The authority ends at the first "/", "?" or "#": it can never hold one.
  if (authority.find_first_of("/?#") != std::string::npos) __builtin_trap();
  g_read += qmv::urlHost(text).size() + qmv::urlScheme(text).size();
  for (const auto& [key, value] : qmv::urlQueryPairs(text)) g_read += key.size() + value.size();
  return 0;
}

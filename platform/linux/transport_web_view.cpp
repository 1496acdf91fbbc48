#include "platform/linux/transport_web_view.h"

#include <cctype>

#include "core/common/url_parts.h"
#include "platform/env.h"
#include "platform/linux/html_page_reader.h"
#include "platform/main_loop.h"

namespace qmv {
namespace {

std::string lowered(std::string text) {
  for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return text;
}

// The charset parameter of a Content-Type header ("" when none).
std::string charsetOf(const HeaderFields& headers) {
  for (const auto& [name, value] : headers) {
    if (lowered(name) != "content-type") continue;
    const std::string type = lowered(value);
    const auto at = type.find("charset=");
    if (at == std::string::npos) return {};
    std::string charset = value.substr(at + 8);
    charset = charset.substr(0, charset.find(';'));
    std::erase_if(charset, [](char c) { return c == '"' || c == '\'' || c == ' '; });
    return charset;
  }
  return {};
}

const char* reasonOf(TransportError error) {
  switch (error) {
    case TransportError::timeout:
      return "the page did not answer in time";
    case TransportError::connection:
      return "cannot connect to the page's server";
    default:
      return "the page could not be fetched";
  }
}

}  // namespace

TransportWebView::~TransportWebView() { cancelFetch(); }

void TransportWebView::cancelFetch() {
  if (sending_ && transfer_ != 0) sending_->cancel(transfer_);
  sending_.reset();
  transfer_ = 0;
}

void TransportWebView::fetch(const std::string& url, FetchCompletion done) {
  const std::string scheme = urlScheme(url);
  auto transport = http_ ? http_ : Env::current().http;
  std::string refusal;
  if (scheme != "http" && scheme != "https") {
    refusal = "cannot open " + url + ": only http and https pages load here";
  } else if (!transport) {
    refusal = "no HTTP transport";
  }
  if (!refusal.empty()) {
    // The failure still arrives from the loop, as every load's end does.
    Env::current().mainLoop->post([done = std::move(done), refusal] { done(Status::invalidArgument(refusal)); });
    return;
  }
  HttpRequest request;
  request.url = url;
  request.headers = {{"Accept", "text/html,application/xhtml+xml;q=0.9,*/*;q=0.5"}};
  sending_ = transport;
  const std::weak_ptr<bool> alive = alive_;
  transfer_ = transport->send(std::move(request), [this, alive, url, done = std::move(done)](HttpResponse response) {
    if (alive.expired()) return;
    sending_.reset();
    transfer_ = 0;
    if (response.error == TransportError::cancelled) return;
    if (response.error != TransportError::none) return done(Status::unavailable(reasonOf(response.error)));
    if (response.status < 200 || response.status > 299) {
      return done(Status::unavailable("the page answered HTTP " + std::to_string(response.status)));
    }
    if (response.body.size() > kMaxHtmlPageBytes) return done(Status::invalidArgument("the page is too large to show"));
    done(readHtmlPage(response.body, url, charsetOf(response.headers.fields())));
  });
}

}  // namespace qmv

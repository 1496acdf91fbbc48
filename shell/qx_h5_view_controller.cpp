#include "shell/qx_h5_view_controller.h"

#include <iterator>

#include "core/common/dictionary.h"
#include "core/common/url_parts.h"
#include "core/request/network_config.h"
#include "core/request/network_util.h"
#include "core/session/global_data.h"
#include "platform/env.h"
#include "platform/navigator.h"
#include "platform/vendor_sdks.h"
#include "shell/app_links.h"
#include "shell/device_identity.h"
#include "shell/h5_texts.h"

namespace qmv {
namespace {

namespace texts = h5_texts;

const texts::H5Page* pageOf(long type) {
  if (type < 0 || type >= static_cast<long>(std::size(texts::kPages))) return nullptr;
  return &texts::kPages[type];
}

// RFC 6265 cookie-octets: anything else (";", spaces, control bytes) could split the
// Cookie header or smuggle a header line into the request.
bool isCookieValue(const std::string& value) {
  if (value.empty()) return false;
  for (const unsigned char c : value) {
    if (c < 0x21 || c > 0x7E || c == '"' || c == ',' || c == ';' || c == '\\') return false;
  }
  return true;
}

std::string currentSessionId() {
  const auto& self = GlobalData::sharedInstance().selfInfo();
  return self ? self->sessionId : std::string();
}

}  // namespace

QXH5ViewController::QXH5ViewController(long h5Type) : h5Type_(h5Type) {
  if (const auto* page = pageOf(h5Type)) title_ = page->title;
}

std::string QXH5ViewController::pageUrl() const {
  const auto* page = pageOf(h5Type_);
  std::string host = NetworkConfig::sharedInstance().webHost();
  if (page == nullptr || host.empty()) return {};
  while (!host.empty() && host.back() == '/') host.pop_back();
  return host + page->path;
}

void QXH5ViewController::viewDidLoad() {
  if (h5Type_ == texts::kCommunityType) {
    whiteBackground = true;
    refreshHeader = true;
  }
  setupNavigation();
  if (!makeWebView()) return failWithoutLoading(loadError());
  setCookie();
  const std::string url = pageUrl();
  if (url.empty()) {
    return failWithoutLoading(pageOf(h5Type_) ? "no web host is configured"
                                              : "there is no page of type " + std::to_string(h5Type_));
  }
  webView()->loadRequest(url);
}

void QXH5ViewController::setupNavigation() {
  backImage = texts::kBackImage;
  shareShown = h5Type_ == texts::kCoinType || h5Type_ == texts::kCommunityType;
}

void QXH5ViewController::setCookie() {
  cookies_.clear();
  const auto& store = Env::current().cookies;
  const std::string domain = urlHost(NetworkConfig::sharedInstance().webHost());
  if (domain.empty()) return;
  const auto put = [&](const char* name, const std::string& value) {
    Cookie cookie{name, value, domain, "/"};
    if (!isCookieValue(value)) {
      store->deleteCookie(cookie);
      return;
    }
    if (store->setCookie(cookie)) cookies_.push_back(std::move(cookie));
  };
  const std::string session = currentSessionId();
  cookieSession_ = session;
  for (const char* name : texts::kSessionCookieNames) put(name, session);
  put(texts::kAppVersionCookie, NetworkUtil::appVersionString());
  put(texts::kClientTypeCookie, texts::kClientType);
  put(texts::kDeviceTypeCookie, texts::kDeviceType);
  put(texts::kDeviceIdCookie, deviceIdentity());
}

bool QXH5ViewController::followSession() {
  if (!webView() || !cookieSession_ || *cookieSession_ == currentSessionId()) return false;
  setCookie();
  webView()->reload();
  return true;
}

void QXH5ViewController::goBack() {
  if (webView() && webView()->canGoBack()) {
    webView()->goBack();
    setupNavigation();
    return;
  }
  Env::current().navigator->pop();
}

void QXH5ViewController::refreshAction() {
  if (refreshHeader && webView()) webView()->reload();
}

std::optional<ShareContent> QXH5ViewController::shareContent() const {
  if (h5Type_ == texts::kCoinType) {
    return ShareContent{pageUrl(), texts::kCoinShareImage, texts::kCoinShareTitle, texts::kCoinShareText};
  }
  if (h5Type_ == texts::kCommunityType) {
    return ShareContent{pageUrl(), texts::kCommunityShareImage, texts::kCommunityShareTitle,
                        texts::kCommunityShareText};
  }
  return std::nullopt;
}

void QXH5ViewController::shareAction() {
  const auto content = shareContent();
  if (content) Env::current().sharing->share(content->url, content->image, content->title, content->text);
}

void QXH5ViewController::publishAction() {
  if (h5Type_ != texts::kCommunityType) return;
  Env::current().navigator->push(texts::kPublishScreen);
}

bool QXH5ViewController::shouldStartLoadWithRequest(const std::string& url, WebNavigationType /*type*/) {
  return !openAppLink(url);
}

void QXH5ViewController::takeDocumentTitle() {
  // A page without a title of its own (or none yet) shows the type's.
  const std::string& own = webView() ? webView()->documentTitle() : title_;
  if (!own.empty()) {
    title_ = own;
  } else if (const auto* page = pageOf(h5Type_)) {
    title_ = page->title;
  }
}

void QXH5ViewController::webViewDidStartLoad() { takeDocumentTitle(); }

void QXH5ViewController::webViewDidFinishLoad() {
  takeDocumentTitle();
  WebPageScreen::webViewDidFinishLoad();
}

}  // namespace qmv

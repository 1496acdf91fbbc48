#include "apps/gtk/webkit_web_view.h"

#include <webkit/webkit.h>

#include <nlohmann/json.hpp>

#include "apps/gtk/web_view_module.h"
#include "platform/cookie_store.h"

namespace qmv::gtk {

namespace {

// Reads what the port shows of a page: its title, its links in document order with
// their resolved targets and collapsed texts, and its visible text.
constexpr const char* kReadPage = R"JS(
(function () {
  const links = [];
  for (const a of document.querySelectorAll('a[href]')) {
    links.push({text: (a.innerText || a.textContent || '').replace(/\s+/g, ' ').trim(), url: a.href});
  }
  return JSON.stringify({title: document.title || '', links: links,
                         text: document.body ? document.body.innerText : ''});
})()
)JS";

WebNavigationType typeOf(WebKitNavigationType type) {
  switch (type) {
    case WEBKIT_NAVIGATION_TYPE_LINK_CLICKED:
      return WebNavigationType::LinkClicked;
    case WEBKIT_NAVIGATION_TYPE_BACK_FORWARD:
      return WebNavigationType::BackForward;
    case WEBKIT_NAVIGATION_TYPE_RELOAD:
      return WebNavigationType::Reload;
    default:
      return WebNavigationType::Other;
  }
}

using Json = nlohmann::json;

std::string text(const Json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

bool cancelled(const GError* error) { return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED); }

// A load waiting for its cookies to be in the view's session.
struct PendingLoad {
  WebKitWebView* view;
  std::string url;
};

// Loads once the cookies are in place; a stopped load, or a view that is gone (both
// cancel the wait), is dropped.
void loadAfterCookies(GError* error, PendingLoad* data) {
  std::unique_ptr<PendingLoad> pending(data);
  const bool dropped = error != nullptr && cancelled(error);
  if (error != nullptr) g_error_free(error);
  if (!dropped) webkit_web_view_load_uri(pending->view, pending->url.c_str());
}

}  // namespace

WebKitPageView::WebKitPageView(WebKitNetworkSession* session, std::shared_ptr<CookieStore> cookies)
    : view_(WEBKIT_WEB_VIEW(g_object_new(WEBKIT_TYPE_WEB_VIEW, "network-session", session, nullptr))),
      session_(WEBKIT_NETWORK_SESSION(g_object_ref(session))), cookies_(std::move(cookies)),
      cancellable_(g_cancellable_new()) {
  g_object_ref_sink(view_);
  g_signal_connect(view_, "decide-policy",
                   G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType kind,
                                  gpointer self) -> gboolean {
                     return static_cast<WebKitPageView*>(self)->decide(decision, kind);
                   }),
                   this);
  g_signal_connect(view_, "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, gpointer self) {
                     static_cast<WebKitPageView*>(self)->loadChanged(event);
                   }),
                   this);
  g_signal_connect(view_, "load-failed",
                   G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, char*, GError* error, gpointer self) -> gboolean {
                     const bool dropped = cancelled(error) ||
                                          g_error_matches(error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) ||
                                          g_error_matches(error, WEBKIT_POLICY_ERROR,
                                                          WEBKIT_POLICY_ERROR_FRAME_LOAD_INTERRUPTED_BY_POLICY_CHANGE);
                     return static_cast<WebKitPageView*>(self)->loadFailed(error->message, dropped);
                   }),
                   this);
  g_signal_connect(view_, "notify::estimated-load-progress", G_CALLBACK(+[](GObject*, GParamSpec*, gpointer self) {
                     static_cast<WebKitPageView*>(self)->progressChanged();
                   }),
                   this);
}

WebKitPageView::~WebKitPageView() {
  g_cancellable_cancel(cancellable_);
  g_object_unref(cancellable_);
  g_signal_handlers_disconnect_by_data(view_, this);
  webkit_web_view_stop_loading(view_);
  g_object_unref(view_);
  g_object_unref(session_);
}

GtkWidget* WebKitPageView::widget() { return GTK_WIDGET(view_); }

void WebKitPageView::resetCancellable() {
  g_cancellable_cancel(cancellable_);
  g_object_unref(cancellable_);
  cancellable_ = g_cancellable_new();
}

bool WebKitPageView::loadRequest(const std::string& url) {
  if (delegate_ != nullptr && !delegate_->shouldStartLoadWithRequest(url, WebNavigationType::Other)) return false;
  stopLoading();
  load(url);
  return true;
}

void WebKitPageView::load(const std::string& url) {
  loading_ = true;
  failed_ = false;
  allowed_ = url;
  // The store is the session's truth: the view's session gets exactly its cookies before
  // the page is asked for.
  GList* list = nullptr;
  if (cookies_) {
    for (const Cookie& cookie : cookies_->cookies()) {
      if (cookie.domain.empty()) continue;
      // libsoup's rule for a domain without a leading dot is the store's host-only one.
      const std::string domain = cookie.hostOnly ? cookie.domain : "." + cookie.domain;
      SoupCookie* made =
          soup_cookie_new(cookie.name.c_str(), cookie.value.c_str(), domain.c_str(), cookie.path.c_str(), -1);
      soup_cookie_set_secure(made, cookie.secure);
      soup_cookie_set_http_only(made, cookie.httpOnly);
      if (cookie.expires > 0) {
        GDateTime* expires = g_date_time_new_from_unix_utc(cookie.expires);
        soup_cookie_set_expires(made, expires);
        g_date_time_unref(expires);
      }
      list = g_list_prepend(list, made);
    }
  }
  if (list == nullptr) {
    // Replacing with no cookies never completes (WebKitGTK 2.50): clear them instead.
    webkit_website_data_manager_clear(
        webkit_network_session_get_website_data_manager(session_), WEBKIT_WEBSITE_DATA_COOKIES, 0, cancellable_,
        +[](GObject* manager, GAsyncResult* result, gpointer data) {
          GError* error = nullptr;
          webkit_website_data_manager_clear_finish(WEBKIT_WEBSITE_DATA_MANAGER(manager), result, &error);
          loadAfterCookies(error, static_cast<PendingLoad*>(data));
        },
        new PendingLoad{view_, url});
    return;
  }
  webkit_cookie_manager_replace_cookies(
      webkit_network_session_get_cookie_manager(session_), list, cancellable_,
      +[](GObject* manager, GAsyncResult* result, gpointer data) {
        GError* error = nullptr;
        webkit_cookie_manager_replace_cookies_finish(WEBKIT_COOKIE_MANAGER(manager), result, &error);
        loadAfterCookies(error, static_cast<PendingLoad*>(data));
      },
      new PendingLoad{view_, url});
  g_list_free_full(list, reinterpret_cast<GDestroyNotify>(soup_cookie_free));
}

bool WebKitPageView::reload() {
  if (page_.url.empty()) return false;
  if (delegate_ != nullptr && !delegate_->shouldStartLoadWithRequest(page_.url, WebNavigationType::Reload)) {
    return false;
  }
  stopLoading();
  load(page_.url);
  return true;
}

void WebKitPageView::stopLoading() {
  resetCancellable();
  if (!loading_) return;
  loading_ = false;
  // What WebKit still reports of the stopped load is dropped.
  failed_ = true;
  webkit_web_view_stop_loading(view_);
}

bool WebKitPageView::canGoBack() const { return webkit_web_view_can_go_back(view_); }

bool WebKitPageView::goBack() {
  if (!canGoBack()) return false;
  // WebKit's decision for the step asks the delegate (type BackForward).
  webkit_web_view_go_back(view_);
  return true;
}

bool WebKitPageView::tapLink(std::size_t index) {
  if (index >= page_.links.size()) return false;
  const std::string url = page_.links[index].url;
  if (delegate_ != nullptr && !delegate_->shouldStartLoadWithRequest(url, WebNavigationType::LinkClicked)) {
    return false;
  }
  stopLoading();
  load(url);
  return true;
}

bool WebKitPageView::decide(WebKitPolicyDecision* decision, int kind) {
  if (kind == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) return false;
  WebKitNavigationAction* action =
      webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
  const char* uri = webkit_uri_request_get_uri(webkit_navigation_action_get_request(action));
  const std::string url = uri != nullptr ? uri : "";
  if (!allowed_.empty() && url == allowed_) {
    allowed_.clear();
    return false;  // the core asked already
  }
  const WebNavigationType type = typeOf(webkit_navigation_action_get_navigation_type(action));
  if (delegate_ != nullptr && !delegate_->shouldStartLoadWithRequest(url, type)) {
    webkit_policy_decision_ignore(decision);
    return true;
  }
  if (kind == WEBKIT_POLICY_DECISION_TYPE_NEW_WINDOW_ACTION) {
    // One page at a time: a new window's page loads here.
    webkit_policy_decision_ignore(decision);
    allowed_ = url;
    webkit_web_view_load_uri(view_, url.c_str());
    return true;
  }
  return false;
}

void WebKitPageView::loadChanged(int event) {
  if (event == WEBKIT_LOAD_STARTED) {
    loading_ = true;
    failed_ = false;
    if (delegate_ != nullptr) delegate_->webViewDidStartLoad();
    return;
  }
  if (event != WEBKIT_LOAD_FINISHED || failed_) return;
  // In a script world of its own, so that the page's scripts cannot answer for it.
  webkit_web_view_evaluate_javascript(
      view_, kReadPage, -1, "qmv-reader", nullptr, cancellable_,
      +[](GObject* view, GAsyncResult* result, gpointer self) {
        GError* error = nullptr;
        JSCValue* value = webkit_web_view_evaluate_javascript_finish(WEBKIT_WEB_VIEW(view), result, &error);
        if (error != nullptr && cancelled(error)) {
          g_error_free(error);
          return;  // stopped, or the view is gone
        }
        std::string json;
        if (value != nullptr && jsc_value_is_string(value)) {
          char* text = jsc_value_to_string(value);
          json = text;
          g_free(text);
        }
        if (value != nullptr) g_object_unref(value);
        if (error != nullptr) g_error_free(error);
        static_cast<WebKitPageView*>(self)->pageRead(json);
      },
      this);
}

void WebKitPageView::pageRead(const std::string& json) {
  WebPage page;
  const char* uri = webkit_web_view_get_uri(view_);
  page.url = uri != nullptr ? uri : "";
  // What the page script answers is the page's own text: read defensively.
  // The script's answer has a fixed shape and depth; only its strings are the page's.
  const Json read = Json::parse(json, nullptr, false);
  if (!read.is_discarded() && read.is_object()) {
    page.title = text(read, "title");
    page.text = text(read, "text");
    const auto links = read.find("links");
    if (links != read.end() && links->is_array()) {
      for (const Json& link : *links) {
        if (link.is_object()) page.links.push_back({text(link, "text"), text(link, "url")});
      }
    }
  }
  page_ = std::move(page);
  loading_ = false;
  if (delegate_ != nullptr) {
    delegate_->updateProgress(1);
    delegate_->webViewDidFinishLoad();
  }
}

bool WebKitPageView::loadFailed(const std::string& message, bool dropped) {
  failed_ = true;
  if (dropped || !loading_) return true;
  loading_ = false;
  if (delegate_ != nullptr) {
    delegate_->updateProgress(1);
    delegate_->didFailLoadWithError(message);
  }
  return true;  // the screen tells the failure; no error page of WebKit's own
}

void WebKitPageView::progressChanged() {
  if (loading_ && delegate_ != nullptr) delegate_->updateProgress(webkit_web_view_get_estimated_load_progress(view_));
}

WebKitWebViewFactory::~WebKitWebViewFactory() {
  if (session_ != nullptr) g_object_unref(session_);
}

std::unique_ptr<WebView> WebKitWebViewFactory::makeWebView() {
  if (session_ == nullptr) session_ = webkit_network_session_new_ephemeral();
  return std::make_unique<WebKitPageView>(session_, cookies_);
}

}  // namespace qmv::gtk

extern "C" qmv::WebViewFactory* qmv_webkit_web_view_factory(const std::shared_ptr<qmv::CookieStore>* cookies) {
  return new qmv::gtk::WebKitWebViewFactory(cookies != nullptr ? *cookies : nullptr);
}

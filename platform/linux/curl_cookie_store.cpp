#include "platform/linux/curl_cookie_store.h"

#include <arpa/inet.h>
#include <curl/curl.h>
#include <libpsl.h>

#include <array>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string_view>

#include "platform/linux/detail/curl_transfer.h"

namespace qmv {
namespace {

constexpr const char* kHttpOnlyPrefix = "#HttpOnly_";

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7f; }

// Texts that would end the cookie early, or split the engine's tab-separated line.
bool fitsHeader(const std::string& text, const char* forbidden) {
  for (const char c : text) {
    if (isControl(c) || std::string_view(forbidden).find(c) != std::string_view::npos) return false;
  }
  return true;
}

bool isAddress(const std::string& host) {
  unsigned char buffer[16];
  return inet_pton(AF_INET, host.c_str(), buffer) == 1 || inet_pton(AF_INET6, host.c_str(), buffer) == 1 ||
         host.starts_with('[');
}

// The engine's form of a cookie's slot: a lower-case domain without its dot, a path.
Cookie normalized(Cookie c) {
  if (c.domain.starts_with('.')) c.domain.erase(0, 1);
  for (char& ch : c.domain) {
    if (ch >= 'A' && ch <= 'Z') ch = static_cast<char>(ch - 'A' + 'a');
  }
  if (c.path.empty()) c.path = "/";
  return c;
}

// One line of the engine's Netscape format: domain, subdomains, path, secure, expiry,
// name, value; "#HttpOnly_" before the domain marks an HTTP-only cookie.
std::string netscapeLine(const Cookie& c) {
  return std::string(c.httpOnly ? kHttpOnlyPrefix : "") + (c.hostOnly ? "" : ".") + c.domain + '\t' +
         (c.hostOnly ? "FALSE" : "TRUE") + '\t' + c.path + '\t' + (c.secure ? "TRUE" : "FALSE") + '\t' +
         std::to_string(c.expires) + '\t' + c.name + '\t' + c.value;
}

std::optional<Cookie> parseLine(std::string_view line) {
  Cookie c;
  if (line.starts_with(kHttpOnlyPrefix)) {
    c.httpOnly = true;
    line.remove_prefix(std::string_view(kHttpOnlyPrefix).size());
  }
  std::array<std::string, 7> fields;
  std::size_t n = 0;
  for (std::size_t start = 0; n < fields.size(); ++n) {
    const std::size_t tab = n + 1 < fields.size() ? line.find('\t', start) : std::string_view::npos;
    fields[n] = std::string(line.substr(start, tab == std::string_view::npos ? std::string_view::npos : tab - start));
    if (tab == std::string_view::npos) break;
    start = tab + 1;
  }
  if (n != fields.size() - 1) return std::nullopt;
  c.domain = fields[0].starts_with('.') ? fields[0].substr(1) : fields[0];
  c.hostOnly = fields[1] != "TRUE";
  c.path = fields[2];
  c.secure = fields[3] == "TRUE";
  c.expires = std::strtoll(fields[4].c_str(), nullptr, 10);
  c.name = fields[5];
  c.value = fields[6];
  return c;
}

}  // namespace

struct CurlCookieStore::Engine {
  CURLSH* share = nullptr;
  // The handle through which the store itself reads and changes the engine
  // (CURLOPT_COOKIELIST); an easy handle serves one thread at a time.
  CURL* control = nullptr;
  mutable std::mutex controlMutex;
  std::array<std::mutex, CURL_LOCK_DATA_LAST> locks;
  psl_ctx_t* latestList = nullptr;
  const psl_ctx_t* suffixes = nullptr;

  static void lock(CURL*, curl_lock_data data, curl_lock_access, void* self) {
    static_cast<Engine*>(self)->locks[static_cast<std::size_t>(data)].lock();
  }
  static void unlock(CURL*, curl_lock_data data, void* self) {
    static_cast<Engine*>(self)->locks[static_cast<std::size_t>(data)].unlock();
  }

  void apply(const std::string& line) const {
    std::lock_guard hold(controlMutex);
    curl_easy_setopt(control, CURLOPT_COOKIELIST, line.c_str());
  }
};

CurlCookieStore::CurlCookieStore() : engine_(std::make_unique<Engine>()) {
  curl_detail::initCurlOnce();
  Engine& e = *engine_;
  e.share = curl_share_init();
  curl_share_setopt(e.share, CURLSHOPT_LOCKFUNC, &Engine::lock);
  curl_share_setopt(e.share, CURLSHOPT_UNLOCKFUNC, &Engine::unlock);
  curl_share_setopt(e.share, CURLSHOPT_USERDATA, &e);
  curl_share_setopt(e.share, CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
  e.control = curl_easy_init();
  curl_easy_setopt(e.control, CURLOPT_SHARE, e.share);
  // The newest of the list built into libpsl and Debian's publicsuffix package.
  e.latestList = psl_latest(nullptr);
  e.suffixes = e.latestList != nullptr ? e.latestList : psl_builtin();
}

CurlCookieStore::~CurlCookieStore() {
  curl_easy_cleanup(engine_->control);
  curl_share_cleanup(engine_->share);
  psl_free(engine_->latestList);
}

void* CurlCookieStore::shareHandle() const { return engine_->share; }

bool CurlCookieStore::setCookie(const Cookie& given) {
  const Cookie c = normalized(given);
  if (c.name.empty() || c.domain.empty() || !c.path.starts_with('/')) return false;
  if (!fitsHeader(c.name, ";=, \"") || !fitsHeader(c.value, ";") || !fitsHeader(c.path, ";") ||
      !fitsHeader(c.domain, ";/, ")) {
    return false;
  }
  if (!c.hostOnly) {
    // A domain cookie reaches every host under the domain: never all of "com" or an
    // address's neighbours.
    if (isAddress(c.domain)) return false;
    if (engine_->suffixes != nullptr && psl_is_public_suffix(engine_->suffixes, c.domain.c_str())) return false;
  }
  engine_->apply(netscapeLine(c));
  return true;
}

std::vector<Cookie> CurlCookieStore::cookies() const {
  curl_slist* list = nullptr;
  {
    std::lock_guard hold(engine_->controlMutex);
    curl_easy_getinfo(engine_->control, CURLINFO_COOKIELIST, &list);
  }
  const std::int64_t now = std::time(nullptr);
  std::vector<Cookie> out;
  for (const curl_slist* item = list; item != nullptr; item = item->next) {
    auto cookie = parseLine(item->data);
    // An expired cookie stays in the engine until its next change; it is gone already.
    if (cookie && (cookie->expires == 0 || cookie->expires > now)) out.push_back(std::move(*cookie));
  }
  curl_slist_free_all(list);
  return out;
}

void CurlCookieStore::deleteCookie(const Cookie& given) {
  Cookie c = normalized(given);
  if (c.name.empty() || c.domain.empty()) return;
  c.value.clear();
  c.expires = 1;  // long past: replaces the cookie, which is then never sent
  engine_->apply(netscapeLine(c));
}

}  // namespace qmv

#include "platform/linux/curl_transport.h"

#include <curl/curl.h>

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdio>
#include <deque>
#include <filesystem>
#include <mutex>
#include <set>
#include <thread>
#include <utility>
#include <vector>

#include "platform/cookie_store.h"
#include "platform/env.h"
#include "platform/main_loop.h"

namespace qmv {
namespace {

std::string trim(std::string_view text) {
  const auto first = text.find_first_not_of(" \t\r\n");
  if (first == std::string_view::npos) return {};
  const auto last = text.find_last_not_of(" \t\r\n");
  return std::string(text.substr(first, last - first + 1));
}

bool equalsNoCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
           return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
         });
}

TransportError errorOf(CURLcode code) {
  switch (code) {
    case CURLE_OK:
      return TransportError::none;
    case CURLE_OPERATION_TIMEDOUT:
      return TransportError::timeout;
    case CURLE_COULDNT_CONNECT:
    case CURLE_COULDNT_RESOLVE_HOST:
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_GOT_NOTHING:
    case CURLE_SSL_CONNECT_ERROR:
      return TransportError::connection;
    default:
      return TransportError::other;
  }
}

// Host and path of a URL, for cookie matching; empty when the URL does not parse.
std::pair<std::string, std::string> hostAndPath(const std::string& url) {
  std::pair<std::string, std::string> out;
  CURLU* u = curl_url();
  if (u == nullptr) return out;
  if (curl_url_set(u, CURLUPART_URL, url.c_str(), 0) == CURLUE_OK) {
    char* part = nullptr;
    if (curl_url_get(u, CURLUPART_HOST, &part, 0) == CURLUE_OK) {
      out.first = part;
      curl_free(part);
    }
    if (curl_url_get(u, CURLUPART_PATH, &part, 0) == CURLUE_OK) {
      out.second = part;
      curl_free(part);
    }
  }
  curl_url_cleanup(u);
  if (out.second.empty()) out.second = "/";
  return out;
}

// Completions gathered during one pass of the worker, posted together so that the
// interface thread wakes once for several finished transfers.
struct Outbox {
  std::vector<std::pair<std::shared_ptr<MainLoop>, MainLoop::Task>> tasks;

  void flush() {
    std::size_t i = 0;
    while (i < tasks.size()) {
      const auto loop = tasks[i].first;
      std::vector<MainLoop::Task> batch;
      while (i < tasks.size() && tasks[i].first == loop) batch.push_back(std::move(tasks[i++].second));
      if (batch.size() == 1) {
        loop->post(std::move(batch.front()));
      } else {
        loop->post([batch = std::move(batch)] {
          for (const auto& task : batch) task();
        });
      }
    }
    tasks.clear();
  }
};

struct Transfer {
  TransferId id = 0;
  Outbox* outbox = nullptr;  // set while the worker owns the transfer
  HttpRequest request;
  HttpTransport::Completion completion;
  std::shared_ptr<MainLoop> loop;
  std::shared_ptr<CookieStore> cookies;
  bool located = false;
  std::string host;
  std::string path;

  CURL* easy = nullptr;
  curl_slist* headerList = nullptr;
  HttpResponse response;
  std::FILE* file = nullptr;
  bool fileDecided = false;
  std::int64_t existingBytes = 0;  // size of the partial file when the transfer began
  std::int64_t fileBase = 0;       // bytes of the file before this answer's body
  std::int64_t lastReported = -1;
  char errorBuffer[CURL_ERROR_SIZE] = {};

  // Handles of finished transfers, reset and reused (worker thread only).
  std::vector<CURL*>* spareHandles = nullptr;

  ~Transfer() {
    if (file != nullptr) std::fclose(file);
    if (easy != nullptr) {
      if (spareHandles != nullptr && spareHandles->size() < 8) {
        curl_easy_reset(easy);
        spareHandles->push_back(easy);
      } else {
        curl_easy_cleanup(easy);
      }
    }
    if (headerList != nullptr) curl_slist_free_all(headerList);
  }

  void deliver(HttpResponse r) {
    if (!completion) return;
    if (loop) {
      MainLoop::Task task = [c = std::move(completion), r = std::move(r)]() mutable { c(std::move(r)); };
      if (outbox != nullptr) {
        outbox->tasks.emplace_back(loop, std::move(task));
      } else {
        loop->post(std::move(task));
      }
    } else {
      completion(std::move(r));
    }
    completion = nullptr;
  }

  long currentStatus() const {
    long status = 0;
    curl_easy_getinfo(easy, CURLINFO_RESPONSE_CODE, &status);
    return status;
  }

  // Host and path are only needed for cookies; parsing waits until then.
  void locate() {
    if (located) return;
    std::tie(host, path) = hostAndPath(request.url);
    located = true;
  }

  void storeCookie(const std::string& value) {
    if (!cookies) return;
    locate();
    Cookie cookie;
    cookie.domain = host;
    bool expired = false;
    std::size_t start = 0;
    bool first = true;
    while (start <= value.size()) {
      const auto end = std::min(value.find(';', start), value.size());
      const std::string item = trim(std::string_view(value).substr(start, end - start));
      const auto eq = item.find('=');
      const std::string key = trim(item.substr(0, eq));
      const std::string val = eq == std::string::npos ? std::string() : trim(item.substr(eq + 1));
      if (first) {
        if (eq == std::string::npos || key.empty()) return;  // not a cookie
        cookie.name = key;
        cookie.value = val;
        first = false;
      } else if (equalsNoCase(key, "domain") && !val.empty()) {
        cookie.domain = val.front() == '.' ? val.substr(1) : val;
      } else if (equalsNoCase(key, "path") && !val.empty()) {
        cookie.path = val;
      } else if (equalsNoCase(key, "max-age")) {
        expired = !val.empty() && (val.front() == '-' || val == "0");
      }
      start = end + 1;
    }
    if (expired) {
      cookies->deleteCookie(cookie);
    } else {
      cookies->setCookie(cookie);
    }
  }

  static size_t onHeader(char* data, size_t size, size_t count, void* self) {
    auto* t = static_cast<Transfer*>(self);
    const std::string_view line(data, size * count);
    if (line.starts_with("HTTP/")) {
      // A new response (after 100-continue or a redirect): only the last one's fields count.
      t->response.headers.clear();
    } else if (const auto colon = line.find(':'); colon != std::string_view::npos) {
      std::string name = trim(line.substr(0, colon));
      std::string value = trim(line.substr(colon + 1));
      if (equalsNoCase(name, "set-cookie")) t->storeCookie(value);
      t->response.headers.emplace_back(std::move(name), std::move(value));
    }
    return size * count;
  }

  // Decides where a download's body goes once the status is known.
  bool openDownload() {
    fileDecided = true;
    const long status = currentStatus();
    if (status < 200 || status > 299) return true;  // error bodies stay in the response
    const bool append = status == 206 && existingBytes > 0;
    std::error_code ec;
    std::filesystem::create_directories(std::filesystem::path(request.downloadPath).parent_path(), ec);
    file = std::fopen(request.downloadPath.c_str(), append ? "ab" : "wb");
    fileBase = append ? existingBytes : 0;
    return file != nullptr;
  }

  static size_t onBody(char* data, size_t size, size_t count, void* self) {
    auto* t = static_cast<Transfer*>(self);
    const size_t bytes = size * count;
    if (!t->request.downloadPath.empty()) {
      if (!t->fileDecided && !t->openDownload()) return CURL_WRITEFUNC_ERROR;
      if (t->file != nullptr) return std::fwrite(data, 1, bytes, t->file);
    }
    t->response.body.append(data, bytes);
    return bytes;
  }

  static int onProgress(void* self, curl_off_t dltotal, curl_off_t dlnow, curl_off_t, curl_off_t) {
    auto* t = static_cast<Transfer*>(self);
    if (t->file == nullptr || !t->request.progress || !t->loop) return 0;
    const std::int64_t received = t->fileBase + dlnow;
    if (received == t->lastReported) return 0;
    t->lastReported = received;
    const std::int64_t expected = dltotal > 0 ? t->fileBase + dltotal : 0;
    t->loop->post([p = t->request.progress, received, expected] { p(received, expected); });
    return 0;
  }

  bool setUp() {
    if (spareHandles != nullptr && !spareHandles->empty()) {
      easy = spareHandles->back();
      spareHandles->pop_back();
    } else {
      easy = curl_easy_init();
    }
    if (easy == nullptr) return false;
    const HttpRequest& r = request;
    curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    curl_easy_setopt(easy, CURLOPT_URL, r.url.c_str());
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // Redirects are followed, as the platforms' URL loaders do; only the last answer counts.
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, 10L);
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, errorBuffer);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, this);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Transfer::onBody);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, this);
    if (r.timeout.count() > 0) curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS, static_cast<long>(r.timeout.count()));

    if (r.method == "GET") {
      curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
    } else if (r.method == "HEAD") {
      curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
    } else {
      if (r.method == "POST") {
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
      } else {
        curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, r.method.c_str());
      }
      if (r.method == "POST" || !r.body.empty()) {
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(r.body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, r.body.data());
      }
    }

    headerList = curl_slist_append(headerList, "Expect:");
    if (!r.contentType.empty()) headerList = curl_slist_append(headerList, ("Content-Type: " + r.contentType).c_str());
    for (const auto& [name, value] : r.headers) {
      headerList = curl_slist_append(headerList, (name + ": " + value).c_str());
    }
    if (cookies) {
      locate();
      std::string line;
      for (const auto& c : cookies->cookiesFor(host, path)) {
        line += (line.empty() ? "" : "; ") + c.name + "=" + c.value;
      }
      if (!line.empty()) headerList = curl_slist_append(headerList, ("Cookie: " + line).c_str());
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headerList);

    if (r.basicAuth) {
      curl_easy_setopt(easy, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
      curl_easy_setopt(easy, CURLOPT_USERNAME, r.basicAuth->user.c_str());
      curl_easy_setopt(easy, CURLOPT_PASSWORD, r.basicAuth->password.c_str());
    }

    if (!r.downloadPath.empty()) {
      std::error_code ec;
      const auto size = std::filesystem::file_size(r.downloadPath, ec);
      existingBytes = (r.resume && !ec) ? static_cast<std::int64_t>(size) : 0;
      if (existingBytes > 0) curl_easy_setopt(easy, CURLOPT_RESUME_FROM_LARGE, static_cast<curl_off_t>(existingBytes));
      curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress);
      curl_easy_setopt(easy, CURLOPT_XFERINFODATA, this);
      curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
    }
    return true;
  }

  void finish(CURLcode code) {
    if (file != nullptr) {
      std::fclose(file);
      file = nullptr;
    }
    response.status = currentStatus();
    if (code != CURLE_OK) {
      response.error = errorOf(code);
      response.errorMessage = errorBuffer[0] != '\0' ? errorBuffer : curl_easy_strerror(code);
      response.status = 0;
    }
    deliver(std::move(response));
  }

  void cancelled() {
    HttpResponse r;
    r.error = TransportError::cancelled;
    r.errorMessage = "cancelled";
    deliver(std::move(r));
  }
};

void initCurlOnce() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

// Wakes the worker's curl_multi_poll; outlives the worker when a wake is still queued
// on a main loop, and then does nothing.
struct Waker {
  std::mutex mutex;
  CURLM* multi = nullptr;

  void wake() {
    std::lock_guard lock(mutex);
    if (multi != nullptr) curl_multi_wakeup(multi);
  }
  void detach() {
    std::lock_guard lock(mutex);
    multi = nullptr;
  }
};

}  // namespace

class CurlTransport::Worker {
 public:
  Worker(std::shared_ptr<MainLoop> loop, std::shared_ptr<CookieStore> cookies, int maxConcurrent)
      : loop_(std::move(loop)), cookies_(std::move(cookies)), maxConcurrent_(std::max(1, maxConcurrent)) {
    initCurlOnce();
    multi_ = curl_multi_init();
    waker_->multi = multi_;
    thread_ = std::thread([this] { runLoop(); });
  }

  ~Worker() {
    {
      std::lock_guard lock(mutex_);
      stopping_ = true;
    }
    curl_multi_wakeup(multi_);
    thread_.join();
    waker_->detach();
    for (auto& t : active_) curl_multi_remove_handle(multi_, t->easy);
    active_.clear();
    for (CURL* easy : spareHandles_) curl_easy_cleanup(easy);
    curl_multi_cleanup(multi_);
  }

  TransferId send(HttpRequest request, Completion completion) {
    auto t = std::make_unique<Transfer>();
    t->request = std::move(request);
    t->completion = std::move(completion);
    t->loop = loop_ ? loop_ : Env::current().mainLoop;
    t->cookies = cookies_ ? cookies_ : Env::current().cookies;
    TransferId id;
    bool wake;
    const auto loop = t->loop;
    {
      std::lock_guard lock(mutex_);
      id = t->id = nextId_++;
      pending_.push_back(std::move(t));
      // A worker that is not waiting will see the queue before it waits again.
      wake = std::exchange(waiting_, false);
    }
    if (wake) {
      if (loop) {
        // Sends made in one turn of the main loop start together: the worker is woken
        // once, after the turn, instead of picking them up one by one.
        loop->post([waker = waker_] { waker->wake(); });
      } else {
        waker_->wake();
      }
    }
    return id;
  }

  void cancel(TransferId id) {
    std::unique_ptr<Transfer> queued;
    {
      std::lock_guard lock(mutex_);
      auto it = std::find_if(pending_.begin(), pending_.end(), [id](const auto& t) { return t->id == id; });
      if (it != pending_.end()) {
        queued = std::move(*it);
        pending_.erase(it);
      } else {
        cancels_.insert(id);
      }
    }
    if (queued) {
      queued->cancelled();
    } else {
      curl_multi_wakeup(multi_);
    }
  }

 private:
  void runLoop() {
    for (;;) {
      std::set<TransferId> cancels;
      std::vector<std::unique_ptr<Transfer>> starting;
      {
        std::lock_guard lock(mutex_);
        if (stopping_) return;
        cancels.swap(cancels_);
        while (!pending_.empty() && active_.size() + starting.size() < static_cast<size_t>(maxConcurrent_)) {
          starting.push_back(std::move(pending_.front()));
          pending_.pop_front();
        }
      }
      for (auto it = active_.begin(); it != active_.end();) {
        if (cancels.contains((*it)->id)) {
          curl_multi_remove_handle(multi_, (*it)->easy);
          (*it)->cancelled();
          it = active_.erase(it);
          outbox_.flush();
        } else {
          ++it;
        }
      }
      for (auto& t : starting) {
        t->outbox = &outbox_;
        t->spareHandles = &spareHandles_;
        if (!t->setUp()) {
          t->finish(CURLE_FAILED_INIT);
          continue;
        }
        curl_multi_add_handle(multi_, t->easy);
        active_.push_back(std::move(t));
      }
      int running = 0;
      curl_multi_perform(multi_, &running);
      int left = 0;
      while (CURLMsg* msg = curl_multi_info_read(multi_, &left)) {
        if (msg->msg != CURLMSG_DONE) continue;
        const auto it = std::find_if(active_.begin(), active_.end(),
                                     [easy = msg->easy_handle](const auto& t) { return t->easy == easy; });
        if (it == active_.end()) continue;
        const CURLcode code = msg->data.result;
        curl_multi_remove_handle(multi_, (*it)->easy);
        (*it)->finish(code);
        active_.erase(it);
      }
      outbox_.flush();
      {
        std::lock_guard lock(mutex_);
        // More queued work can start now that slots have freed.
        if (stopping_) return;
        if (!pending_.empty() && active_.size() < static_cast<size_t>(maxConcurrent_)) continue;
        if (!cancels_.empty()) continue;
        waiting_ = true;
      }
      curl_multi_poll(multi_, nullptr, 0, 1000, nullptr);
      {
        std::lock_guard lock(mutex_);
        waiting_ = false;
      }
    }
  }

  std::shared_ptr<MainLoop> loop_;
  std::shared_ptr<CookieStore> cookies_;
  const int maxConcurrent_;
  CURLM* multi_ = nullptr;
  std::shared_ptr<Waker> waker_ = std::make_shared<Waker>();
  std::thread thread_;

  std::mutex mutex_;
  std::deque<std::unique_ptr<Transfer>> pending_;
  std::set<TransferId> cancels_;
  bool stopping_ = false;
  bool waiting_ = false;  // the worker is in (or about to enter) curl_multi_poll
  TransferId nextId_ = 1;

  std::vector<std::unique_ptr<Transfer>> active_;  // worker thread only
  Outbox outbox_;                                  // worker thread only
  std::vector<CURL*> spareHandles_;                // worker thread only
};

CurlTransport::CurlTransport(std::shared_ptr<MainLoop> loop, std::shared_ptr<CookieStore> cookies, int maxConcurrent)
    : worker_(std::make_unique<Worker>(std::move(loop), std::move(cookies), maxConcurrent)) {}

CurlTransport::~CurlTransport() = default;

TransferId CurlTransport::send(HttpRequest request, Completion completion) {
  return worker_->send(std::move(request), std::move(completion));
}

void CurlTransport::cancel(TransferId id) { worker_->cancel(id); }

}  // namespace qmv

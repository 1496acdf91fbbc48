#include "platform/linux/detail/curl_transfer.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <mutex>
#include <string_view>

#include "platform/linux/curl_cookie_store.h"

namespace qmv::curl_detail {
namespace {

constexpr std::size_t kMaxSpareHandles = 8;

// The header list of a request that sends a body but no fields of its own (only turning
// off curl's "Expect: 100-continue"): shared by every transfer, as curl only reads it.
curl_slist* expectOnlyList() {
  static char field[] = "Expect:";
  static curl_slist list{field, nullptr};
  return &list;
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
    case CURLE_FILESIZE_EXCEEDED:
      return TransportError::tooLarge;
    default:
      return TransportError::other;
  }
}

// Whether a variable curl may take a proxy from is set: any "*_proxy", in either case
// (curl itself ignores some of them, such as HTTP_PROXY, and still decides for those).
bool environmentNamesProxy() {
  constexpr std::string_view kSuffix = "_proxy";
  for (char** entry = environ; *entry != nullptr; ++entry) {
    const std::string_view variable(*entry);
    const std::string_view name = variable.substr(0, variable.find('='));
    if (name.size() >= kSuffix.size() &&
        std::equal(kSuffix.begin(), kSuffix.end(), name.end() - static_cast<std::ptrdiff_t>(kSuffix.size()),
                   [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); })) {
      return true;
    }
  }
  return false;
}

}  // namespace

void initCurlOnce() {
  static std::once_flag once;
  std::call_once(once, [] { curl_global_init(CURL_GLOBAL_DEFAULT); });
}

void Outbox::flush() {
  if (letters.empty()) return;
  if (inPlace) {
    // Completions may send, cancel or flush again: they run from a list of their own,
    // whose storage comes back for the next pass.
    std::vector<Letter> ready;
    ready.swap(letters);
    for (Letter& letter : ready) letter.completion(std::move(letter.response));
    ready.clear();
    if (letters.empty()) letters.swap(ready);
    return;
  }
  std::size_t i = 0;
  while (i < letters.size()) {
    // One task per run of letters to the same loop, delivering them in order.
    std::size_t end = i + 1;
    while (end < letters.size() && letters[end].loop == letters[i].loop) ++end;
    const std::shared_ptr<MainLoop> loop = letters[i].loop;
    // A task left unrun in its loop's queue (a loop stopped for good) must not keep that
    // loop alive: the letters go without it.
    for (std::size_t k = i; k < end; ++k) letters[k].loop.reset();
    if (end - i == 1) {
      loop->post([letter = std::move(letters[i])]() mutable { letter.completion(std::move(letter.response)); });
    } else {
      std::vector<Letter> batch(std::make_move_iterator(letters.begin() + static_cast<std::ptrdiff_t>(i)),
                                std::make_move_iterator(letters.begin() + static_cast<std::ptrdiff_t>(end)));
      loop->post([batch = std::move(batch)]() mutable {
        for (auto& letter : batch) letter.completion(std::move(letter.response));
      });
    }
    i = end;
  }
  letters.clear();
}

EasyHandle::~EasyHandle() {
  if (easy != nullptr) curl_easy_cleanup(easy);
  if (parsedUrl != nullptr) curl_url_cleanup(parsedUrl);
}

void EasyHandle::setUrl(const std::string& text) {
  if (parsedUrl == nullptr) parsedUrl = curl_url();
  if (parsedUrl != nullptr && curl_url_set(parsedUrl, CURLUPART_URL, text.c_str(), 0) == CURLUE_OK) {
    curl_easy_setopt(easy, CURLOPT_CURLU, parsedUrl);
  } else {
    curl_easy_setopt(easy, CURLOPT_CURLU, nullptr);
    curl_easy_setopt(easy, CURLOPT_URL, text.c_str());
  }
}

Transfer::~Transfer() {
  if (file_ != nullptr) std::fclose(file_);
  if (handle_) {
    handle_->transfer = nullptr;
    if (spares_ != nullptr && spares_->size() < kMaxSpareHandles) {
      if (plain_) {
        // The next plain GET sets everything else again; only a list freed with this
        // transfer must not stay on the handle.
        if (headerList_ != nullptr) {
          curl_easy_setopt(handle_->easy, CURLOPT_HTTPHEADER, nullptr);
          handle_->noHeaderList = true;
        }
      } else {
        resetHandle();
      }
      handle_->holdsPlainOptions = plain_;
      spares_->push_back(std::move(handle_));
    } else {
      // The handle goes before the cookie engine it holds, released with this transfer.
      handle_.reset();
    }
  }
  if (headerList_ != nullptr) curl_slist_free_all(headerList_);
  if (form_ != nullptr) curl_mime_free(form_);
}

void Transfer::resetHandle() {
  // A reset drops the list of cookie files without freeing it, so the list is emptied
  // first; that also unhooks the engine's jar from the handle, which keeps its share.
  curl_easy_setopt(handle_->easy, CURLOPT_COOKIEFILE, nullptr);
  curl_easy_reset(handle_->easy);
  handle_->cookieFileListed = false;
  handle_->holdsPlainOptions = false;
  handle_->noHeaderList = true;
  handle_->url.clear();
}

void Transfer::useCookies() {
  EasyHandle& handle = *handle_;
  CURL* easy = handle.easy;
  if (cookies) {
    if (handle.cookies != cookies || !handle.cookieFileListed) {
      // Attaching (again) hooks the engine's jar to the handle.
      curl_easy_setopt(easy, CURLOPT_SHARE, cookies->shareHandle());
      handle.cookies = cookies;
    }
    if (!handle.cookieFileListed) {
      // The empty file name turns the engine on; it keeps what the answers set and sends
      // what matches, redirects included.
      curl_easy_setopt(easy, CURLOPT_COOKIEFILE, "");
      handle.cookieFileListed = true;
    }
  } else if (handle.cookies) {
    // A listed file would give the handle a jar of its own.
    if (handle.cookieFileListed) curl_easy_setopt(easy, CURLOPT_COOKIEFILE, nullptr);
    curl_easy_setopt(easy, CURLOPT_SHARE, nullptr);
    handle.cookies = nullptr;
    handle.cookieFileListed = false;
  }
}

void Transfer::deliver(HttpResponse&& r, Outbox& outbox) {
  if (!completion) return;
  if (loop) {
    // In place, the loop is the driver's own and not needed again.
    outbox.letters.emplace_back(outbox.inPlace ? nullptr : loop, std::move(completion), std::move(r));
  } else {
    completion(std::move(r));
  }
  completion = nullptr;
}

long Transfer::currentStatus() const {
  long status = 0;
  if (handle_) curl_easy_getinfo(handle_->easy, CURLINFO_RESPONSE_CODE, &status);
  return status;
}

bool Transfer::exceedsLimit(std::size_t held, std::size_t bytes) {
  if (bytes <= request.maxResponseBytes && held <= request.maxResponseBytes - bytes) return false;
  tooLarge_ = true;
  return true;
}

size_t Transfer::onHeader(char* data, size_t size, size_t count, void* handle) {
  Transfer* t = static_cast<EasyHandle*>(handle)->transfer;
  if (t == nullptr) return 0;
  const std::string_view line(data, size * count);
  // Returning short of the count makes curl end the transfer.
  if (t->exceedsLimit(t->headerBytes_, line.size())) return 0;
  t->headerBytes_ += line.size();
  t->noteActivity();
  if (line.starts_with("HTTP/")) {
    // A new response (after 100-continue or a redirect): only the last one's fields count.
    t->response_.headers.clear();
  } else {
    t->response_.headers.appendLine(line);
  }
  return size * count;
}

// Decides where a download's body goes once the status is known.
bool Transfer::openDownload() {
  fileDecided_ = true;
  const long status = currentStatus();
  if (status < 200 || status > 299) return true;  // error bodies stay in the response
  const bool append = status == 206 && existingBytes_ > 0;
  std::error_code ec;
  std::filesystem::create_directories(std::filesystem::path(request.downloadPath).parent_path(), ec);
  file_ = std::fopen(request.downloadPath.c_str(), append ? "ab" : "wb");
  fileBase_ = append ? existingBytes_ : 0;
  return file_ != nullptr;
}

size_t Transfer::onBody(char* data, size_t size, size_t count, void* handle) {
  Transfer* t = static_cast<EasyHandle*>(handle)->transfer;
  if (t == nullptr) return 0;
  const size_t bytes = size * count;
  t->noteActivity();
  if (!t->request.downloadPath.empty()) {
    if (!t->fileDecided_ && !t->openDownload()) return CURL_WRITEFUNC_ERROR;
    if (t->file_ != nullptr) return std::fwrite(data, 1, bytes, t->file_);
  }
  if (t->exceedsLimit(t->response_.body.size(), bytes)) return 0;
  t->response_.body.append(data, bytes);
  return bytes;
}

int Transfer::onProgress(void* handle, curl_off_t dltotal, curl_off_t dlnow, curl_off_t, curl_off_t ulnow) {
  Transfer* t = static_cast<EasyHandle*>(handle)->transfer;
  if (t == nullptr) return 0;
  // Received bytes are seen as they arrive; an upload's are seen only here.
  if (const curl_off_t moved = dlnow + ulnow; moved != t->lastMoved_) {
    t->lastMoved_ = moved;
    t->noteActivity();
  }
  if (t->file_ == nullptr || !t->request.progress || !t->loop) return 0;
  const std::int64_t received = t->fileBase_ + dlnow;
  if (received == t->lastReported_) return 0;
  t->lastReported_ = received;
  const std::int64_t expected = dltotal > 0 ? t->fileBase_ + dltotal : 0;
  t->loop->post([p = t->request.progress, received, expected] { p(received, expected); });
  return 0;
}

std::optional<Clock::time_point> Transfer::idleDeadline() const {
  if (request.timeout.count() <= 0) return std::nullopt;
  return lastActivity_ + request.timeout;
}

bool Transfer::setUp(EasyHandles* spares, const Clock::time_point* now) {
  const HttpRequest& r = request;
  now_ = now;
  lastActivity_ = *now;
  const bool get = r.method == "GET";
  const bool head = !get && r.method == "HEAD";
  plain_ = get && !r.basicAuth && r.downloadPath.empty() && r.body.empty() && r.timeout.count() > 0;
  spares_ = spares;
  if (spares_ != nullptr && !spares_->empty()) {
    handle_ = std::move(spares_->back());
    spares_->pop_back();
    // A plain GET's options would outlive it into a transfer that does not set them all;
    // the next plain GET only changes what differs.
    if (handle_->holdsPlainOptions && !plain_) resetHandle();
    keptOptions_ = handle_->holdsPlainOptions;
  } else {
    handle_ = std::make_unique<EasyHandle>();
    handle_->easy = curl_easy_init();
    if (handle_->easy == nullptr) {
      handle_.reset();
      return false;
    }
  }
  EasyHandle& handle = *handle_;
  handle.transfer = this;
  handle.errorBuffer[0] = '\0';
  CURL* easy = handle.easy;
  const bool kept = keptOptions_;
  // A kept handle still holds its URL, as a raw handle sent again does.
  if (!kept || handle.url != r.url) {
    handle.setUrl(r.url);
    if (plain_) handle.url.assign(r.url);
  }
  if (!kept) {
    curl_easy_setopt(easy, CURLOPT_ERRORBUFFER, handle.errorBuffer);
    curl_easy_setopt(easy, CURLOPT_HEADERDATA, &handle);
    curl_easy_setopt(easy, CURLOPT_WRITEDATA, &handle);
    curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
    // Redirects are followed, as the platforms' URL loaders do; only the last answer counts.
    curl_easy_setopt(easy, CURLOPT_FOLLOWLOCATION, 1L);
    curl_easy_setopt(easy, CURLOPT_MAXREDIRS, 10L);
    curl_easy_setopt(easy, CURLOPT_HEADERFUNCTION, &Transfer::onHeader);
    curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &Transfer::onBody);
  }
  if (r.timeout.count() > 0) {
    // The timeout is an idle limit, as the platforms' URL loaders have it: a slow upload
    // or download that keeps moving runs on, a silent peer fails (the queue ends it).
    const long timeoutMs = static_cast<long>(r.timeout.count());
    if (!kept || handle.connectTimeoutMs != timeoutMs) {
      curl_easy_setopt(easy, CURLOPT_CONNECTTIMEOUT_MS, timeoutMs);
      handle.connectTimeoutMs = timeoutMs;
    }
  }
  // An announced length above the limit is refused before any of the body arrives.
  if (const auto limit = static_cast<curl_off_t>(r.maxResponseBytes);
      r.downloadPath.empty() && (!kept || handle.maxFileSize != limit)) {
    curl_easy_setopt(easy, CURLOPT_MAXFILESIZE_LARGE, limit);
    handle.maxFileSize = limit;
  }

  if (get) {
    if (!kept) curl_easy_setopt(easy, CURLOPT_HTTPGET, 1L);
  } else if (head) {
    curl_easy_setopt(easy, CURLOPT_NOBODY, 1L);
  } else {
    if (r.method == "POST") {
      curl_easy_setopt(easy, CURLOPT_POST, 1L);
    } else {
      curl_easy_setopt(easy, CURLOPT_CUSTOMREQUEST, r.method.c_str());
    }
    if (!r.form.empty()) {
      // curl writes the parts, their boundary and the Content-Type that names it.
      form_ = curl_mime_init(easy);
      if (form_ == nullptr) return false;
      for (const auto& part : r.form) {
        curl_mimepart* field = curl_mime_addpart(form_);
        if (field == nullptr || curl_mime_name(field, part.name.c_str()) != CURLE_OK ||
            curl_mime_data(field, part.data.data(), part.data.size()) != CURLE_OK ||
            (!part.fileName.empty() && curl_mime_filename(field, part.fileName.c_str()) != CURLE_OK) ||
            (!part.mimeType.empty() && curl_mime_type(field, part.mimeType.c_str()) != CURLE_OK)) {
          return false;
        }
      }
      curl_easy_setopt(easy, CURLOPT_MIMEPOST, form_);
    } else if (r.method == "POST" || !r.body.empty()) {
      curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(r.body.size()));
      curl_easy_setopt(easy, CURLOPT_POSTFIELDS, r.body.data());
    }
  }

  // Only a body can make curl add "Expect: 100-continue"; without one, a request with no
  // fields of its own needs no list at all, which curl would search for every field it
  // writes.
  const bool sendsBody = !get && !head && (r.method == "POST" || !r.body.empty() || !r.form.empty());
  if (r.contentType.empty() && r.headers.empty()) {
    if (!sendsBody) {
      if (!handle.noHeaderList) curl_easy_setopt(easy, CURLOPT_HTTPHEADER, nullptr);
      handle.noHeaderList = true;
    } else {
      curl_easy_setopt(easy, CURLOPT_HTTPHEADER, expectOnlyList());
      handle.noHeaderList = false;
    }
  } else {
    if (sendsBody) headerList_ = curl_slist_append(headerList_, "Expect:");
    // curl copies each field: one buffer serves them all.
    std::string field;
    if (!r.contentType.empty()) {
      field.assign("Content-Type: ").append(r.contentType);
      headerList_ = curl_slist_append(headerList_, field.c_str());
    }
    for (const auto& [name, value] : r.headers) {
      field.assign(name).append(": ").append(value);
      headerList_ = curl_slist_append(headerList_, field.c_str());
    }
    curl_easy_setopt(easy, CURLOPT_HTTPHEADER, headerList_);
    handle.noHeaderList = false;
  }
  useCookies();

  if (r.basicAuth) {
    curl_easy_setopt(easy, CURLOPT_HTTPAUTH, CURLAUTH_BASIC);
    curl_easy_setopt(easy, CURLOPT_USERNAME, r.basicAuth->user.c_str());
    curl_easy_setopt(easy, CURLOPT_PASSWORD, r.basicAuth->password.c_str());
  }

  if (!r.downloadPath.empty()) {
    std::error_code ec;
    const auto size = std::filesystem::file_size(r.downloadPath, ec);
    existingBytes_ = (r.resume && !ec) ? static_cast<std::int64_t>(size) : 0;
    if (existingBytes_ > 0) curl_easy_setopt(easy, CURLOPT_RESUME_FROM_LARGE, static_cast<curl_off_t>(existingBytes_));
  }
  // Progress is reported for downloads to a file, and it is what shows an upload moving.
  if (!r.downloadPath.empty() || !r.body.empty()) {
    curl_easy_setopt(easy, CURLOPT_XFERINFODATA, &handle);
    curl_easy_setopt(easy, CURLOPT_XFERINFOFUNCTION, &Transfer::onProgress);
    curl_easy_setopt(easy, CURLOPT_NOPROGRESS, 0L);
  }
  return true;
}

void Transfer::finish(CURLcode code, Outbox& outbox) {
  if (file_ != nullptr) {
    std::fclose(file_);
    file_ = nullptr;
  }
  response_.status = currentStatus();
  if (code != CURLE_OK) {
    response_.error = tooLarge_ ? TransportError::tooLarge : idleTimedOut_ ? TransportError::timeout : errorOf(code);
    response_.errorMessage = idleTimedOut_ ? "no data for " + std::to_string(request.timeout.count()) + " ms"
                             : handle_ && handle_->errorBuffer[0] != '\0' ? handle_->errorBuffer
                                                                          : curl_easy_strerror(code);
    if (response_.error == TransportError::tooLarge) {
      response_.errorMessage = "answer larger than " + std::to_string(request.maxResponseBytes) + " bytes";
      response_.body.clear();
      response_.body.shrink_to_fit();
    }
    response_.status = 0;
  }
  deliver(std::move(response_), outbox);
}

void Transfer::timedOut(Outbox& outbox) {
  idleTimedOut_ = true;
  finish(CURLE_OPERATION_TIMEDOUT, outbox);
}

void Transfer::cancelled(Outbox& outbox) {
  HttpResponse r;
  r.error = TransportError::cancelled;
  r.errorMessage = "cancelled";
  deliver(std::move(r), outbox);
}

TransferQueue::TransferQueue(CURLM* multi, int maxConcurrent, std::function<void(CURL*)> prepare, bool completeInPlace)
    : multi_(multi),
      maxConcurrent_(static_cast<std::size_t>(std::max(1, maxConcurrent))),
      prepare_(std::move(prepare)),
      proxiesOff_(!environmentNamesProxy()) {
  outbox_.inPlace = completeInPlace;
}

TransferQueue::~TransferQueue() {
  for (auto& t : active_) {
    curl_multi_remove_handle(multi_, t->easy());
  }
  active_.clear();  // before the spares, which the transfers hand their handles back to
  queued_.clear();
}

void TransferQueue::cancel(TransferId id) {
  const auto matches = [id](const auto& t) { return t->id == id; };
  if (auto it = std::find_if(queued_.begin(), queued_.end(), matches); it != queued_.end()) {
    (*it)->cancelled(outbox_);
    queued_.erase(it);
  } else if (auto run = std::find_if(active_.begin(), active_.end(), matches); run != active_.end()) {
    curl_multi_remove_handle(multi_, (*run)->easy());
    (*run)->cancelled(outbox_);
    active_.erase(run);
  }
}

void TransferQueue::startQueued() {
  while (hasStartable()) {
    auto t = std::move(queued_.front());
    queued_.pop_front();
    if (!t->setUp(&spares_, &now_)) {
      t->finish(CURLE_FAILED_INIT, outbox_);
      continue;
    }
    if (const auto due = t->idleDeadline(); due && (!startedDeadline_ || *due < *startedDeadline_)) {
      startedDeadline_ = due;
    }
    if (!t->keptOptions()) {
      if (proxiesOff_) {
        curl_easy_setopt(t->easy(), CURLOPT_PROXY, "");
        curl_easy_setopt(t->easy(), CURLOPT_NOPROXY, "");
      }
      if (prepare_) prepare_(t->easy());
    }
    if (curl_multi_add_handle(multi_, t->easy()) != CURLM_OK) {
      t->finish(CURLE_FAILED_INIT, outbox_);
      continue;
    }
    active_.push_back(std::move(t));
  }
}

std::optional<Clock::time_point> TransferQueue::endIdle() {
  std::optional<Clock::time_point> next;
  for (auto it = active_.begin(); it != active_.end();) {
    const auto due = (*it)->idleDeadline();
    if (due && *due <= now_) {
      curl_multi_remove_handle(multi_, (*it)->easy());
      (*it)->timedOut(outbox_);
      it = active_.erase(it);
      continue;
    }
    if (due && (!next || *due < *next)) next = due;
    ++it;
  }
  return next;
}

void TransferQueue::collectFinished() {
  int left = 0;
  while (CURLMsg* msg = curl_multi_info_read(multi_, &left)) {
    if (msg->msg != CURLMSG_DONE) continue;
    const auto it = std::find_if(active_.begin(), active_.end(),
                                 [easy = msg->easy_handle](const auto& t) { return t->easy() == easy; });
    if (it == active_.end()) continue;
    const CURLcode code = msg->data.result;
    curl_multi_remove_handle(multi_, (*it)->easy());
    (*it)->finish(code, outbox_);
    active_.erase(it);
  }
}

}  // namespace qmv::curl_detail

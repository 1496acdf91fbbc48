#pragma once
// Internals of the libcurl adapter shared by its two drivers (a worker thread, or the
// sockets of an Asio main loop): one transfer's easy handle, callbacks and response, and
// the queue that keeps at most N of them on a multi handle. Nothing outside
// platform/linux includes this.
#include <curl/curl.h>

#include <chrono>
#include <cstdio>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/http_transport.h"
#include "platform/main_loop.h"

namespace qmv {

class CurlCookieStore;

namespace curl_detail {

void initCurlOnce();

using Clock = std::chrono::steady_clock;

// Completions gathered during one pass of a driver, delivered once the pass is out of
// curl: posted together, so that the interface thread wakes once for several finished
// transfers, or run in place by a driver on that thread already.
struct Outbox {
  struct Letter {
    // A constructor of its own lets a letter be built in place in the list (clang 14
    // cannot emplace an aggregate from its members), not built and then moved there.
    Letter(std::shared_ptr<MainLoop> loop, HttpTransport::Completion&& completion, HttpResponse&& response)
        : loop(std::move(loop)), completion(std::move(completion)), response(std::move(response)) {}
    std::shared_ptr<MainLoop> loop;
    HttpTransport::Completion completion;
    HttpResponse response;
  };
  std::vector<Letter> letters;
  bool inPlace = false;
  // REQUIRES (in place): the driver outlives the call, as a completion may end it.
  void flush();
};

struct Transfer;

// An easy handle and what it carries from one transfer to the next. It stays at one
// address for its life (spares hold it by pointer), so curl's callbacks are given the
// handle once rather than each transfer. One that served a plain GET (see
// Transfer::plain_) goes back without a reset and still holds that GET's options.
struct EasyHandle {
  EasyHandle() = default;
  // Cleans up the curl handle before the cookie engine it holds and the URL it reads.
  ~EasyHandle();
  EasyHandle(const EasyHandle&) = delete;
  EasyHandle& operator=(const EasyHandle&) = delete;

  // Points the handle at `url`. curl would parse a URL given as text again at every
  // transfer and write it back out, which costs a small GET more than all its other
  // options; one given parsed is only copied. What the parser refuses goes as text, for
  // curl to refuse with its own message.
  void setUrl(const std::string& url);

  CURL* easy = nullptr;
  Transfer* transfer = nullptr;  // the one the callbacks report to; null between transfers
  char errorBuffer[CURL_ERROR_SIZE] = {};
  bool holdsPlainOptions = false;
  // The cookie engine the handle stays attached to between transfers (re-attaching takes
  // the share's lock twice), kept alive by the handle.
  std::shared_ptr<CurlCookieStore> cookies;
  // Whether the handle's list of cookie files names the engine's empty one, with the
  // engine's jar hooked to the handle. curl adds to that list at every setting and reads
  // every entry at the start of each transfer: it is set once, and a handle without an
  // engine has none (it would make a jar of its own).
  bool cookieFileListed = false;
  CURLU* parsedUrl = nullptr;  // the last URL set, parsed; kept for the next one
  // The options of the plain GET held that vary from one such GET to the next.
  std::string url;
  long connectTimeoutMs = 0;
  curl_off_t maxFileSize = 0;
  bool noHeaderList = true;  // curl's default, as after a reset
};

using EasyHandles = std::vector<std::unique_ptr<EasyHandle>>;

struct Transfer {
  TransferId id = 0;
  HttpRequest request;
  HttpTransport::Completion completion;
  std::shared_ptr<MainLoop> loop;  // null: the completion runs on the driver's thread
  // The cookie engine the transfer's handle shares; null: no cookies kept or sent.
  std::shared_ptr<CurlCookieStore> cookies;

  Transfer(TransferId id, HttpRequest&& request, HttpTransport::Completion&& completion, std::shared_ptr<MainLoop> loop,
           std::shared_ptr<CurlCookieStore> cookies)
      : id(id),
        request(std::move(request)),
        completion(std::move(completion)),
        loop(std::move(loop)),
        cookies(std::move(cookies)),
        response_(std::move(this->request.spare)) {
    response_.clear();
  }
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;
  ~Transfer();

  // Takes a handle from `spares` (or a new one) and sets every option of the request.
  // `now` is the driver's clock for the pass, read when bytes move; it outlives the
  // transfer. False when libcurl could not give a handle.
  bool setUp(EasyHandles* spares, const Clock::time_point* now);
  CURL* easy() const { return handle_ ? handle_->easy : nullptr; }
  // Whether the handle came with a plain GET's options, which this one keeps (the
  // driver's own options included).
  bool keptOptions() const { return keptOptions_; }

  // When the transfer will have been silent for its timeout; none without a timeout.
  std::optional<Clock::time_point> idleDeadline() const;

  // Delivers the outcome through `outbox`; each runs once, and later calls do nothing.
  void finish(CURLcode code, Outbox& outbox);
  void cancelled(Outbox& outbox);
  // Ends the transfer as timed out; the driver has taken it off the multi handle.
  void timedOut(Outbox& outbox);

 private:
  void deliver(HttpResponse&& response, Outbox& outbox);
  // Back to curl's defaults, with no cookie file listed.
  void resetHandle();
  // Attaches the handle to the transfer's cookie engine, or detaches it when there is none.
  void useCookies();
  long currentStatus() const;
  bool openDownload();
  // Whether `bytes` more of headers or in-memory body would pass the request's limit;
  // marks the transfer too large when they would.
  bool exceedsLimit(std::size_t held, std::size_t bytes);
  void noteActivity() { lastActivity_ = *now_; }
  static size_t onHeader(char* data, size_t size, size_t count, void* handle);
  static size_t onBody(char* data, size_t size, size_t count, void* handle);
  static int onProgress(void* handle, curl_off_t dltotal, curl_off_t dlnow, curl_off_t, curl_off_t);

  std::unique_ptr<EasyHandle> handle_;
  EasyHandles* spares_ = nullptr;  // where the handle goes back when done
  // A GET with a timeout, neither authorised, nor downloaded to a file, nor given a body
  // (unsent, but it would want progress reports): it sets the same options as every
  // other such GET, only with its own values, so a handle can pass from one to the next
  // without curl_easy_reset (which costs a small request more than all its other options
  // together). Any other transfer gets a reset handle.
  bool plain_ = false;
  bool keptOptions_ = false;
  curl_slist* headerList_ = nullptr;  // the transfer's own list; null: none, or the shared one
  curl_mime* form_ = nullptr;         // a multipart body, freed once the handle lets go of it
  HttpResponse response_;  // fills the buffers of the request's spare
  std::FILE* file_ = nullptr;
  bool fileDecided_ = false;
  std::int64_t existingBytes_ = 0;  // size of the partial file when the transfer began
  std::int64_t fileBase_ = 0;       // bytes of the file before this answer's body
  std::int64_t lastReported_ = -1;
  std::size_t headerBytes_ = 0;
  bool tooLarge_ = false;
  const Clock::time_point* now_ = nullptr;
  curl_off_t lastMoved_ = 0;  // bytes sent plus received, as the progress callback last saw them
  Clock::time_point lastActivity_;
  bool idleTimedOut_ = false;
};

// The transfers of one multi handle: queued ones wait in order until one of the
// `maxConcurrent` slots is free. Used from the driver's thread only.
//
// Request timeouts are idle limits, kept here rather than by curl: received bytes mark a
// transfer active as they arrive (and an upload's progress as curl reports it), and the
// driver ends those silent for their timeout. A curl timer or progress callback per
// transfer would cost every small request; here a driver needs one timer in all.
class TransferQueue {
 public:
  // `prepare`, when given, sets a driver's own options on each handle before it starts
  // (not again on one that kept them, see Transfer::keptOptions). `completeInPlace`: the
  // driver runs on the transfers' main loop, and flush() runs their completions itself.
  // The environment's proxy variables are read here, once (see proxiesOff_).
  TransferQueue(CURLM* multi, int maxConcurrent, std::function<void(CURL*)> prepare = nullptr,
                bool completeInPlace = false);
  // Drops every transfer without completing it.
  ~TransferQueue();
  TransferQueue(const TransferQueue&) = delete;
  TransferQueue& operator=(const TransferQueue&) = delete;

  // Reads the clock for the pass that follows: transfers started and bytes received in
  // it take this time. Called before each call into curl that may move bytes.
  void tick() { now_ = Clock::now(); }
  Clock::time_point now() const { return now_; }

  void push(std::unique_ptr<Transfer> transfer) { queued_.push_back(std::move(transfer)); }
  // Completes a queued or running transfer as cancelled; unknown ids are ignored.
  void cancel(TransferId id);
  // Puts queued transfers on the multi handle while slots are free.
  void startQueued();
  // Completes the transfers the multi handle reports done.
  void collectFinished();
  // Completes as timed out the running transfers silent for their timeout (by the last
  // tick), and tells when the next of the others may be.
  std::optional<Clock::time_point> endIdle();
  // The earliest idle deadline of the transfers started since the last call, so that a
  // driver can make sure to look by then.
  std::optional<Clock::time_point> takeStartedDeadline() { return std::exchange(startedDeadline_, std::nullopt); }
  // Delivers the completions gathered since the last flush.
  void flush() { outbox_.flush(); }

  bool hasStartable() const { return !queued_.empty() && active_.size() < maxConcurrent_; }

 private:
  CURLM* multi_;
  const std::size_t maxConcurrent_;
  std::function<void(CURL*)> prepare_;
  // No proxy variable was set when the queue was made: its handles are told so, and curl
  // stops looking them up in the environment at every transfer.
  bool proxiesOff_ = false;
  std::deque<std::unique_ptr<Transfer>> queued_;
  std::vector<std::unique_ptr<Transfer>> active_;
  EasyHandles spares_;
  Outbox outbox_;
  Clock::time_point now_ = Clock::now();
  std::optional<Clock::time_point> startedDeadline_;
};

}  // namespace curl_detail
}  // namespace qmv

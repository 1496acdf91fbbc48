#include "apps/sandbox/sandbox_server.h"

#include <httplib.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstdio>
#include <fstream>
#include <optional>
#include <thread>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "apps/sandbox/art_routes.h"
#include "apps/sandbox/artwork.h"
#include "apps/sandbox/demo_data.h"
#include "apps/sandbox/demo_pictures.h"
#include "apps/sandbox/endpoint_table.h"
#include "apps/sandbox/fair_lock.h"
#include "apps/sandbox/guarded_http_server.h"
#include "apps/sandbox/login_throttle.h"
#include "apps/sandbox/map_tiles.h"
#include "apps/sandbox/object_handlers.h"
#include "apps/sandbox/order_payment.h"
#include "apps/sandbox/page_handlers.h"
#include "apps/sandbox/parameter_rules.h"
#include "apps/sandbox/payment_key.h"
#include "apps/sandbox/peer_address.h"
#include "apps/sandbox/sandbox_records.h"
#include "apps/sandbox/sandbox_store.h"
#include "apps/sandbox/sandbox_texts.h"
#include "apps/sandbox/sandbox_util.h"
#include "apps/sandbox/user_names.h"
#include "core/common/log.h"
#include "core/common/resource_directory.h"

namespace qmv::sandbox {
namespace {

constexpr size_t kMaxPayload = 8 * 1024 * 1024;
// Answers from this size on are followed by malloc_trim (see serve).
constexpr size_t kTrimAfterBytes = 256 * 1024;

// Takes the reply's data rather than copying it: a whole table's answer is large.
std::string envelope(Reply&& reply) {
  if (reply.succeeded() && !reply.dataText.empty()) {
    // The text the tree below gives, put around "data" as the handler wrote it: in place
    // when the handler left room, so that the answer is not held twice.
    std::string& text = reply.dataText;
    text.insert(0, "{\"success\":" + dumpJson(reply.code) + ",\"message\":" + dumpJson(reply.message) + ",\"data\":");
    text.push_back('}');
    return std::move(text);
  }
  Json body = Json::object();
  body["success"] = reply.code;
  body["message"] = reply.message;
  body["data"] = reply.succeeded() ? std::move(reply.data) : Json();
  return body.dump(-1, ' ', false, Json::error_handler_t::replace);
}

void readArguments(const httplib::Request& req, Call& call) {
  for (const auto& [key, value] : req.params) call.args.emplace(key, value);
  for (const auto& [key, part] : req.files) {
    if (part.filename.empty()) {
      call.args.emplace(key, part.content);
    } else {
      call.files.emplace(key, UploadedFile{part.filename, part.content_type, part.content});
    }
  }
}

// Saves every exchange in `dir` (see QMV_SANDBOX_RECORD in the header). Requests are
// rebuilt from what the library parsed: a multipart body comes back from its parts.
void record(const std::filesystem::path& dir, const httplib::Request& req, const httplib::Response& res) {
  static std::atomic<unsigned> counter{0};
  // The process as well: every run of the CLI embeds a sandbox of its own.
  const std::string n = std::to_string(::getpid()) + "-" + std::to_string(counter++);
  std::string raw = req.method + " " + req.target + " HTTP/1.1\r\n";
  for (const auto& [name, value] : req.headers) {
    if (name != "REMOTE_ADDR" && name != "REMOTE_PORT" && name != "LOCAL_ADDR" && name != "LOCAL_PORT") {
      raw += name + ": " + value + "\r\n";
    }
  }
  raw += "\r\n";
  if (req.is_multipart_form_data() && req.body.empty()) {
    const std::string type = req.get_header_value("Content-Type");
    const auto at = type.find("boundary=");
    const std::string boundary = at == std::string::npos ? std::string() : type.substr(at + 9);
    for (const auto& [name, part] : req.files) {
      raw += "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"";
      if (!part.filename.empty()) raw += "; filename=\"" + part.filename + "\"";
      raw += "\r\n";
      if (!part.content_type.empty()) raw += "Content-Type: " + part.content_type + "\r\n";
      raw += "\r\n" + part.content + "\r\n";
    }
    raw += "--" + boundary + "--\r\n";
  } else {
    raw += req.body;
  }
  const bool api = req.path.rfind("/qmv/app/v3/", 0) == 0;
  std::ofstream(dir / ("request-" + n + ".http"), std::ios::binary) << raw;
  std::ofstream(dir / ("answer-" + n + (api ? ".json" : ".body")), std::ios::binary) << res.body;
}

}  // namespace

struct SandboxServer::Impl {
  SandboxOptions options;
  std::unique_ptr<SandboxStore> db;
  EndpointTable table;
  std::unique_ptr<GuardedHttpServer> http;
  std::thread thread;
  int port = 0;
  std::string paymentKey;
  Endpoint completion;
  std::unique_ptr<LoginThrottle> throttle;
  std::shared_ptr<const TileMap> tiles;
  // Requests take the store in the order they arrive (see FairLock).
  FairLock turns;

  std::string root() const { return "http://" + options.host + ":" + std::to_string(port); }

  // The member of an unexpired session, or null. REQUIRES: inside a transaction.
  Json memberOfSession(const std::string& sessionId) {
    if (sessionId.empty()) return Json();
    const Json session = db->queryOne("SELECT member_id, created FROM sessions WHERE id = ?", {sessionId});
    if (!session.is_object() || nowSeconds() - session["created"].get<int64_t>() >= kSessionLifetimeSeconds) {
      return Json();
    }
    return memberById(*db, session["member_id"].get<int64_t>());
  }

  // The user name of the member signed in with `sessionId`, for the object store.
  std::optional<std::string> userNameOfSession(const std::string& sessionId) {
    std::optional<std::string> name;
    const Result<bool> looked = db->transact(false, [&] {
      const Json member = memberOfSession(sessionId);
      if (member.is_object() && member["user_name"].is_string()) name = member["user_name"].get<std::string>();
      return true;
    });
    if (!looked.ok()) {
      logLine("[sandbox] session lookup failed: " + looked.status().message());
      name.reset();
    }
    return name;
  }

  // The launch picture, and the portrait of a demo member who has not uploaded one of his own,
  // drawn the first time they are asked for.
  std::string drawMissingObject(const std::string& name) {
    if (name == "welcome.png") return drawWelcome();
    Json member;
    {
      std::lock_guard turn(turns);
      const Result<bool> read = db->transact(false, [&] {
        member = db->queryOne(
            "SELECT user_name, nick_name FROM members WHERE user_name || '.png' = ? AND num BETWEEN ? AND ? "
            "AND portrait IS NULL",
            {name, kDemoMemberNumber, kLastDemoMemberNumber});
        return true;
      });
      if (!read.ok() || !member.is_object()) return {};
    }
    return drawPortrait(member["user_name"].get<std::string>(), member["nick_name"].get<std::string>());
  }

  // Runs a handler inside one transaction and answers with its envelope.
  void serve(const httplib::Request& req, httplib::Response& res, const Endpoint& endpoint,
             const EndpointParameters& parameters) {
    Reply reply;
    std::vector<std::string> setCookies;
    const auto fail = [&](const std::string& why) {
      logLine("[sandbox] " + req.path + " failed: " + why);
      reply = Reply::refuse(kMsgServerError);
      setCookies.clear();
    };
    try {
      std::lock_guard turn(turns);
      const Result<bool> done = db->transact(endpoint.writes, [&] {
        Call call{*db, {}, {}, Json(), "", root(), options.demoSmsCode, {}, {}, false};
        call.peer = peerKey(req.remote_addr);
        call.throttle = throttle.get();
        readArguments(req, call);
        if (auto refusal = applyParameterRules(parameters, call)) {
          reply = std::move(*refusal);
          return false;
        }
        call.cookies = parseCookies(req.get_header_value("Cookie"));
        call.sessionId = call.arg("sessionId");
        if (endpoint.session != SessionRule::kNone) call.member = memberOfSession(call.sessionId);
        if (endpoint.session == SessionRule::kRequired && !call.member.is_object()) {
          reply = Reply{kSessionExpiredCode, kMsgSessionExpired, Json(), {}};
          return false;
        }
        reply = endpoint.handler(call);
        const bool commit = reply.succeeded() || call.keepWritesOnRefusal;
        if (commit) setCookies = std::move(call.setCookies);
        return commit;
      });
      if (!done.ok()) fail(done.status().message());
    } catch (const std::exception& error) {
      // Not a failure path: a guard against a bug, a row of the store's own read as the
      // wrong JSON type (the transaction is rolled back by then).
      fail(error.what());
    }
    for (const std::string& value : setCookies) res.set_header("Set-Cookie", value);
    // Moved in: set_content would copy the text, and a whole table's answer is large.
    res.set_content("", 0, "application/json; charset=utf-8");
    res.body = envelope(std::move(reply));
#ifdef __GLIBC__
    // A large answer (the whole area table) and the rows it was read from are freed by now
    // into this thread's arena. An embedded sandbox shares the client's process: returned
    // to the system, that memory is not added to the client's own at its busiest moment.
    if (res.body.size() >= kTrimAfterBytes) malloc_trim(0);
#endif
  }

  // Opens the home and its store and sets up the routes, once.
  Status prepare() {
    if (http) return {};
    std::error_code ec;
    std::filesystem::create_directories(options.home, ec);
    if (ec) return Status::ioError("cannot create " + options.home.string() + ": " + ec.message());
    std::string error;
    paymentKey = loadPaymentKey(options.home, &error);
    if (paymentKey.empty()) return Status::ioError(error);
    Result<std::unique_ptr<SandboxStore>> opened =
        SandboxStore::open(options.memoryStore ? std::filesystem::path(":memory:") : options.home / "sandbox.db");
    if (!opened.ok()) return opened.status();
    db = std::move(opened).value();
    if (options.pageCacheKiB > 0) {
      if (Status sized = db->executeScript("PRAGMA cache_size=" + std::to_string(-options.pageCacheKiB) + ";");
          !sized.ok()) {
        db.reset();
        return sized;
      }
    }
    const std::filesystem::path resources = options.resources.empty() ? defaultResourceDirectory() : options.resources;
    Status prepared = prepareDatabase(*db, resources / "area.db");
    tiles = std::make_shared<TileMap>(resources / "map.db");
    if (prepared.ok()) prepared = prepareUserNameKeys(*db);
    if (!prepared.ok()) {
      db.reset();
      return Status::ioError("cannot prepare the sandbox database: " + prepared.message(), prepared.libraryCode());
    }
    table = EndpointTable();
    registerAllHandlers(table);

    http = std::make_unique<GuardedHttpServer>(options.limits);
    http->set_payload_max_length(kMaxPayload);
    route();
    if (const char* dir = std::getenv("QMV_SANDBOX_RECORD"); dir != nullptr && *dir != '\0') {
      std::filesystem::create_directories(dir, ec);
      http->set_logger([path = std::filesystem::path(dir)](const httplib::Request& req, const httplib::Response& res) {
        record(path, req, res);
      });
    }
    return {};
  }

  void route() {
    auto api = [this](HttpMethod method) {
      return [this, method](const httplib::Request& req, httplib::Response& res) {
        const Endpoint* endpoint = table.find(req.matches[1].str());
        if (endpoint == nullptr) {
          res.status = 404;
          return;
        }
        if (endpoint->method != method) {
          res.status = 405;
          return;
        }
        serve(req, res, *endpoint, parametersOf(req.matches[1].str()));
      };
    };
    http->Get(R"(/qmv/app/v3/([^/]+))", api(HttpMethod::kGet));
    http->Post(R"(/qmv/app/v3/([^/]+))", api(HttpMethod::kPost));

    // Only the payment applications, which hold the home's payment key, may report a
    // payment: the member who prepared it knows its prepay id too.
    completion =
        Endpoint{HttpMethod::kPost, SessionRule::kNone, true, [this](Call& call) {
                   if (!completionSigned(paymentKey, call.arg("prepay_id"), call.arg("result"), call.arg("sign"))) {
                     return Reply::refuse(kMsgUnsignedPayment);
                   }
                   return completePayment(call);
                 }};
    http->Post("/sandbox/pay/complete", [this](const httplib::Request& req, httplib::Response& res) {
      serve(req, res, completion, parametersOf(kCompletionRoute));
    });

    // Pages greet the member whose session came in the "sessionId" cookie, so that a
    // client can see that its page host handed the session over.
    http->Get(R"(/static/(.+))", [this](const httplib::Request& req, httplib::Response& res) {
      Json member;
      const auto cookies = parseCookies(req.get_header_value("Cookie"));
      const auto session = cookies.find("sessionId");
      std::lock_guard turn(turns);
      const Result<bool> looked = db->transact(false, [&] {
        member = memberOfSession(session == cookies.end() ? std::string() : session->second);
        return true;
      });
      if (!looked.ok()) member = Json();
      const auto html = pageHtml(req.path, root(), member, req.get_param_value("inviteID"));
      if (!html) {
        res.status = 404;
        return;
      }
      res.set_content(*html, "text/html; charset=utf-8");
    });
    registerTileRoutes(*http, tiles);
    registerArtRoutes(*http, options.home / "oss" / "art", [this](const std::string& sql, const std::vector<Json>& params) {
      Json row;
      std::lock_guard turn(turns);
      const Result<bool> read = db->transact(false, [&] {
        row = db->queryOne(sql, params);
        return true;
      });
      return read.ok() ? row : Json();
    });
    http->Get(R"(/sandbox/portrait/([0-9]+)\.png)", [this](const httplib::Request& req, httplib::Response& res) {
      Json row;
      const Result<bool> read = db->transact(false, [&] {
        row = db->queryOne("SELECT portrait FROM members WHERE num = ? AND portrait IS NOT NULL", {req.matches[1].str()});
        return true;
      });
      if (!read.ok()) row = Json();
      if (!row.is_object() || !row["portrait"].is_string()) {
        res.status = 404;
        return;
      }
      res.set_content(row["portrait"].get<std::string>(), "image/png");
    });
    registerObjectRoutes(
        *http, options.home / "oss", [this](const std::string& sessionId) { return userNameOfSession(sessionId); },
        [this](const std::string& name) { return drawMissingObject(name); });
    http->set_exception_handler([](const httplib::Request&, httplib::Response& res, std::exception_ptr) {
      res.status = 200;
      res.set_content(envelope(Reply::refuse(kMsgServerError)), "application/json; charset=utf-8");
    });
  }
};

SandboxServer::SandboxServer(SandboxOptions options) : impl_(std::make_unique<Impl>()) {
  impl_->options = std::move(options);
  impl_->throttle = std::make_unique<LoginThrottle>(impl_->options.clock);
}

SandboxServer::~SandboxServer() { stop(); }

Status SandboxServer::start() {
  if (impl_->thread.joinable()) return {};
  if (Status prepared = impl_->prepare(); !prepared.ok()) return prepared;
  const int bound = impl_->http->bindTo(impl_->options.host, impl_->options.port);
  if (bound <= 0) {
    impl_->http.reset();
    impl_->db.reset();
    return Status::unavailable("cannot listen on " + impl_->options.host + ":" + std::to_string(impl_->options.port));
  }
  impl_->port = bound;
  impl_->thread = std::thread([http = impl_->http.get()] { http->listen_after_bind(); });
  for (int i = 0; i < 500 && !impl_->http->is_running(); ++i) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  logLine("[sandbox] serving " + baseUrl() + " from " + (impl_->options.home / "sandbox.db").string());
  return {};
}

void SandboxServer::stop() {
  if (!impl_ || !impl_->thread.joinable()) return;
  impl_->http->stop();
  impl_->thread.join();
  impl_->http.reset();
  impl_->db.reset();
  impl_->port = 0;
}

int SandboxServer::port() const { return impl_->port; }

std::string SandboxServer::baseUrl() const { return rootUrl() + "/qmv/app/v3/"; }

std::string SandboxServer::rootUrl() const { return impl_->root(); }

std::string SandboxServer::paymentKey() const { return impl_->paymentKey; }

Result<std::string> SandboxServer::answerRequest(std::string_view request) {
  if (Status prepared = impl_->prepare(); !prepared.ok()) return prepared;
  return impl_->http->answerInMemory(request);
}

Status SandboxServer::rememberState() {
  if (Status prepared = impl_->prepare(); !prepared.ok()) return prepared;
  return impl_->db->remember();
}

Status SandboxServer::returnToState() {
  if (!impl_->db) return Status::notFound("nothing remembered");
  if (Status restored = impl_->db->returnToRemembered(); !restored.ok()) return restored;
  impl_->throttle->clear();
  return {};
}

}  // namespace qmv::sandbox

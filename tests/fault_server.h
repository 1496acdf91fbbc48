#pragma once
// A hostile application server for end-to-end tests: every endpoint of the application
// path answers with one named fault, chosen by the first path segment, so that a client
// started with --server <url("garbage")> meets only garbage. Each fault is one named
// handler below; "member" is a well-behaved login for the tests that need a signed-in
// member in front of a fault of their own.
#include <httplib.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>

#include "core/common/json.h"
#include "platform/testing/loopback_server.h"

namespace qmv::testsupport {

class FaultServer {
 public:
  static constexpr const char* kPhone = "13800000000";
  // Bytes of the oversized answers: well above the client's default limit.
  static constexpr std::size_t kHugeBytes = std::size_t{24} << 20;
  static constexpr std::size_t kDeep = 60000;
  // A text that would retitle the terminal window, clear the screen, overwrite the line
  // and show the rest reversed behind invisible marks, if it reached a terminal as is.
  static std::string hostileText() {
    return std::string("\x1b]0;owned\x07\x1b[2J\rfake") + '\0' + "\xc2\x9b" "1m\u202Egnp\u200B\uFEFF";
  }

  FaultServer() {
    std::map<std::string, httplib::Server::Handler> handlers = {
        {"member", [](const auto& req, auto& res) { member(req, res); }},
        {"deep-data", [](const auto& req, auto& res) { deepData(req, res); }},
        {"deep-message", [](const auto& req, auto& res) { deepMessage(req, res); }},
        {"garbage", [](const auto& req, auto& res) { garbage(req, res); }},
        {"truncated", [](const auto& req, auto& res) { truncated(req, res); }},
        {"wrong-data", [](const auto& req, auto& res) { wrongData(req, res); }},
        {"huge", [](const auto& req, auto& res) { huge(req, res); }},
        {"endless", [this](const auto& req, auto& res) { endless(req, res); }},
        {"too-large", [](const auto& req, auto& res) { tooLarge(req, res); }},
        {"escapes", [](const auto& req, auto& res) { escapes(req, res); }},
        {"extreme", [](const auto& req, auto& res) { extreme(req, res); }},
        {"cookies", [](const auto& req, auto& res) { cookies(req, res); }},
        // A signed-in member, then every other endpoint answered with one envelope.
        {"expired", [](const auto& req, auto& res) { memberThen(req, res, R"({"success":"2","message":""})"); }},
        {"bare-refusal", [](const auto& req, auto& res) { memberThen(req, res, R"({"success":true})"); }},
        {"list-object",
         [](const auto& req, auto& res) {
           memberThen(req, res, R"({"success":"0","message":"","data":{"dataList":{"orderId":"O1"}}})");
         }},
        {"refund-noop", [](const auto& req, auto& res) { refundNoop(req, res); }},
        {"second-page-fails", [](const auto& req, auto& res) { secondPageFails(req, res); }},
        {"broken",
         [](const auto& req, auto& res) {
           memberThen(req, res, R"({"success":"1","message":"broken"})");
           if (endpoint(req) != "getUserLogin") res.status = 500;
         }},
    };
    // A login whose record names another phone, or none that is a phone.
    for (const auto& [fault, phone] : std::map<std::string, Json>{{"phone-other", "13999999999"},
                                                                  {"phone-null", nullptr},
                                                                  {"phone-list", Json::array({kPhone})},
                                                                  {"phone-empty", ""}}) {
      // A copy: clang 14 cannot capture a structured binding.
      handlers.emplace(fault, [phone = Json(phone)](const httplib::Request&, httplib::Response& res) {
        renamed(res, phone);
      });
    }
    const auto route = [handlers](const httplib::Request& req, httplib::Response& res) {
      const auto it = handlers.find(req.matches[1]);
      if (it == handlers.end()) {
        res.status = 404;
        return;
      }
      it->second(req, res);
    };
    const std::string pattern = R"(/([a-z0-9-]+)/qmv/app/v3/(\w+))";
    loopback_.server().Get(pattern, route);
    loopback_.server().Post(pattern, route);
    loopback_.start();
  }

  // The application base URL whose every endpoint answers with `fault`.
  std::string url(const std::string& fault) const { return loopback_.url("/" + fault + "/qmv/app/v3/"); }

 private:
  static std::string endpoint(const httplib::Request& req) { return req.matches[2]; }
  static void json(httplib::Response& res, const std::string& body) { res.set_content(body, "application/json"); }
  static std::string nested(std::size_t depth, const std::string& open, const std::string& close) {
    std::string text;
    for (std::size_t i = 0; i < depth; ++i) text += open;
    text += "1";
    for (std::size_t i = 0; i < depth; ++i) text += close;
    return text;
  }
  static Json memberRecord() {
    return Json{{"sessionId", "s-1"}, {"phone", kPhone},   {"userName", "hostile"}, {"nickName", "Hostile"},
                {"balance", "500"},   {"nowExp", "150"}, {"inviterID", "1"}};
  }

  static void member(const httplib::Request& req, httplib::Response& res) {
    if (endpoint(req) == "getUserLogin") {
      json(res, dumpJson(Json{{"success", "0"}, {"message", ""}, {"data", memberRecord()}}));
    } else {
      json(res, R"({"success":"1","message":"not here"})");
    }
  }
  static void memberThen(const httplib::Request& req, httplib::Response& res, const std::string& body) {
    if (endpoint(req) == "getUserLogin") return member(req, res);
    json(res, body);
  }
  // One order to be used, whose refund is accepted while the order stays as it was.
  static void refundNoop(const httplib::Request& req, httplib::Response& res) {
    if (endpoint(req) == "getMyPosts") {
      const bool first = req.get_param_value("page") == "1";
      json(res, std::string(R"({"success":"0","message":"","data":{"dataList":[)") +
                    (first ? R"({"orderId":"O1","orderName":"套餐","price":"10.00","number":"1","status":"1"})" : "") +
                    "]}}");
      return;
    }
    memberThen(req, res, R"({"success":"0","message":""})");
  }
  // One order and one store on page 1 of their lists; every page 2 fails.
  static void secondPageFails(const httplib::Request& req, httplib::Response& res) {
    if (req.get_param_value("page") == "2") {
      res.status = 500;
    } else if (endpoint(req) == "getMyPosts") {
      json(res, R"({"success":"0","message":"","data":{"dataList":[{"orderId":"O1","orderName":"套餐","status":"2"}]}})");
    } else if (endpoint(req) == "getSearchList") {
      json(res, R"({"success":"0","message":"","data":{"count":20,"dataList":[{"storeId":"5","storeName":"一店"}]}})");
    } else {
      memberThen(req, res, R"({"success":"1","message":"not here"})");
    }
  }
  static void deepData(const httplib::Request&, httplib::Response& res) {
    json(res, R"({"success":"0","message":"","data":)" + nested(kDeep, "[", "]") + "}");
  }
  static void deepMessage(const httplib::Request&, httplib::Response& res) {
    json(res, R"({"success":"1","message":)" + nested(kDeep, R"({"m":)", "}") + "}");
  }
  static void garbage(const httplib::Request&, httplib::Response& res) {
    json(res, std::string("\x89PNG\r\n\x1a\n\0\0garbage", 17));
  }
  static void truncated(const httplib::Request&, httplib::Response& res) {
    json(res, R"({"success":"0","message":"","data":{"sessionId":"s-1","phone":"138)");
  }
  // "success" "0" with a "data" of the wrong type for every endpoint.
  static void wrongData(const httplib::Request&, httplib::Response& res) {
    json(res, R"({"success":"0","message":"","data":"oops"})");
  }
  // A failure envelope whose message is one long run of letters.
  static void huge(const httplib::Request&, httplib::Response& res) {
    res.set_content_provider(
        kHugeBytes, "application/json", [](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
          // Views, not strings: a static FaultServer's worker may still be writing this answer
          // while the program's statics are destroyed at exit.
          constexpr std::string_view head = R"({"success":"1","message":")";
          constexpr std::string_view tail = R"("})";
          std::string piece(std::min<std::size_t>(length, 64 * 1024), 'x');
          for (std::size_t i = 0; i < piece.size(); ++i) {
            const std::size_t at = offset + i;
            if (at < head.size()) piece[i] = head[at];
            if (at >= kHugeBytes - tail.size()) piece[i] = tail[at - (kHugeBytes - tail.size())];
          }
          return sink.write(piece.data(), piece.size());
        });
  }
  void endless(const httplib::Request&, httplib::Response& res) {
    res.set_chunked_content_provider("application/json", [this](std::size_t, httplib::DataSink& sink) {
      const std::string chunk(64 * 1024, ' ');  // the worker's own, for the same reason
      return !loopback_.stopping() && sink.write(chunk.data(), chunk.size());
    });
  }
  static void tooLarge(const httplib::Request&, httplib::Response& res) {
    res.status = 413;
    json(res, R"({"success":"1","message":"too large"})");
  }
  // A login refused (any phone but kPhone) with a message, and a member whose texts,
  // carrying terminal controls.
  static void escapes(const httplib::Request& req, httplib::Response& res) {
    if (req.get_param_value("userName") != kPhone) {
      json(res, dumpJson(Json{{"success", "1"}, {"message", "密码错误" + hostileText()}}));
      return;
    }
    Json record = memberRecord();
    record["nickName"] = hostileText();
    json(res, dumpJson(Json{{"success", "0"}, {"message", ""}, {"data", record}}));
  }
  static void renamed(httplib::Response& res, const Json& phone) {
    Json record = memberRecord();
    record["phone"] = phone;
    json(res, dumpJson(Json{{"success", "0"}, {"message", ""}, {"data", record}}));
  }
  // A well-behaved login whose answer also sets cookies for another host (127.0.0.2) and
  // one for its own host alone.
  static void cookies(const httplib::Request& req, httplib::Response& res) {
    for (const char* cookie : {"foreign=1; Domain=127.0.0.2; Path=/", "tracker=1; Path=/"}) {
      res.headers.emplace("Set-Cookie", cookie);
    }
    member(req, res);
  }
  // A member with an experience point count at the bottom of int64 and a balance of
  // 1e300 fen; store "1" to route to from anywhere, every other store off the globe.
  static void extreme(const httplib::Request& req, httplib::Response& res) {
    if (endpoint(req) == "getStoreDetailInfo") {
      const std::string where = req.get_param_value("storeId") == "1" ? "118.354878,35.066057" : "1e300,-1e300";
      json(res, R"({"success":"0","message":"","data":{"storeName":"远店","coordinate":")" + where + "\"}}");
      return;
    }
    if (endpoint(req) == "getCommodityDetailInfo") {
      json(res, R"({"success":"0","message":"","data":{"commodityId":"9","storeId":"1","name":"天价",)"
                R"("nowPrice":"1e308","firstPrice":"1e308","isFirst":"0"}})");
      return;
    }
    if (endpoint(req) == "getSearchList") {
      json(res, R"({"success":"0","message":"","data":{"count":2,"dataList":[)"
                R"({"storeId":"7","storeName":"远店","coordinate":"1e300,-1e300"},)"
                R"({"storeId":"8","storeName":"无店","coordinate":"nan,inf"}]}})");
      return;
    }
    Json record = memberRecord();
    record["nowExp"] = "-9223372036854775808";
    record["balance"] = "1e300";
    json(res, dumpJson(Json{{"success", "0"}, {"message", ""}, {"data", record}}));
  }

  LoopbackServer loopback_;
};

}  // namespace qmv::testsupport

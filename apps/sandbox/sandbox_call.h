#pragma once
// One application request as the handlers see it: its text arguments (query string, form or
// multipart fields), the uploaded files, the signed-in member when there is one, and the
// store, already inside the request's transaction. A handler answers with a `Reply`, which
// the server wraps in the response envelope.
#include <cstdint>
#include <map>
#include <optional>
#include <string>

#include "apps/sandbox/sandbox_store.h"
#include "core/common/json.h"

namespace qmv::sandbox {

inline constexpr const char* kSuccessCode = "0";
inline constexpr const char* kRefusedCode = "1";
inline constexpr const char* kSessionExpiredCode = "2";

struct Reply {
  std::string code = kSuccessCode;
  std::string message;
  Json data = Json::object();
  // True when the transaction must be committed even though the reply is a refusal
  // (for example a spent SMS code attempt); by default refusals roll back.
  bool commitOnRefusal = false;

  static Reply ok(Json data = Json::object()) { return Reply{kSuccessCode, "", std::move(data), false}; }
  static Reply refuse(std::string message) { return Reply{kRefusedCode, std::move(message), Json(), false}; }
  bool succeeded() const { return code == kSuccessCode; }
};

struct UploadedFile {
  std::string filename;
  std::string contentType;
  std::string content;
};

struct Call {
  SandboxStore& db;
  std::map<std::string, std::string> args;
  std::map<std::string, UploadedFile> files;
  // The member of the request's "sessionId" (null when none or unknown).
  Json member;
  std::string sessionId;
  std::string rootUrl;
  bool demoSmsCode = true;

  // The argument, or "" when absent.
  std::string arg(const std::string& key) const {
    auto it = args.find(key);
    return it == args.end() ? std::string() : it->second;
  }
  bool hasArg(const std::string& key) const { return !arg(key).empty(); }
  int64_t memberId() const { return member.is_object() ? member.value("id", int64_t{0}) : 0; }
};

}  // namespace qmv::sandbox

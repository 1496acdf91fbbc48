#pragma once
// One application request as the handlers see it: its text arguments (query string, form or
// multipart fields), the uploaded files, the signed-in member when there is one, and the
// store, already inside the request's transaction. A handler answers with a `Reply`.
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "apps/sandbox/login_throttle.h"
#include "apps/sandbox/sandbox_reply.h"
#include "apps/sandbox/sandbox_store.h"
#include "core/common/json.h"

namespace qmv::sandbox {

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
  // The request's cookies, and the Set-Cookie values the answer carries.
  std::map<std::string, std::string> cookies;
  std::vector<std::string> setCookies;
  // Set by a handler whose refusal must still commit what it wrote (a failed code attempt
  // counts even though the request is refused).
  bool keepWritesOnRefusal = false;
  // Who asked (peerKey of the address) and the back-off its password attempts are under.
  std::string peer{};
  LoginThrottle* throttle = nullptr;

  // The argument, or "" when absent.
  std::string arg(const std::string& key) const {
    auto it = args.find(key);
    return it == args.end() ? std::string() : it->second;
  }
  bool hasArg(const std::string& key) const { return !arg(key).empty(); }
  int64_t memberId() const { return member.is_object() ? member.value("id", int64_t{0}) : 0; }
};

}  // namespace qmv::sandbox

#pragma once
// A handler's answer: the envelope's "success" code, its "message" and its "data". The server
// commits the request's transaction for a success and rolls it back for a refusal.
#include <string>

#include "core/common/json.h"

namespace qmv::sandbox {

inline constexpr const char* kSuccessCode = "0";
inline constexpr const char* kRefusedCode = "1";
inline constexpr const char* kSessionExpiredCode = "2";

struct Reply {
  std::string code = kSuccessCode;
  std::string message;
  Json data = Json::object();
  // "data" already written as JSON text, sent in place of `data` when not empty: a large
  // answer written straight from its rows is never held as a tree.
  std::string dataText;

  static Reply ok(Json data = Json::object()) { return Reply{kSuccessCode, "", std::move(data), {}}; }
  static Reply okWritten(std::string dataText) { return Reply{kSuccessCode, "", Json(), std::move(dataText)}; }
  static Reply refuse(std::string message) { return Reply{kRefusedCode, std::move(message), Json(), {}}; }
  bool succeeded() const { return code == kSuccessCode; }
};

}  // namespace qmv::sandbox

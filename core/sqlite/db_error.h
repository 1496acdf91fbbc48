#pragma once
// The error value of the SQLite wrapper: a domain, a description (with SQLite's own
// message) and SQLite's result code. Operations that can fail return
// std::optional<DBError>; an empty optional means success.
#include <string>

namespace qmv {

struct DBError {
  static constexpr const char* kDomain = "SQLiteDatabase";

  std::string domain = kDomain;
  std::string description;
  int code = 0;
};

}  // namespace qmv

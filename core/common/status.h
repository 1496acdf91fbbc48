#pragma once
// The outcome of an operation that can fail in an expected way: OK, or a kind with a
// message for people and, for a library failure, that library's own code (SQLite's
// result code). Values, not exceptions: a caller that must tell a failure from an empty
// answer gets one of these. OK holds nothing and costs nothing to copy.
#include <string>
#include <utility>

namespace qmv {

class Status {
 public:
  enum class Kind { kOk, kNotFound, kCorruption, kInvalidArgument, kIOError, kBusy, kUnavailable };

  Status() = default;  // OK
  static Status OK() { return {}; }
  static Status notFound(std::string message, int libraryCode = 0) {
    return {Kind::kNotFound, std::move(message), libraryCode};
  }
  static Status corruption(std::string message, int libraryCode = 0) {
    return {Kind::kCorruption, std::move(message), libraryCode};
  }
  static Status invalidArgument(std::string message) { return {Kind::kInvalidArgument, std::move(message), 0}; }
  static Status ioError(std::string message, int libraryCode = 0) {
    return {Kind::kIOError, std::move(message), libraryCode};
  }
  static Status busy(std::string message, int libraryCode = 0) { return {Kind::kBusy, std::move(message), libraryCode}; }
  static Status unavailable(std::string message) { return {Kind::kUnavailable, std::move(message), 0}; }

  bool ok() const { return kind_ == Kind::kOk; }
  Kind kind() const { return kind_; }
  bool isNotFound() const { return kind_ == Kind::kNotFound; }
  bool isCorruption() const { return kind_ == Kind::kCorruption; }
  bool isBusy() const { return kind_ == Kind::kBusy; }
  // "" when OK.
  const std::string& message() const { return message_; }
  // The failing library's own code; 0 when OK or when no library was involved.
  int libraryCode() const { return libraryCode_; }
  // "OK", or the kind's name, ": " and the message ("Corruption: file is not a database").
  std::string toString() const;

 private:
  Status(Kind kind, std::string message, int libraryCode)
      : kind_(kind), message_(std::move(message)), libraryCode_(libraryCode) {}

  Kind kind_ = Kind::kOk;
  std::string message_;
  int libraryCode_ = 0;
};

}  // namespace qmv

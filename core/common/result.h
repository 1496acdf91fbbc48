#pragma once
// A value, or the non-OK Status that explains why there is none.
#include <cassert>
#include <optional>
#include <utility>

#include "core/common/status.h"

namespace qmv {

template <class T>
class Result {
 public:
  // Implicit, so that `return rows;` and `return Status::ioError(...);` both read naturally.
  Result(T value) : value_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
  // REQUIRES: !failure.ok(); an OK status without a value is turned into an error.
  Result(Status failure) : status_(std::move(failure)) {  // NOLINT(google-explicit-constructor)
    assert(!status_.ok());
    if (status_.ok()) status_ = Status::invalidArgument("a result without a value");
  }

  bool ok() const { return value_.has_value(); }
  // OK when holding a value.
  const Status& status() const { return status_; }

  // REQUIRES: ok().
  T& value() & { return *value_; }
  const T& value() const& { return *value_; }
  T&& value() && { return std::move(*value_); }
  T* operator->() { return &*value_; }
  const T* operator->() const { return &*value_; }
  T& operator*() & { return *value_; }
  const T& operator*() const& { return *value_; }

  T valueOr(T fallback) const& { return value_ ? *value_ : std::move(fallback); }
  T valueOr(T fallback) && { return value_ ? std::move(*value_) : std::move(fallback); }

 private:
  std::optional<T> value_;
  Status status_;
};

}  // namespace qmv

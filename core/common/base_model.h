#pragma once
// Base of every record. Records are filled from one decoded JSON object; each record
// class reads its own keys in its constructor with the accessors of dictionary.h.
#include "core/common/dictionary.h"
#include "core/common/json.h"

namespace qmv {

class BaseModel {
 public:
  BaseModel() = default;
  // Ignores the dictionary: derived records read their own keys.
  explicit BaseModel(const Json& /*dic*/) {}
  virtual ~BaseModel() = default;
  BaseModel(const BaseModel&) = default;
  BaseModel& operator=(const BaseModel&) = default;
};

}  // namespace qmv

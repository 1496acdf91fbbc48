#pragma once
// Base of every record. Records are filled from one decoded JSON object; each record
// class reads its own keys in its constructor with the accessors of dictionary.h.
#include <vector>

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

// One record per element of `array`, in order, each built from its element (elements that
// are not objects give records of empty texts); a non-array gives none.
template <typename Model>
std::vector<Model> modelsWithArray(const Json& array) {
  std::vector<Model> models;
  if (!array.is_array()) return models;
  models.reserve(array.size());
  for (const Json& element : array) models.emplace_back(element);
  return models;
}

}  // namespace qmv

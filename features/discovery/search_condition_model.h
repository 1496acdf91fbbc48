#pragma once
// What a store search asks for, built by the search and category screens and read by
// the search request. Every field is optional text; an unset or empty field is left out
// of the request. Not built from JSON.
#include <optional>
#include <string>

namespace qmv {

struct SearchConditionModel {
  std::optional<std::string> area;   // city or district id
  std::optional<std::string> block;  // business-district id; sent in place of area when set
  std::optional<std::string> type;   // category id
  std::optional<std::string> sort;   // "0".."3"
  std::optional<std::string> keyword;
  std::optional<std::string> page;  // page number as text, first page "1"
  // The member's position as text. The request recomputes the position from the
  // session's location instead of reading these.
  std::optional<std::string> longitude;
  std::optional<std::string> latitude;

  // True when keyword holds text, which selects the keyword search.
  bool hasKeyword() const { return keyword.has_value() && !keyword->empty(); }
};

}  // namespace qmv

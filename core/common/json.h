#pragma once
// The JSON value type used everywhere in qmv. Insertion order is kept so that argument
// dictionaries are sent in the order their keys were put.
#include <nlohmann/json.hpp>

namespace qmv {

using Json = nlohmann::ordered_json;

// Parses text leniently: fragments are allowed and malformed input gives a discarded
// value (is_discarded()) instead of throwing.
inline Json parseJson(std::string_view text) {
  return Json::parse(text.begin(), text.end(), nullptr, /*allow_exceptions=*/false);
}

// True when parse produced a value (not the discarded marker of a failed parse).
inline bool isParsed(const Json& value) { return !value.is_discarded(); }

}  // namespace qmv

#pragma once
// Tolerant accessors over JSON dictionaries. The server sends numbers where text is
// expected and null where a value is absent; these fix how every record reads them.
#include <optional>
#include <string>
#include <string_view>

#include "core/common/json.h"

namespace qmv {

// Never fails: a non-empty string is returned as is, a number as its decimal text
// (integers without a fraction, other numbers in the shortest form that reads back
// the same), true and false as "1" and "0" (they are numbers to the platform's JSON
// reader); missing keys, null, empty strings, arrays, objects and a `dict` that is
// not an object give "".
std::string strForKey(const Json& dict, std::string_view key);

// The number under `key` (true and false as 1 and 0), or nullopt when it is missing or
// not a number.
std::optional<Json> numForKey(const Json& dict, std::string_view key);

// Stores `value` under `key` only when it is usable: a null value or an empty string
// leaves the dictionary untouched (an earlier value under the key stays), so requests
// never carry empty parameters. `dict` becomes an object if it was null.
void setCustomString(Json& dict, const Json& value, const std::string& key);
void setCustomString(Json& dict, const std::string& value, const std::string& key);
void setCustomString(Json& dict, const char* value, const std::string& key);

// Text of a JSON scalar as strForKey renders it ("" for anything that is not text or a number).
std::string textOf(const Json& value);

// True when `value` is absent-equivalent: null, discarded, or an empty string.
bool isEmptyText(const Json& value);

}  // namespace qmv

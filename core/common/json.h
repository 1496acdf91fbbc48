#pragma once
// The JSON value type used everywhere in qmv. Insertion order is kept so that argument
// dictionaries are sent in the order their keys were put.
//
// Every document from outside (server bodies, settings rows, cache files) is parsed by
// parseJson, which bounds the nesting: nlohmann copies, compares and prints values
// recursively, so one deeply nested answer would otherwise overflow the stack wherever
// the value travels.
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace qmv {

using Json = nlohmann::ordered_json;

// Deeper than anything the server sends, shallow enough for recursion on any stack.
inline constexpr std::size_t kMaxJsonDepth = 256;

// Parses text leniently: fragments are allowed, and malformed input or nesting deeper
// than kMaxJsonDepth gives a discarded value (is_discarded()) instead of throwing. Bytes
// that are not well-formed UTF-8 are read as U+FFFD, so that an answer in a stray
// encoding still yields its envelope.
Json parseJson(std::string_view text);

// True when parse produced a value (not the discarded marker of a failed parse).
inline bool isParsed(const Json& value) { return !value.is_discarded(); }

// Serialises without throwing: text that is not well-formed UTF-8 (typed by the user,
// read from a file) is written with U+FFFD in place of the stray bytes.
inline std::string dumpJson(const Json& value) { return value.dump(-1, ' ', false, Json::error_handler_t::replace); }

}  // namespace qmv

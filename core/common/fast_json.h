#pragma once
// Reading a document in place, without building its Json tree, for the readers that take
// a large answer apart (a page of search results). simdjson validates the whole text several
// times faster than nlohmann's lexer; a document is read this way only where parseJson would
// give the very same values, and the accessors below read like their dictionary.h
// counterparts, so a record reader written once against both gives the same record either
// way. Internal to the core: public interfaces take and give Json.
#include <simdjson.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/common/json.h"

namespace qmv::fastjson {

using Element = simdjson::dom::element;

// Calls read(root) on the document in `text` and returns true when it can be read in place
// exactly as parseJson reads it; returns false without calling read when only parseJson can
// decide (malformed text, bytes that are not UTF-8, nesting past kMaxJsonDepth, numbers
// beyond 64 bits, a byte order mark, a "-0"). `root` lives only during the call.
bool readDocument(std::string_view text, const std::function<void(Element)>& read);

// The Json value parseJson gives for `element`.
Json toJson(Element element);

// The same readings over an in-place element and over a Json value, for readers written once.
inline bool isObject(Element value) { return value.is_object(); }
inline bool isObject(const Json& value) { return value.is_object(); }
inline bool isArray(Element value) { return value.is_array(); }
inline bool isArray(const Json& value) { return value.is_array(); }

// The value under `key`, the last one when the key repeats (as parseJson keeps it); none
// when `dict` is not an object or has no such key.
std::optional<Element> member(Element dict, std::string_view key);
inline const Json* member(const Json& dict, std::string_view key) {
  if (!dict.is_object()) return nullptr;
  const auto it = dict.find(key);
  return it == dict.end() ? nullptr : &*it;
}

// textOf (dictionary.h) of the value.
std::string textOf(Element value);
std::string textOf(const Json& value);

// strForKey (dictionary.h): the text under `key`, "" when there is none.
template <typename Dict>
std::string strForKey(const Dict& dict, std::string_view key) {
  const auto value = member(dict, key);
  return value ? textOf(*value) : std::string();
}

// Calls each(element) for every element of an array, in order.
template <typename Each>
void forEachElement(Element array, Each&& each) {
  for (const Element element : simdjson::dom::array(array)) each(element);
}
template <typename Each>
void forEachElement(const Json& array, Each&& each) {
  for (const Json& element : array) each(element);
}
// Calls each(key, value) for every member of an object, in the order of the text; a key that
// repeats comes once per occurrence in place, once (with its last value) in a Json object,
// so a reader that lets a later member overwrite an earlier one reads both the same.
template <typename Each>
void forEachMember(Element object, Each&& each) {
  for (const simdjson::dom::key_value_pair field : simdjson::dom::object(object)) each(field.key, field.value);
}
template <typename Each>
void forEachMember(const Json& object, Each&& each) {
  for (const auto& [key, value] : object.get_ref<const Json::object_t&>()) each(std::string_view(key), value);
}

inline std::size_t sizeOf(Element array) { return simdjson::dom::array(array).size(); }
inline std::size_t sizeOf(const Json& array) { return array.size(); }

inline Json toJson(const Json& value) { return value; }

}  // namespace qmv::fastjson

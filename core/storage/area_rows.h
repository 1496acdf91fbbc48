#pragma once
// Reading the server's area objects ("id", "parentId", "name", "pyName", "type",
// "special") into AreaRecords, from a Json list or in place from the answer's text alike:
// the whole table is thousands of objects, and in place it needs no Json tree at all.
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "core/common/fast_json.h"
#include "core/storage/db_util.h"

namespace qmv {

// A server number (or numeric text) as the client has always stored it: the integer its
// text starts with (a fraction keeps its integer part); anything else reads as 0.
inline std::int64_t areaIntegerIn(std::string_view text) {
  long long value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() ? value : 0;
}

// The areas of `list`, which must be an array; an element that is no object reads as an
// area of zeros and empty names, as it always has.
template <typename Array>
AreaRows areaRowsOf(const Array& list) {
  AreaRows rows;
  rows.areas.reserve(fastjson::sizeOf(list));
  std::string id;
  fastjson::forEachElement(list, [&rows, &id](const auto& area) {
    id = fastjson::strForKey(area, "id");
    rows.areas.push_back({areaIntegerIn(id), areaIntegerIn(fastjson::strForKey(area, "parentId")),
                          fastjson::strForKey(area, "name"), fastjson::strForKey(area, "pyName"),
                          areaIntegerIn(fastjson::strForKey(area, "type")),
                          areaIntegerIn(fastjson::strForKey(area, "special"))});
  });
  rows.lastId = std::move(id);
  return rows;
}

}  // namespace qmv

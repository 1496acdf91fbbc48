#include "core/common/dictionary.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace qmv {

std::string textOf(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  // The platform's JSON reader gives true and false as the numbers 1 and 0.
  if (value.is_boolean()) return value.get<bool>() ? "1" : "0";
  // Decimal digits, as dump() writes them, without building a serializer per value.
  if (value.is_number_unsigned()) return std::to_string(value.get<std::uint64_t>());
  if (value.is_number_integer()) return std::to_string(value.get<std::int64_t>());
  if (value.is_number_float()) {
    const double d = value.get<double>();
    // Whole numbers read as integers ("3", not "3.0"), as the server's ids and counts expect.
    if (std::isfinite(d) && d == std::floor(d) && std::fabs(d) < 9.0e15) {
      return std::to_string(static_cast<long long>(d));
    }
    return value.dump();  // shortest text that reads back the same double
  }
  return {};
}

std::string strForKey(const Json& dict, std::string_view key) {
  if (!dict.is_object()) return {};
  const auto it = dict.find(key);
  if (it == dict.end()) return {};
  return textOf(*it);
}

std::optional<Json> numForKey(const Json& dict, std::string_view key) {
  if (!dict.is_object()) return std::nullopt;
  const auto it = dict.find(key);
  if (it == dict.end()) return std::nullopt;
  if (it->is_boolean()) return Json(it->get<bool>() ? 1 : 0);
  if (!it->is_number()) return std::nullopt;
  return *it;
}

bool isEmptyText(const Json& value) {
  return value.is_null() || value.is_discarded() || (value.is_string() && value.get_ref<const std::string&>().empty());
}

void setCustomString(Json& dict, const Json& value, const std::string& key) {
  if (isEmptyText(value)) return;
  if (dict.is_null()) dict = Json::object();
  dict[key] = value;
}

void setCustomString(Json& dict, const std::string& value, const std::string& key) {
  setCustomString(dict, Json(value), key);
}

void setCustomString(Json& dict, const char* value, const std::string& key) {
  if (value == nullptr) return;
  setCustomString(dict, Json(value), key);
}

}  // namespace qmv

#include "core/request/network_util.h"

#include <cstring>
#include <filesystem>
#include <fstream>

#include "core/common/dictionary.h"
#include "core/common/string_util.h"
#include "core/common/url_parts.h"
#include "qmv/version.h"

namespace qmv {
namespace {

enum class Kind { null, boolean, number, text, object, array, other };

Kind kindOf(const Json& value) {
  switch (value.type()) {
    case Json::value_t::null:
      return Kind::null;
    case Json::value_t::boolean:
      return Kind::boolean;
    case Json::value_t::number_integer:
    case Json::value_t::number_unsigned:
    case Json::value_t::number_float:
      return Kind::number;
    case Json::value_t::string:
      return Kind::text;
    case Json::value_t::object:
      return Kind::object;
    case Json::value_t::array:
      return Kind::array;
    default:
      return Kind::other;
  }
}

std::optional<std::string>& appVersionOverride() {
  static std::optional<std::string> version;
  return version;
}

constexpr const char* kCacheDirTag =
    "Signature: 8a477f597d28d172789f06886806bc55\n"
    "# This file is a cache directory tag created by qmv.\n"
    "# For information about cache directory tags, see https://bford.info/cachedir/\n";

}  // namespace

bool NetworkUtil::checkJson(const Json& json, const Json& validator) {
  if (json.is_object() && validator.is_object()) {
    for (const auto& [key, format] : validator.items()) {
      const auto it = json.find(key);
      if (it == json.end()) return false;
      const Json& value = *it;
      if (value.is_object() || value.is_array()) {
        if (!checkJson(value, format)) return false;
      } else if (!(kindOf(value) == kindOf(format) || value.is_null())) {
        return false;
      }
    }
    return true;
  }
  if (json.is_array() && validator.is_array()) {
    if (validator.empty()) return true;
    const Json& format = validator.front();
    for (const auto& item : json) {
      if (!checkJson(item, format)) return false;
    }
    return true;
  }
  return kindOf(json) == kindOf(validator);
}

std::string NetworkUtil::descriptionOf(const Json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_null()) return "<null>";
  if (value.is_number() || value.is_boolean()) return textOf(value);
  if (value.is_discarded()) return {};
  return dumpJson(value);
}

std::string NetworkUtil::urlParametersStringFromParameters(const Json& parameters) {
  std::string out;
  if (!parameters.is_object()) return out;
  for (const auto& [key, value] : parameters.items()) {
    out += "&" + key + "=" + urlEncode(descriptionOf(value));
  }
  return out;
}

std::string NetworkUtil::urlStringWithOriginUrlString(const std::string& originUrl,
                                                      const std::string& parametersString) {
  if (parametersString.empty()) return originUrl;
  if (originUrl.find('?') != std::string::npos) return originUrl + parametersString;
  return originUrl + "?" + parametersString.substr(1);
}

std::string NetworkUtil::urlEncode(const std::string& text) { return percentEncode(text); }

bool NetworkUtil::addDoNotBackupAttribute(const std::string& path) {
  std::error_code ec;
  if (!std::filesystem::is_directory(path, ec)) return false;
  std::ofstream tag(std::filesystem::path(path) / "CACHEDIR.TAG", std::ios::binary | std::ios::trunc);
  tag << kCacheDirTag;
  return static_cast<bool>(tag.flush());
}

std::optional<std::string> NetworkUtil::md5StringFromString(const std::string& text) {
  // Only the text before a NUL counts, as for the C string it once was.
  const std::string_view head(text.c_str(), std::strlen(text.c_str()));
  if (head.empty()) return std::nullopt;
  std::string digest = StringUtil::getmd5WithString(head);
  if (digest.empty()) return std::nullopt;
  return digest;
}

std::string NetworkUtil::appVersionString() { return appVersionOverride().value_or(QMV_VERSION_STRING); }

void NetworkUtil::overrideAppVersionString(std::optional<std::string> version) {
  appVersionOverride() = std::move(version);
}

}  // namespace qmv

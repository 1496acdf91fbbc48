#pragma once
// Stateless helpers of the request layer: JSON shape validation, query strings and
// percent-encoding, MD5 names, the backup exclusion mark and the application version.
#include <optional>
#include <string>

#include "core/common/json.h"

namespace qmv {

class NetworkUtil {
 public:
  // Whether `json` has the shape of `validator`. Where a class would be named, the
  // validator holds a sample value of the wanted JSON kind: "" text, 0 number, true
  // boolean, {} object, [] array (kinds are strict: a boolean is not a number).
  // Objects: every key of the validator must be present; nested objects and arrays are
  // checked recursively, scalars pass when of the sample's kind or null. Arrays: an empty
  // validator accepts any array, else every element must match the validator's first.
  static bool checkJson(const Json& json, const Json& validator);

  // "&k1=v1&k2=v2" over the object's keys in insertion order, values as text and
  // percent-encoded; "" for an empty or non-object value.
  static std::string urlParametersStringFromParameters(const Json& parameters);

  // `originUrl` with `parametersString` (as made above) appended: unchanged when that is
  // empty; appended as is when the URL already has a "?"; else "?" and the text without
  // its leading character.
  static std::string urlStringWithOriginUrlString(const std::string& originUrl, const std::string& parametersString);

  // Percent-encodes the UTF-8 bytes of `text`: everything but ALPHA, DIGIT and "-._~".
  static std::string urlEncode(const std::string& text);

  // Marks a directory as excluded from backup by writing a CACHEDIR.TAG file into it
  // (the Cache Directory Tagging convention). Returns false when the file can't be written.
  static bool addDoNotBackupAttribute(const std::string& path);

  // Lower-case hexadecimal MD5 of the text up to its first NUL; nullopt when that is empty.
  static std::optional<std::string> md5StringFromString(const std::string& text);

  // The application version of this build, or the test override when one is set.
  static std::string appVersionString();
  // Replaces the version for tests (nullopt restores the build's). Interface thread only.
  static void overrideAppVersionString(std::optional<std::string> version);

  // A value as the "%@" format renders it: text as is, numbers as their text, booleans
  // as 1/0, null as "<null>", objects and arrays as JSON text.
  static std::string descriptionOf(const Json& value);
};

}  // namespace qmv

// The query-string builder and percent-encoding. Input: any bytes, taken both as a text to
// encode and, when it reads as a JSON object, as the arguments of a request. Beyond not
// crashing, what is encoded must read back as it was: the URL readers of the routing are
// the decoder.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/common/json.h"
#include "core/common/url_parts.h"
#include "core/request/network_util.h"
#include "fuzz/fuzz_env.h"

namespace {

bool isUnreserved(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.' ||
         c == '_' || c == '~';
}

bool isPlainKey(const std::string& key) {
  if (key.empty()) return false;
  for (const char c : key) {
    if (!isUnreserved(c)) return false;
  }
  return true;
}

void check(bool holds) {
  if (!holds) __builtin_trap();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using qmv::NetworkUtil;
  const std::string text(qmv::fuzz::asText(data, size));

  const std::string encoded = qmv::percentEncode(text);
  check(encoded == NetworkUtil::urlEncode(text));
  for (std::size_t i = 0; i < encoded.size(); ++i) {
    if (encoded[i] == '%') {
      check(i + 2 < encoded.size() && qmv::hexDigitValue(encoded[i + 1]) >= 0 &&
            qmv::hexDigitValue(encoded[i + 2]) >= 0);
      i += 2;
    } else {
      check(isUnreserved(encoded[i]));
    }
  }
  const auto back = qmv::urlQueryPairs("qqqmmmvvv://h/?k=" + encoded);
  check(back.size() == 1 && back.begin()->second == text);

  const qmv::Json arguments = qmv::parseJson(text);
  if (!arguments.is_object()) return 0;
  const std::string query = NetworkUtil::urlParametersStringFromParameters(arguments);
  const std::string url = NetworkUtil::urlStringWithOriginUrlString("http://h/qmv/app/v3/x", query);
  check(query.empty() == arguments.empty());
  // Keys are the client's own and written as they are: a key that needs encoding could
  // write pairs of its own, so the read-back is checked when every key is plain.
  for (const auto& [key, value] : arguments.items()) {
    if (!isPlainKey(key)) return 0;
  }
  const auto pairs = qmv::urlQueryPairs(url);
  check(pairs.size() == arguments.size());
  for (const auto& [key, value] : arguments.items()) {
    const auto found = pairs.find(key);
    check(found != pairs.end());
    // A later duplicate key wins on reading; the object holds each key once.
    check(found->second == NetworkUtil::descriptionOf(value));
  }
  return 0;
}

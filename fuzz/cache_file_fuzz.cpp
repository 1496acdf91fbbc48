// The readers of the request cache's two files: the stored response and its version.
// Input: the text of a file (damaged, foreign or written by another version). A response
// that reads is checked against an envelope's shape and written out again, as the request
// layer does with it.
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/request/cached_request.h"
#include "core/request/network_util.h"
#include "fuzz/fuzz_env.h"

namespace {
std::size_t g_read = 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using qmv::CachedRequest;
  const std::string_view text = qmv::fuzz::asText(data, size);
  if (const auto version = CachedRequest::cacheVersionOfText(text)) g_read += static_cast<std::size_t>(*version);
  const auto response = CachedRequest::cachedResponseOfText(text);
  if (!response) return 0;
  static const qmv::Json kEnvelope = {{"success", ""}, {"message", ""}, {"data", qmv::Json::object()}};
  g_read += qmv::NetworkUtil::checkJson(*response, kEnvelope) ? 1 : 0;
  // What was read is written out again (describing it, storing it anew).
  g_read += qmv::dumpJson(*response).size();
  return 0;
}

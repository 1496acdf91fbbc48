// The sandbox's reading of a request: HTTP parsing, routing, the arguments of the query
// string, form or multipart body, cookies and sessions, and the handlers behind them.
// Input: the raw bytes a peer sends on one connection. One sandbox serves every input
// from a home made once, so that state left by one request meets the next.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "apps/sandbox/sandbox_server.h"
#include "fuzz/fuzz_env.h"

namespace {

std::filesystem::path g_home;

void removeHome() {
  std::error_code ec;
  std::filesystem::remove_all(g_home, ec);
}

qmv::sandbox::SandboxServer& sandbox() {
  static qmv::sandbox::SandboxServer* server = [] {
    qmv::setWarningsOnStderr(false);
    std::string pattern = (std::filesystem::temp_directory_path() / "qmv-fuzz-sandbox.XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    g_home = pattern;
    std::atexit(removeHome);
    return new qmv::sandbox::SandboxServer(qmv::sandbox::SandboxOptions{g_home});
  }();
  return *server;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string answer = sandbox().answerRequest(qmv::fuzz::asText(data, size));
  // Whatever was read, what goes back is an HTTP answer or nothing.
  if (!answer.empty() && answer.rfind("HTTP/1.1 ", 0) != 0) __builtin_trap();
  return 0;
}

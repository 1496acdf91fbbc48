// The sandbox's reading of a request: HTTP parsing, routing, the arguments of the query
// string, form or multipart body, cookies and sessions, and the handlers behind them.
// Input: the raw bytes a peer sends on one connection. One sandbox, its database in
// memory, serves every input from the world it was seeded with: each input starts from
// the same state, so that a failure replays from its input alone.
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
    // The home holds only the objects PUT under /oss/, which are not put back.
    std::string pattern = (std::filesystem::temp_directory_path() / "qmv-fuzz-sandbox.XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    g_home = pattern;
    std::atexit(removeHome);
    qmv::sandbox::SandboxOptions options{g_home};
    options.memoryStore = true;
    auto* made = new qmv::sandbox::SandboxServer(options);
    if (!made->rememberState().ok()) std::abort();
    return made;
  }();
  return *server;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  qmv::sandbox::SandboxServer& server = sandbox();
  if (!server.returnToState().ok()) __builtin_trap();
  const qmv::Result<std::string> answer = server.answerRequest(qmv::fuzz::asText(data, size));
  // Whatever was read, what goes back is an HTTP answer or nothing.
  if (answer.ok() && answer->rfind("HTTP/1.1 ", 0) != 0) __builtin_trap();
  return 0;
}

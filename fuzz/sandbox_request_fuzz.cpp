// The sandbox's reading of a request: HTTP parsing, routing, the arguments of the query
// string, form or multipart body, cookies and sessions, and the handlers behind them.
// Input: the raw bytes a peer sends on one connection. One sandbox, its database in
// memory, serves every input from the world it was seeded with: each input starts from
// the same state, so that a failure replays from its input alone.
//
// That world's area table is cut to Shandong and the municipalities (262 of 3,346 rows):
// the area list's code is the same for either, and the whole table made writing it most
// of the time of every run that asked for it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "apps/sandbox/sandbox_server.h"
#include "core/common/resource_directory.h"
#include "core/sqlite/sqlite_database.h"
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
    const std::filesystem::path shipped = qmv::defaultResourceDirectory();
    const std::filesystem::path resources = g_home / "resources";
    std::filesystem::create_directories(resources);
    std::filesystem::copy_file(shipped / "area.db", resources / "area.db");
    std::filesystem::create_symlink(shipped / "map.db", resources / "map.db");
    auto areas = qmv::SQLiteDatabase::atPath(resources / "area.db");
    if (!areas.openDatabase().ok() ||
        !areas
             .executeScript("DELETE FROM areas WHERE NOT (area_id / 10000 IN (11, 12, 31, 37, 50)); "
                            "DELETE FROM city_centres WHERE NOT (area_id / 10000 IN (11, 12, 31, 37, 50));")
             .ok()) {
      std::abort();
    }
    areas.closeDatabase();
    qmv::sandbox::SandboxOptions options{g_home};
    options.memoryStore = true;
    options.resources = resources;
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

#include "core/common/resource_directory.h"

#include <cstdlib>
#include <system_error>

namespace qmv {

std::filesystem::path defaultResourceDirectory() {
  if (const char* env = std::getenv("QMV_RESOURCE_DIR"); env && *env) return env;
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (!ec) {
    // Installed under any prefix: <prefix>/bin/qmv -> <prefix>/share/qmv, so that a staged
    // or relocated install finds its own data rather than another install's.
    const auto installed = exe.parent_path().parent_path() / "share" / "qmv";
    if (std::filesystem::exists(installed / "area.db", ec)) return installed;
    // build/<tree>/apps/qmv -> build/<tree>/resources
    for (auto dir = exe.parent_path(); !dir.empty() && dir != dir.root_path(); dir = dir.parent_path()) {
      if (std::filesystem::exists(dir / "resources" / "area.db", ec)) return dir / "resources";
    }
  }
  return "/usr/share/qmv";
}

}  // namespace qmv

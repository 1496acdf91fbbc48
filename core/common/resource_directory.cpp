#include "core/common/resource_directory.h"

#include <cstdlib>
#include <system_error>

namespace qmv {

std::filesystem::path defaultResourceDirectory() {
  if (const char* env = std::getenv("QMV_RESOURCE_DIR"); env && *env) return env;
  std::error_code ec;
  const auto exe = std::filesystem::read_symlink("/proc/self/exe", ec);
  if (!ec) {
    // build/<tree>/apps/qmv -> build/<tree>/resources
    for (auto dir = exe.parent_path(); !dir.empty() && dir != dir.root_path(); dir = dir.parent_path()) {
      if (std::filesystem::exists(dir / "resources" / "area.db", ec)) return dir / "resources";
    }
  }
  return "/usr/share/qmv";
}

}  // namespace qmv

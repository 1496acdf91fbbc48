#include "platform/file_locations.h"

#include <unistd.h>

#include <cstdlib>
#include <system_error>

namespace qmv {
namespace {

std::filesystem::path defaultResources() {
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

}  // namespace

HomeFileLocations::HomeFileLocations(std::filesystem::path home, std::filesystem::path resources)
    : home_(std::move(home)), resources_(resources.empty() ? defaultResources() : std::move(resources)) {}

std::filesystem::path HomeFileLocations::defaultHome() {
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return std::filesystem::path(xdg) / "qmv";
  if (const char* home = std::getenv("HOME"); home && *home) {
    return std::filesystem::path(home) / ".local" / "share" / "qmv";
  }
  return std::filesystem::current_path() / ".qmv";
}

}  // namespace qmv

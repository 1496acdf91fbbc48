#include "platform/file_locations.h"

#include <cstdlib>

#include "core/common/resource_directory.h"

namespace qmv {

HomeFileLocations::HomeFileLocations(std::filesystem::path home, std::filesystem::path resources)
    : home_(std::move(home)), resources_(resources.empty() ? defaultResourceDirectory() : std::move(resources)) {}

std::filesystem::path HomeFileLocations::defaultHome() {
  if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return std::filesystem::path(xdg) / "qmv";
  if (const char* home = std::getenv("HOME"); home && *home) {
    return std::filesystem::path(home) / ".local" / "share" / "qmv";
  }
  return std::filesystem::current_path() / ".qmv";
}

}  // namespace qmv

#include "apps/gtk/renderer_choice.h"

#include <stdlib.h>

#include <string>
#include <system_error>

namespace qmv::gtk {

bool hasRenderNode(const std::filesystem::path& driDir) {
  std::error_code ec;
  for (std::filesystem::directory_iterator it(driDir, ec), end; !ec && it != end; it.increment(ec)) {
    if (it->path().filename().string().starts_with("renderD")) return true;
  }
  return false;
}

void chooseRenderer() {
  const char* chosen = getenv("GSK_RENDERER");
  if ((chosen != nullptr && *chosen != '\0') || hasRenderNode("/dev/dri")) return;
  setenv("GSK_RENDERER", "cairo", 1);
  const char* debug = getenv("GDK_DEBUG");
  std::string flags = debug != nullptr ? debug : "";
  if (flags.find("gl-disable") == std::string::npos) {
    setenv("GDK_DEBUG", (flags.empty() ? std::string("gl-disable") : flags + ",gl-disable").c_str(), 1);
  }
}

}  // namespace qmv::gtk

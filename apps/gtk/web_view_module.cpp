#include "apps/gtk/web_view_module.h"

#include <dlfcn.h>

#include <filesystem>

#include "core/common/log.h"

namespace qmv::gtk {

std::string ModuleWebViewFactory::besideExecutable(const std::string& name) {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return name;
  // Installed, it is a private library: <prefix>/bin/qmv-gtk -> <prefix>/lib/qmv/modules/<name>.
  const auto installed = executable.parent_path().parent_path() / "lib" / "qmv" / "modules" / name;
  if (std::filesystem::exists(installed, error)) return installed.string();
  return (executable.parent_path() / name).string();
}

std::unique_ptr<WebView> ModuleWebViewFactory::makeWebView() {
  if (!tried_) {
    tried_ = true;
    // Never closed: the views and the factory run the module's code until the end.
    if (void* handle = dlopen(modulePath_.c_str(), RTLD_NOW | RTLD_LOCAL)) {
      using Make = decltype(&qmv_webkit_web_view_factory);
      if (auto make = reinterpret_cast<Make>(dlsym(handle, "qmv_webkit_web_view_factory"))) {
        module_.reset(make(&cookies_));
      }
    }
    if (!module_) {
      const char* why = dlerror();
      logLine("web views: no WebKit module (" + std::string(why != nullptr ? why : modulePath_) + "), pages as text");
    }
  }
  if (module_) return module_->makeWebView();
  return fallback_ ? fallback_->makeWebView() : nullptr;
}

}  // namespace qmv::gtk

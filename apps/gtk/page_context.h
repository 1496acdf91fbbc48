#pragma once
// What pages reach besides their own screen: the navigator (the back action), the
// application delegate (tab jumps, inbound URLs), the tab bar and the window (for file
// choosers), the home directory, the one picture loader every page shares, and where the
// maps' tiles come from.
#include <filesystem>

#include "shell/app_config.h"

namespace Gtk {
class Window;
}

namespace qmv {
class AppDelegate;
class ImageLoader;
}

namespace qmv::gtk {

class PageNavigator;

class PageContext {
 public:
  virtual ~PageContext() = default;
  virtual PageNavigator& navigator() = 0;
  virtual AppDelegate& appDelegate() = 0;
  // The toplevel the pages sit in; null before it exists.
  virtual Gtk::Window* window() = 0;
  // After the home screen's automatic sign-in has ended: the member tabs show who it is.
  virtual void signedInAgain() = 0;
  // Pictures by URL, cached in memory and under the client's cache directory; null
  // before start-up.
  virtual ImageLoader* pictures() = 0;
  // The maps' base layer as the configuration chose it.
  virtual MapTiles mapTiles() = 0;
};

}  // namespace qmv::gtk

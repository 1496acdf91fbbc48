#pragma once
// The content of the window: the pages of every screen in the navigator's layers, the
// top one shown, under the toast overlay and the launch view. Pages are made when their
// screen enters a layer and destroyed when it leaves; what a page shows comes from its
// screen alone.
#include <gtkmm.h>

#include <map>
#include <memory>

#include "platform/navigator.h"

typedef struct _AdwToastOverlay AdwToastOverlay;

namespace qmv {
class NearbyViewController;
}

namespace qmv::gtk {

class PageContext;
class PictureView;
class ScreenPage;
class TabBarPage;

class MainView : public Gtk::Box {
 public:
  MainView(PageContext& context, std::shared_ptr<NearbyViewController> nearby);
  ~MainView() override;

  AdwToastOverlay* toastOverlay() const { return toasts_; }
  // Follows the navigator now (normally after an idle turn).
  void sync();
  // Queues a sync for the next idle turn; many changes in one turn sync once.
  void queueSync();
  // The launch view over everything, with the picture at `imageUrl` once it has arrived.
  void showLaunchView(bool shown, const std::string& imageUrl = {});

  // The page on top, and the main tabs (null until shown).
  Gtk::Widget* topPage();
  TabBarPage* tabBar() { return tabBar_; }

 private:
  Gtk::Widget* makePage(const Screen& screen);

  PageContext& context_;
  std::shared_ptr<NearbyViewController> nearby_;
  AdwToastOverlay* toasts_;
  Gtk::Overlay overlay_;
  Gtk::Stack stack_;
  Gtk::Box launch_{Gtk::Orientation::VERTICAL};
  PictureView* launchPicture_ = nullptr;
  std::map<ScreenId, Gtk::Widget*> pages_;
  TabBarPage* tabBar_ = nullptr;
  ScreenId top_ = 0;
  sigc::connection pending_;
};

}  // namespace qmv::gtk

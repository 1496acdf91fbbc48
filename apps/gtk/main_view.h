#pragma once
// The content of the window: the pages of every screen in the navigator's layers, the
// top one shown, under the toast overlay and the launch view. Pages are made when their
// screen enters a layer and destroyed when it leaves; what a page shows comes from its
// screen alone.
//
// Wide windows: a libadwaita leaflet holds two panes, the navigator's stack and a detail
// pane beside it. On a window at least kWideWidth wide, a detail (a store, an offer, an
// order, a contact's contacts, a store's map or comments) opened from a list (the tabs,
// a store's offers, the bookmarks, the orders, the contacts) moves to the detail pane,
// and the list stays on the left at kListWidth; any other screen takes the whole window
// as on a phone. Narrower windows never split, so phones keep their one column, its
// slides and its back button. The rule lives here alone, applied on every sync and on a
// width change: pages only hear that they moved, and a move keeps a page (and its
// screen) alive. The leaflet may only unfold while split, and folds by itself when the
// panes' least widths do not fit; folded, it shows the screen on top.
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
  static constexpr int kWideWidth = 900;
  static constexpr int kListWidth = 400;

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
  // The page beside the top one (the list it was opened from), or null in one column.
  Gtk::Widget* listPage();

 private:
  Gtk::Widget* makePage(const Screen& screen);
  // Moves `page` into `pane` unless it is there already.
  static void place(Gtk::Widget& page, ScreenId id, Gtk::Stack& pane);
  void showSplit(bool split);
  void widthChanged(int width);

  PageContext& context_;
  std::shared_ptr<NearbyViewController> nearby_;
  AdwToastOverlay* toasts_;
  Gtk::Overlay overlay_;
  GtkWidget* leaflet_;
  GtkWidget* listClamp_;
  Gtk::Separator divider_{Gtk::Orientation::VERTICAL};
  Gtk::Stack stack_;
  Gtk::Stack detail_;
  Gtk::DrawingArea widthWatch_;
  Gtk::Box launch_{Gtk::Orientation::VERTICAL};
  PictureView* launchPicture_ = nullptr;
  std::map<ScreenId, Gtk::Widget*> pages_;
  TabBarPage* tabBar_ = nullptr;
  ScreenId top_ = 0;
  ScreenId beside_ = 0;  // the list page's screen while split
  bool wide_ = false;
  sigc::connection pending_;
};

}  // namespace qmv::gtk

#pragma once
// Base of every page: a header bar with the screen's title (and a back button on pushed
// screens), a scrolled body, and over it (over a list page's rows only) the state of the
// screen: loading, a failed connection with its reason and a retry, or the list's empty
// sentence. A page renders its headless screen's state in refresh() and forwards
// taps to it; it holds no flow of its own.
#include <gtkmm.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "apps/gtk/list_state_view.h"

namespace qmv {
class BaseViewController;
}

namespace qmv::gtk {

class PageContext;

class ScreenPage : public Gtk::Box {
 public:
  ScreenPage(PageContext& context, const std::string& title, bool withBack);
  ~ScreenPage() override;

  // Redraws the page from its screen's state.
  virtual void refresh() = 0;
  // The page became the one the member sees (the screen's viewWillAppear).
  virtual void appeared() {}

  // The page was given another parent (a pane of a wide window).
  void moved();
  void setTitle(const std::string& title);
  // refresh() from the next idle turn: a tap's handler must not destroy the widget that
  // is emitting it. Nothing runs once the page is gone.
  void refreshSoon();
  // True while a refreshSoon has not run yet: the widgets still show older content.
  bool refreshPending() const { return pendingRefresh_.connected(); }

 protected:
  // Follows the cover and warnings of `screen` and redraws on each change. `screen` lives
  // at least as long as the page; some (the nearby list, the community page) outlive it.
  void follow(BaseViewController& screen);
  Gtk::Box& body() { return body_; }
  // A header bar button at the end (e.g. the map switch).
  void addHeaderButton(Gtk::Widget& widget);
  // The back button runs `back` instead of the navigator's back (a page with a history
  // of its own).
  void setBackAction(std::function<void()> back);
  // The body takes the page's whole height and scrolls by itself (a web view).
  void fillPage();
  // The body takes the page's whole width too, however wide (a map); other pages keep
  // a reading width, and `fill` false gives it back.
  void fillWidth(bool fill = true);
  // The page's reload: the action page.refresh, which Ctrl+R and a pull past the top of
  // the body run (the screen's pull-down refresh).
  void pullToRefresh(std::function<void()> refresh);
  // An action of the page's own group, "page.<name>", for buttons, rows and shortcuts.
  void addAction(const std::string& name, std::function<void()> activated);
  // The same with a parameter of `type` (a row's position, an order id).
  void addAction(const std::string& name, const Glib::VariantType& type,
                 std::function<void(const Glib::VariantBase&)> activated);
  void setActionEnabled(const std::string& name, bool enabled);
  // A form's send button ("submit"): a tap runs `submit`, then redraws, so that refresh()
  // can make it insensitive while the screen sends.
  Gtk::Button* submitButton(const std::string& label, std::function<void()> submit);
  // `list` becomes the scroller's own child, so that its rows are recycled; the body then
  // sits above it and footer() below it, neither scrolling.
  void setList(Gtk::ListView& list);
  Gtk::Box& footer() { return footer_; }
  // A list page tells after each redraw whether its list shows rows, whether its last
  // answer ended it and its sentence for no rows; the state view follows. Pages that
  // never call it show the state of their screen's data.
  void showListState(bool hasRows, bool ended, const std::string& emptyText);
  const ListStateView& stateView() const { return state_; }
  PageContext& context_;

 private:
  void goBack();
  void coverChanged();
  void drawState();

  struct ListFacts {
    bool hasRows;
    bool ended;
    std::string emptyText;
  };

  BaseViewController* screen_ = nullptr;
  Gtk::Widget* header_ = nullptr;
  Gtk::Widget* title_ = nullptr;
  std::function<void()> backAction_;  // null: the navigator's back
  Gtk::Overlay overlay_;
  Gtk::ScrolledWindow scroller_;
  Gtk::Box body_{Gtk::Orientation::VERTICAL, 12};
  ListStateView state_;
  std::optional<ListFacts> list_;
  Gtk::Box footer_{Gtk::Orientation::VERTICAL, 0};
  Gtk::Widget* clamp_ = nullptr;
  Glib::RefPtr<Gio::SimpleActionGroup> actions_ = Gio::SimpleActionGroup::create();
  sigc::connection pendingRefresh_;
  // Expires with the page: a screen the page followed may outlive it and still call.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv::gtk

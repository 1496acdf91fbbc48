#pragma once
// The nearby tab (NearbyViewController): the filter bar with its three drop-downs and
// the paged store list, the keyword screen with its history, and the map face with the
// stores around the member as pins. Each face is built once; one list view shows the
// rows of the face on show (stores, history words, a drop-down's choices).
#include <array>
#include <memory>

#include "apps/gtk/pin_map.h"
#include "apps/gtk/row_list.h"
#include "apps/gtk/screen_page.h"
#include "features/discovery/nearby_view_controller.h"

namespace qmv::gtk {

// A row of the nearby list, whatever the face.
struct NearbyRow {
  enum class Kind { Store, History, Category, SubCategory, Area, Sort };
  Kind kind = Kind::Store;
  std::size_t index = 0;  // in the core's list of that kind
  RowTexts texts;
  StoreInfoModel store;  // Store rows
};

class NearbyPage : public ScreenPage {
 public:
  // `screen` is the tab's screen, shared with the application delegate's hand-offs.
  NearbyPage(PageContext& context, std::shared_ptr<NearbyViewController> screen);
  ~NearbyPage() override;
  void refresh() override;
  NearbyViewController& screen() { return *screen_; }
  PinMap& map() { return map_; }
  const RowList<NearbyRow>& rows() const { return rows_; }

  // The keyword face: the search field with the history under it.
  void showSearch(bool shown);

 private:
  void buildSearchFace();
  void buildListFace();
  std::vector<NearbyRow> searchRows();
  std::vector<NearbyRow> filterRows();
  void showPins();
  // The map's height on a page of this size.
  static int mapHeightFor(int width, int height);
  // Gives the map its share of the page's height when the page's size changed; true
  // (the frame callback stays).
  bool fitMap();
  void openRow(guint position);

  std::shared_ptr<NearbyViewController> screen_;
  RowList<NearbyRow> rows_;
  Gtk::Stack faces_;
  PinMap map_;
  GtkWidget* mapHeight_ = nullptr;  // the clamp that sizes the map, owned by faces_
  guint fitTick_ = 0;
  std::string shownPins_;  // what the map shows, so that a redraw does not re-centre it
  Gtk::SearchEntry* keyword_ = nullptr;
  Gtk::Label* historyTitle_ = nullptr;
  Gtk::Button* clear_ = nullptr;
  Gtk::Label* empty_ = nullptr;
  struct FilterFace {
    Gtk::Label* title = nullptr;
    Gtk::Image* arrow = nullptr;
  };
  std::array<FilterFace, 3> filters_{};
  Gtk::Button* more_ = nullptr;
  Gtk::Button* faceSwitch_ = nullptr;    // between the list and the map
  Gtk::Button* clearKeyword_ = nullptr;  // over the filters while a keyword names the list
  Gtk::Label* keywordShown_ = nullptr;
  bool searching_ = false;
  std::function<void(const std::string&)> coreSearch_;
  std::function<void()> coreClear_;
};

}  // namespace qmv::gtk

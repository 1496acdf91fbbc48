#pragma once
// A libshumate map with pins over the configured tiles (a Web Mercator URL template:
// OpenStreetMap's, a configured server's, or the embedded sandbox's own map). Pins come
// in GCJ-02 (the datum the core hands to maps); tiles are WGS-84, so each pin is converted
// before it is placed. Pin titles that
// would cover one another are thinned after every move and zoom (the earlier pin keeps
// its title); the member's own position is a marker of its own; the scale sits at the
// top so that the tiles' attribution at the bottom never covers it.
#include <gtkmm.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/common/coordinate.h"
#include "shell/app_config.h"

typedef struct _ShumateSimpleMap ShumateSimpleMap;
typedef struct _ShumateMarkerLayer ShumateMarkerLayer;

namespace qmv::gtk {

class PinMap {
 public:
  struct Pin {
    Coordinate gcj;
    std::string title;
    std::string subtitle;
    std::function<void()> tapped;  // may be empty
  };

  explicit PinMap(const MapTiles& tiles);
  ~PinMap();
  PinMap(const PinMap&) = delete;
  PinMap& operator=(const PinMap&) = delete;

  Gtk::Widget& widget() { return *widget_; }
  // Replaces the pins and centres on the first (or on `centreGcj` when given).
  void setPins(std::vector<Pin> pins, std::optional<Coordinate> centreGcj = std::nullopt);
  std::size_t pinCount() const { return pins_.size(); }
  // The member's position (WGS-84, as located); empty takes the marker away.
  void setMyLocation(std::optional<Coordinate> wgs);
  // Whether pin `i`'s title is drawn, as the last thinning left it, and the zoom level
  // that thinning was for (the markers are laid out for it in the same frame).
  bool titleShown(std::size_t i) const;
  double placedZoom() const { return placedZoom_; }

 private:
  // Thins the titles when the view moved, zoomed or changed size since the last frame.
  void placeTitles();

  ShumateSimpleMap* map_;
  ShumateMarkerLayer* layer_;
  Gtk::Widget* widget_;
  std::vector<Pin> pins_;
  std::vector<GtkWidget*> titles_;  // owned by the markers
  struct TitleSize {
    int width = 0;
    int height = 0;
  };
  std::vector<TitleSize> sizes_;     // per pin, its bubble as measured with the title shown
  GtkWidget* myLocation_ = nullptr;  // a marker in layer_, or null
  bool titlesDirty_ = true;
  int placedWidth_ = 0;
  int placedHeight_ = 0;
  double placedZoom_ = -1;
  guint tick_ = 0;
};

}  // namespace qmv::gtk

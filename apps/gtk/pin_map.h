#pragma once
// A libshumate map with pins. Pins come in GCJ-02 (the datum the core hands to maps);
// OpenStreetMap tiles are WGS-84, so each pin is converted before it is placed. Without
// reachable tiles the map is an empty canvas that still shows the pins.
#include <gtkmm.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/common/coordinate.h"

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

  PinMap();
  ~PinMap();
  PinMap(const PinMap&) = delete;
  PinMap& operator=(const PinMap&) = delete;

  Gtk::Widget& widget() { return *widget_; }
  // Replaces the pins and centres on the first (or on `centreGcj` when given).
  void setPins(std::vector<Pin> pins, std::optional<Coordinate> centreGcj = std::nullopt);
  std::size_t pinCount() const { return pins_.size(); }

 private:
  ShumateSimpleMap* map_;
  ShumateMarkerLayer* layer_;
  Gtk::Widget* widget_;
  std::vector<Pin> pins_;
};

}  // namespace qmv::gtk

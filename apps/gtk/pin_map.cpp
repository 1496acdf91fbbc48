#include "apps/gtk/pin_map.h"

#include <shumate/shumate.h>

#include <functional>

#include "apps/gtk/gtk_texts.h"
#include "features/discovery/location_converter.h"
#include "features/discovery/map_label_layout.h"

namespace qmv::gtk {

namespace {

constexpr guint kMinZoom = 0;
constexpr guint kMaxZoom = 19;
constexpr guint kTileSide = 256;
// Below this the map is a strip; above it the map takes what its page gives it.
constexpr int kMinHeight = 240;

// The map's own zoom buttons carry only English tooltips: they get names of this client's.
void nameZoomButtons(GtkWidget* root) {
  for (GtkWidget* child = gtk_widget_get_first_child(root); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    GtkWidget* face = GTK_IS_BUTTON(child) ? gtk_button_get_child(GTK_BUTTON(child)) : nullptr;
    const char* icon = face != nullptr && GTK_IS_IMAGE(face) ? gtk_image_get_icon_name(GTK_IMAGE(face)) : nullptr;
    const char* name = icon == nullptr                          ? nullptr
                       : g_str_equal(icon, "zoom-in-symbolic")  ? gtk_texts::kZoomIn
                       : g_str_equal(icon, "zoom-out-symbolic") ? gtk_texts::kZoomOut
                                                                : nullptr;
    if (name != nullptr) {
      gtk_accessible_update_property(GTK_ACCESSIBLE(child), GTK_ACCESSIBLE_PROPERTY_LABEL, name, -1);
      gtk_widget_set_tooltip_text(child, name);
    }
    nameZoomButtons(child);
  }
}

}  // namespace

PinMap::PinMap(const MapTiles& tiles) : map_(shumate_simple_map_new()) {
  g_object_ref_sink(map_);
  // An id per template unless named, so that tiles of one server never pass for another's.
  const std::string id = !tiles.cacheName.empty()
                             ? tiles.cacheName
                             : "qmv-" + std::to_string(std::hash<std::string>{}(tiles.urlTemplate));
  ShumateRasterRenderer* source = shumate_raster_renderer_new_full_from_url(
      id.c_str(), "qmv", tiles.attribution.c_str(), "", kMinZoom, kMaxZoom, kTileSide, SHUMATE_MAP_PROJECTION_MERCATOR,
      tiles.urlTemplate.c_str());
  shumate_simple_map_set_map_source(map_, SHUMATE_MAP_SOURCE(source));
  g_object_unref(source);
  ShumateViewport* viewport = shumate_simple_map_get_viewport(map_);
  shumate_viewport_set_zoom_level(viewport, 14);
  layer_ = shumate_marker_layer_new(viewport);
  shumate_simple_map_add_overlay_layer(map_, SHUMATE_LAYER(layer_));
  gtk_widget_set_vexpand(GTK_WIDGET(map_), TRUE);
  gtk_widget_set_size_request(GTK_WIDGET(map_), -1, kMinHeight);
  // The attribution and the scale share the bottom edge and meet on a phone's width.
  if (ShumateScale* scale = shumate_simple_map_get_scale(map_)) {
    gtk_widget_set_valign(GTK_WIDGET(scale), GTK_ALIGN_START);
    shumate_scale_set_unit(scale, SHUMATE_UNIT_METRIC);
  }
  g_signal_connect_swapped(viewport, "notify", G_CALLBACK(+[](PinMap* self) { self->titlesDirty_ = true; }), this);
  tick_ = gtk_widget_add_tick_callback(
      GTK_WIDGET(map_),
      +[](GtkWidget*, GdkFrameClock*, gpointer self) -> gboolean {
        static_cast<PinMap*>(self)->placeTitles();
        return G_SOURCE_CONTINUE;
      },
      this, nullptr);
  nameZoomButtons(GTK_WIDGET(map_));
  widget_ = Glib::wrap(GTK_WIDGET(map_));
}

PinMap::~PinMap() {
  gtk_widget_remove_tick_callback(GTK_WIDGET(map_), tick_);
  g_signal_handlers_disconnect_by_data(shumate_simple_map_get_viewport(map_), this);
  g_object_unref(map_);
}

bool PinMap::titleShown(std::size_t i) const { return i < titles_.size() && gtk_widget_get_visible(titles_[i]); }

void PinMap::placeTitles() {
  GtkWidget* map = GTK_WIDGET(map_);
  const int width = gtk_widget_get_width(map);
  const int height = gtk_widget_get_height(map);
  if (!titlesDirty_ && width == placedWidth_ && height == placedHeight_) return;
  titlesDirty_ = false;
  placedWidth_ = width;
  placedHeight_ = height;
  ShumateViewport* viewport = shumate_simple_map_get_viewport(map_);
  placedZoom_ = shumate_viewport_get_zoom_level(viewport);
  std::vector<LabelBox> boxes;
  boxes.reserve(titles_.size());
  for (std::size_t i = 0; i < titles_.size(); ++i) {
    const Coordinate wgs = LocationConverter::transformFromGCJToWGS(pins_[i].gcj);
    double x = 0;
    double y = 0;
    shumate_viewport_location_to_widget_coords(viewport, map, wgs.latitude, wgs.longitude, &x, &y);
    // The marker's bubble (title over pin) is centred on its place. A hidden title
    // measures nothing, so each bubble is measured once while its title is shown.
    if (sizes_[i].height == 0) {
      GtkWidget* bubble = gtk_widget_get_parent(gtk_widget_get_parent(titles_[i]));
      gtk_widget_measure(bubble, GTK_ORIENTATION_HORIZONTAL, -1, nullptr, &sizes_[i].width, nullptr, nullptr);
      gtk_widget_measure(bubble, GTK_ORIENTATION_VERTICAL, -1, nullptr, &sizes_[i].height, nullptr, nullptr);
    }
    const TitleSize& size = sizes_[i];
    boxes.push_back({x - size.width / 2.0, y - size.height / 2.0, static_cast<double>(size.width),
                     static_cast<double>(size.height)});
  }
  const std::vector<bool> shown = shownLabels(boxes, 2);
  for (std::size_t i = 0; i < titles_.size(); ++i) {
    // Not measurable yet (the map is not on screen): shown, and tried again next frame.
    if (sizes_[i].height == 0) titlesDirty_ = true;
    gtk_widget_set_visible(titles_[i], shown[i] || sizes_[i].height == 0);
  }
}

void PinMap::setMyLocation(std::optional<Coordinate> wgs) {
  // The pages set it on every redraw; the marker is made again only when it moved.
  if (myLocation_ != nullptr && wgs &&
      shumate_location_get_latitude(SHUMATE_LOCATION(myLocation_)) == wgs->latitude &&
      shumate_location_get_longitude(SHUMATE_LOCATION(myLocation_)) == wgs->longitude) {
    return;
  }
  if (myLocation_ != nullptr) {
    shumate_marker_layer_remove_marker(layer_, SHUMATE_MARKER(myLocation_));
    myLocation_ = nullptr;
  }
  if (!wgs) return;
  GtkWidget* dot = gtk_image_new_from_icon_name("find-location-symbolic");
  gtk_widget_add_css_class(dot, "my-location");
  gtk_widget_set_name(dot, "my-location");
  gtk_accessible_update_property(GTK_ACCESSIBLE(dot), GTK_ACCESSIBLE_PROPERTY_LABEL, gtk_texts::kMyLocation, -1);
  gtk_widget_set_tooltip_text(dot, gtk_texts::kMyLocation);
  ShumateMarker* marker = shumate_marker_new();
  shumate_marker_set_child(marker, dot);
  shumate_location_set_location(SHUMATE_LOCATION(marker), wgs->latitude, wgs->longitude);
  shumate_marker_layer_add_marker(layer_, marker);
  myLocation_ = GTK_WIDGET(marker);
}

void PinMap::setPins(std::vector<Pin> pins, std::optional<Coordinate> centreGcj) {
  std::optional<Coordinate> me;
  if (myLocation_ != nullptr) {
    me = Coordinate{shumate_location_get_latitude(SHUMATE_LOCATION(myLocation_)),
                    shumate_location_get_longitude(SHUMATE_LOCATION(myLocation_))};
  }
  shumate_marker_layer_remove_all(layer_);
  myLocation_ = nullptr;
  titles_.clear();
  sizes_.clear();
  titlesDirty_ = true;
  pins_ = std::move(pins);
  for (std::size_t i = 0; i < pins_.size(); ++i) {
    const Pin& pin = pins_[i];
    const Coordinate wgs = LocationConverter::transformFromGCJToWGS(pin.gcj);
    GtkWidget* button = gtk_button_new();
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* title = gtk_label_new(pin.title.c_str());
    gtk_widget_add_css_class(title, "pin-title");
    gtk_box_append(GTK_BOX(box), title);
    titles_.push_back(title);
    sizes_.push_back({});
    gtk_box_append(GTK_BOX(box), gtk_image_new_from_icon_name("mark-location-symbolic"));
    gtk_button_set_child(GTK_BUTTON(button), box);
    gtk_widget_add_css_class(button, "pin");
    gtk_widget_set_tooltip_text(button, pin.subtitle.c_str());
    gtk_widget_set_name(button, "pin");
    // The title shown on the pin is its name; the tooltip only adds to it.
    gtk_accessible_update_property(GTK_ACCESSIBLE(button), GTK_ACCESSIBLE_PROPERTY_LABEL, pin.title.c_str(), -1);
    if (pin.tapped) {
      auto* tapped = new std::function<void()>(pin.tapped);
      g_signal_connect_data(button, "clicked", G_CALLBACK(+[](GtkButton*, gpointer data) {
                              (*static_cast<std::function<void()>*>(data))();
                            }),
                            tapped, [](gpointer data, GClosure*) { delete static_cast<std::function<void()>*>(data); },
                            GConnectFlags(0));
    }
    ShumateMarker* marker = shumate_marker_new();
    shumate_marker_set_child(marker, button);
    shumate_location_set_location(SHUMATE_LOCATION(marker), wgs.latitude, wgs.longitude);
    shumate_marker_layer_add_marker(layer_, marker);
  }
  setMyLocation(me);
  std::optional<Coordinate> centre = centreGcj;
  if (!centre && !pins_.empty()) centre = pins_.front().gcj;
  if (centre) {
    const Coordinate wgs = LocationConverter::transformFromGCJToWGS(*centre);
    shumate_map_center_on(shumate_simple_map_get_map(map_), wgs.latitude, wgs.longitude);
  }
}

}  // namespace qmv::gtk

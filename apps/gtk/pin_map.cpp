#include "apps/gtk/pin_map.h"

#include <shumate/shumate.h>

#include "apps/gtk/gtk_texts.h"
#include "features/discovery/location_converter.h"

namespace qmv::gtk {

namespace {

// The map's own zoom buttons carry only English tooltips: they get names of this client's.
void nameZoomButtons(GtkWidget* root) {
  for (GtkWidget* child = gtk_widget_get_first_child(root); child != nullptr; child = gtk_widget_get_next_sibling(child)) {
    GtkWidget* face = GTK_IS_BUTTON(child) ? gtk_button_get_child(GTK_BUTTON(child)) : nullptr;
    const char* icon = face != nullptr && GTK_IS_IMAGE(face) ? gtk_image_get_icon_name(GTK_IMAGE(face)) : nullptr;
    const char* name = icon == nullptr                                 ? nullptr
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

PinMap::PinMap() : map_(shumate_simple_map_new()) {
  g_object_ref_sink(map_);
  ShumateMapSourceRegistry* registry = shumate_map_source_registry_new_with_defaults();
  ShumateMapSource* source = shumate_map_source_registry_get_by_id(registry, SHUMATE_MAP_SOURCE_OSM_MAPNIK);
  if (source != nullptr) shumate_simple_map_set_map_source(map_, source);
  g_object_unref(registry);
  ShumateViewport* viewport = shumate_simple_map_get_viewport(map_);
  shumate_viewport_set_zoom_level(viewport, 14);
  layer_ = shumate_marker_layer_new(viewport);
  shumate_simple_map_add_overlay_layer(map_, SHUMATE_LAYER(layer_));
  gtk_widget_set_vexpand(GTK_WIDGET(map_), TRUE);
  gtk_widget_set_size_request(GTK_WIDGET(map_), -1, 320);
  nameZoomButtons(GTK_WIDGET(map_));
  widget_ = Glib::wrap(GTK_WIDGET(map_));
}

PinMap::~PinMap() { g_object_unref(map_); }

void PinMap::setPins(std::vector<Pin> pins, std::optional<Coordinate> centreGcj) {
  shumate_marker_layer_remove_all(layer_);
  pins_ = std::move(pins);
  for (std::size_t i = 0; i < pins_.size(); ++i) {
    const Pin& pin = pins_[i];
    const Coordinate wgs = LocationConverter::transformFromGCJToWGS(pin.gcj);
    GtkWidget* button = gtk_button_new();
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* title = gtk_label_new(pin.title.c_str());
    gtk_widget_add_css_class(title, "pin-title");
    gtk_box_append(GTK_BOX(box), title);
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
  std::optional<Coordinate> centre = centreGcj;
  if (!centre && !pins_.empty()) centre = pins_.front().gcj;
  if (centre) {
    const Coordinate wgs = LocationConverter::transformFromGCJToWGS(*centre);
    shumate_map_center_on(shumate_simple_map_get_map(map_), wgs.latitude, wgs.longitude);
  }
}

}  // namespace qmv::gtk

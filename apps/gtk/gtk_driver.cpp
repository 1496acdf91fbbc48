#include "apps/gtk/gtk_driver.h"

#include <adwaita.h>
#include <gtkmm/init.h>

#include "apps/gtk/chinese_locale.h"
#include "apps/gtk/gtk_application.h"
#include "apps/gtk/main_view.h"
#include "apps/gtk/renderer_choice.h"
#include "core/session/global_data.h"
#include "core/storage/db_util.h"
#include "platform/linux/glib_main_loop.h"

namespace qmv::gtk {

bool GtkDriver::initToolkit() {
  static const bool ok = [] {
    speakChinese();
    chooseRenderer();
    if (!gtk_init_check()) return false;
    adw_init();
    Gtk::init_gtkmm_internals();
    loadStyle();
    return true;
  }();
  return ok;
}

GtkDriver::GtkDriver(const std::string& home, const std::string& at) {
  // Each driver is one start of the application: no session carries over.
  GlobalData::resetSharedInstance();
  DBUtil::resetManagersForTesting();
  FrontEndOptions options;
  options.launch.home = home;
  options.launch.at = at;
  options.geoClue = false;
  frontEnd_ = std::make_unique<GtkFrontEnd>(options);
  status_ = frontEnd_->start();
  if (!status_.ok()) return;
  window_ = new Gtk::Window();
  window_->set_default_size(kWidth, kHeight);
  frontEnd_->attach(*window_);
  window_->present();
  settle();
}

GtkDriver::~GtkDriver() {
  frontEnd_.reset();
  delete window_;
  GlobalData::resetSharedInstance();
  DBUtil::resetManagersForTesting();
}

bool GtkDriver::waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout) {
  return frontEnd_->loop().runUntil(done, timeout);
}

void GtkDriver::settle(std::chrono::milliseconds duration) {
  frontEnd_->loop().runUntil([] { return false; }, duration);
}

Gtk::Widget& GtkDriver::top() {
  frontEnd_->view().sync();
  Gtk::Widget* page = frontEnd_->view().topPage();
  return page != nullptr ? *page : static_cast<Gtk::Widget&>(frontEnd_->view());
}

bool GtkDriver::resize(int width, int height) {
  window_->set_default_size(width, height);
  const bool done = waitUntil([&] { return frontEnd_->view().get_width() == width; }, std::chrono::seconds(5));
  settle();
  return done;
}

std::string GtkDriver::topName() { return top().get_name(); }

bool GtkDriver::renderToPng(Gtk::Widget& widget, const std::string& path) {
  const int width = widget.get_width();
  const int height = widget.get_height();
  if (width <= 0 || height <= 0) return false;
  GdkPaintable* paintable = gtk_widget_paintable_new(widget.gobj());
  GtkSnapshot* snapshot = gtk_snapshot_new();
  // The window's background first, since a page leaves it to the window.
  const graphene_rect_t bounds = GRAPHENE_RECT_INIT(0, 0, static_cast<float>(width), static_cast<float>(height));
  GdkRGBA background;
  gdk_rgba_parse(&background, adw_style_manager_get_dark(adw_style_manager_get_default()) ? "#242424" : "#fafafa");
  gtk_snapshot_append_color(snapshot, &background, &bounds);
  gdk_paintable_snapshot(paintable, snapshot, width, height);
  GskRenderNode* node = gtk_snapshot_free_to_node(snapshot);
  bool written = false;
  if (node != nullptr) {
    GskRenderer* renderer = gtk_native_get_renderer(gtk_widget_get_native(widget.gobj()));
    GdkTexture* texture = gsk_renderer_render_texture(renderer, node, &bounds);
    written = gdk_texture_save_to_png(texture, path.c_str()) != FALSE;
    g_object_unref(texture);
    gsk_render_node_unref(node);
  }
  g_object_unref(paintable);
  return written;
}

}  // namespace qmv::gtk

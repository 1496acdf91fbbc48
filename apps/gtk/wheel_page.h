#pragma once
// The prize wheel: the period, the spins left and the rule over the face, drawn with
// GtkSnapshot. A spin turns the face a few rounds and stops it on the sector the server
// drew; the prize shows once it stands still.
//
// The face is the wheel's own picture ("imgURL"), which carries each sector's prize text
// (the record names no sector's prize but the one drawn): sector 0 centred at the top of
// the picture, the others following clockwise, as the pointer counts them. Until the
// picture arrives, or when it cannot be read, plain sectors stand in for it.
#include <gdk/gdk.h>

#include <functional>
#include <string>

#include "apps/gtk/screen_page.h"
#include "core/images/image_ticket.h"
#include "features/wheel/wheel_view_controller.h"

namespace qmv {
class ImageLoader;
}

namespace qmv::gtk {

class WheelFace : public Gtk::Widget {
 public:
  static constexpr int kSize = 280;
  static constexpr double kSpinSeconds = 2.5;

  // `pictures` may be null: the plain sectors then stay.
  explicit WheelFace(ImageLoader* pictures = nullptr);
  ~WheelFace() override;

  // The face's picture; the same URL again keeps what is shown or asked, "" drops it.
  void setPicture(const std::string& url);
  bool showsPicture() const { return texture_ != nullptr; }
  void setSectors(int count);
  // Puts the pointer on `sector` at once (no spin running).
  void restOn(int sector);
  // Turns at least three rounds, slowing down, and stops with the pointer on `sector`.
  void spinTo(int sector, std::function<void()> stopped);
  bool spinning() const { return tick_ != 0; }
  // The sector under the pointer as drawn now; -1 without sectors.
  int pointedSector() const;

 protected:
  void snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) override;
  void measure_vfunc(Gtk::Orientation orientation, int forSize, int& minimum, int& natural, int& minimumBaseline,
                     int& naturalBaseline) const override;

 private:
  void stop();
  void drawPicture(GtkSnapshot* snapshot, double cx, double cy, double radius) const;

  ImageLoader* pictures_;
  std::string url_;
  ImageTicket ticket_;
  GdkTexture* texture_ = nullptr;  // owned
  int sectors_ = 0;
  // Where the pointer is, in sectors from the start of sector 0 (sector i spans [i, i+1)).
  double position_ = 0.5;
  double from_ = 0;
  double to_ = 0;
  gint64 startTime_ = -1;
  guint tick_ = 0;
  std::function<void()> stopped_;
};

class WheelPage : public ScreenPage {
 public:
  explicit WheelPage(PageContext& context);
  void refresh() override;
  WheelFace& face() { return face_; }
  WheelViewController& screen() { return screen_; }

 private:
  WheelViewController screen_;
  WheelFace face_;
  Gtk::Label* period_ = nullptr;
  Gtk::Label* left_ = nullptr;
  Gtk::Label* prize_ = nullptr;
  Gtk::Label* rule_ = nullptr;
  Gtk::Button* spin_ = nullptr;
};

}  // namespace qmv::gtk

#include "apps/gtk/wheel_page.h"

#include <cmath>
#include <numbers>

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/page_context.h"
#include "apps/gtk/ui.h"
#include "core/images/image_loader.h"
#include "features/wheel/wheel_texts.h"

namespace qmv::gtk {

WheelFace::WheelFace(ImageLoader* pictures) : Glib::ObjectBase("QmvWheelFace"), pictures_(pictures) {
  set_name("wheel-face");
  set_halign(Gtk::Align::CENTER);
}

WheelFace::~WheelFace() {
  ticket_.cancel();
  if (tick_ != 0) remove_tick_callback(tick_);
  g_clear_object(&texture_);
}

void WheelFace::setPicture(const std::string& url) {
  if (url == url_) return;
  url_ = url;
  ticket_ = ImageTicket();  // an answer for the old address must not land
  g_clear_object(&texture_);
  queue_draw();
  if (url.empty() || pictures_ == nullptr) return;
  // Decoded at twice the drawn size, for scaled displays.
  ticket_ = pictures_->load(url, ImageSize{2 * kSize, 2 * kSize}, [this](ImageOutcome outcome) {
    GdkTexture* texture = ui::newTexture(std::move(outcome.image));
    if (texture == nullptr) return;
    g_clear_object(&texture_);
    texture_ = texture;
    queue_draw();
  });
}

void WheelFace::setSectors(int count) {
  sectors_ = count > 0 ? count : 0;
  queue_draw();
}

void WheelFace::restOn(int sector) {
  if (spinning()) return;
  position_ = sector + 0.5;
  queue_draw();
}

void WheelFace::spinTo(int sector, std::function<void()> stopped) {
  if (tick_ != 0) stop();
  if (sectors_ <= 0) {
    if (stopped) stopped();
    return;
  }
  from_ = position_;
  // The next round boundary after the current one, then three more, then the sector.
  to_ = (std::floor(position_ / sectors_) + 4) * sectors_ + sector + 0.5;
  startTime_ = -1;
  stopped_ = std::move(stopped);
  tick_ = add_tick_callback([this](const Glib::RefPtr<Gdk::FrameClock>& clock) {
    const gint64 now = clock->get_frame_time();
    if (startTime_ < 0) startTime_ = now;
    const double t = std::min(1.0, static_cast<double>(now - startTime_) / (kSpinSeconds * 1e6));
    const double eased = 1 - std::pow(1 - t, 3);  // quick start, slow stop
    position_ = from_ + (to_ - from_) * eased;
    queue_draw();
    if (t < 1) return true;
    tick_ = 0;
    stop();
    return false;
  });
}

void WheelFace::stop() {
  if (tick_ != 0) {
    remove_tick_callback(tick_);
    tick_ = 0;
  }
  position_ = to_;
  queue_draw();
  if (auto stopped = std::move(stopped_)) {
    stopped_ = nullptr;
    stopped();
  }
}

namespace {

// The pointer over the top of the face: a deeper shade of the application's orange,
// edged in white, dark enough for the light page and light enough for the dark one
// (3:1 against either).
void drawPointer(Cairo::Context& cr, double cx, double cy, double radius) {
  cr.move_to(cx - 11, cy - radius - 11);
  cr.line_to(cx + 11, cy - radius - 11);
  cr.line_to(cx, cy - radius + 16);
  cr.close_path();
  cr.set_source_rgb(220 / 255.0, 100 / 255.0, 10 / 255.0);
  cr.fill_preserve();
  cr.set_source_rgb(1, 1, 1);
  cr.set_line_width(2);
  cr.stroke();
}

}  // namespace

int WheelFace::pointedSector() const {
  if (sectors_ <= 0) return -1;
  const double at = std::fmod(position_, sectors_);
  return static_cast<int>(std::floor(at < 0 ? at + sectors_ : at)) % sectors_;
}

void WheelFace::measure_vfunc(Gtk::Orientation, int, int& minimum, int& natural, int& minimumBaseline,
                              int& naturalBaseline) const {
  minimum = natural = kSize;
  minimumBaseline = naturalBaseline = -1;
}

// The picture turned with the face, cut to its circle.
void WheelFace::drawPicture(GtkSnapshot* snapshot, double cx, double cy, double radius) const {
  const auto r = static_cast<float>(radius);
  const graphene_rect_t bounds =
      GRAPHENE_RECT_INIT(static_cast<float>(cx) - r, static_cast<float>(cy) - r, 2 * r, 2 * r);
  GskRoundedRect circle;
  gsk_rounded_rect_init_from_rect(&circle, &bounds, r);
  gtk_snapshot_push_rounded_clip(snapshot, &circle);
  gtk_snapshot_save(snapshot);
  const graphene_point_t centre = GRAPHENE_POINT_INIT(static_cast<float>(cx), static_cast<float>(cy));
  gtk_snapshot_translate(snapshot, &centre);
  if (sectors_ > 0) gtk_snapshot_rotate(snapshot, static_cast<float>((0.5 - position_) * 360.0 / sectors_));
  const graphene_rect_t face = GRAPHENE_RECT_INIT(-r, -r, 2 * r, 2 * r);
  gtk_snapshot_append_texture(snapshot, texture_, &face);
  gtk_snapshot_restore(snapshot);
  gtk_snapshot_pop(snapshot);
}

void WheelFace::snapshot_vfunc(const Glib::RefPtr<Gtk::Snapshot>& snapshot) {
  const int width = get_width();
  const int height = get_height();
  const double cx = width / 2.0;
  const double cy = height / 2.0;
  const double radius = std::min(width, height) / 2.0 - 12;
  if (radius <= 0) return;
  // The picture first: the pointer is drawn over it.
  if (texture_ != nullptr) drawPicture(snapshot->gobj(), cx, cy, radius);
  auto cr = snapshot->append_cairo(Gdk::Rectangle(0, 0, width, height));
  constexpr double kTurn = 2 * std::numbers::pi;
  constexpr double kTop = -std::numbers::pi / 2;
  if (texture_ != nullptr) {
    drawPointer(*cr, cx, cy, radius);
    return;
  }
  // The hub and the pointer in the text's colour, which the light and dark styles
  // each set against their background.
  const Gdk::RGBA ink = get_style_context()->get_color();
  if (sectors_ == 0) {
    cr->set_source_rgba(ink.get_red(), ink.get_green(), ink.get_blue(), 0.15);
    cr->arc(cx, cy, radius, 0, kTurn);
    cr->fill();
  }
  // Sector i spans [i, i+1) in sectors; the pointer at the top marks position_.
  for (int i = 0; i < sectors_; ++i) {
    const double start = kTop + (i - position_) * kTurn / sectors_;
    cr->move_to(cx, cy);
    cr->arc(cx, cy, radius, start, start + kTurn / sectors_);
    cr->close_path();
    if (i % 2 == 0) {
      cr->set_source_rgb(0.93, 0.26, 0.21);
    } else {
      cr->set_source_rgb(1.0, 0.84, 0.35);
    }
    cr->fill_preserve();
    cr->set_source_rgb(1, 1, 1);
    cr->set_line_width(2);
    cr->stroke();
  }
  // The hub and the pointer.
  cr->set_source_rgb(ink.get_red(), ink.get_green(), ink.get_blue());
  cr->arc(cx, cy, radius * 0.12, 0, kTurn);
  cr->fill();
  drawPointer(*cr, cx, cy, radius);
}

WheelPage::WheelPage(PageContext& context)
    : ScreenPage(context, wheel_texts::kTitle, true), face_(context.pictures()) {
  setTitle(screen_.title());
  follow(screen_);
  period_ = ui::label("", "dim-label");
  period_->set_name("period");
  left_ = ui::label("", "heading");
  left_->set_name("left-count");
  body().append(*period_);
  body().append(*left_);
  body().append(face_);
  spin_ = Gtk::make_managed<Gtk::Button>();
  spin_->set_icon_name("media-playlist-repeat-symbolic");
  spin_->set_name("spin");
  ui::nameIcon(*spin_, gtk_texts::kSpin);
  spin_->add_css_class("suggested-action");
  spin_->add_css_class("circular");
  spin_->set_halign(Gtk::Align::CENTER);
  spin_->signal_clicked().connect([this] {
    if (screen_.spinAction()) refreshSoon();
  });
  body().append(*spin_);
  prize_ = ui::label("", "title-2");
  prize_->set_name("prize");
  prize_->set_xalign(0.5);
  body().append(*prize_);
  rule_ = ui::label("");
  body().append(*rule_);

  screen_.onLoaded = [this](bool) {
    face_.setSectors(screen_.sectorCount());
    face_.restOn(screen_.restSector());
    refreshSoon();
  };
  screen_.onSpun = [this](bool correct) {
    const auto stop = screen_.stopSector();
    face_.setSectors(screen_.sectorCount());
    if (correct && stop) face_.spinTo(*stop, [this] { refreshSoon(); });
    refreshSoon();
  };
  screen_.wheelNet();
  refresh();
}

void WheelPage::refresh() {
  face_.setPicture(screen_.wheel() ? screen_.wheel()->imgURL : std::string());
  period_->set_text(screen_.periodText());
  left_->set_text(screen_.leftCountText());
  rule_->set_text(screen_.wheel() ? screen_.wheel()->rule : "");
  // The prize shows once the face stands still.
  prize_->set_text(face_.spinning() ? "" : screen_.prize());
  spin_->set_sensitive(!screen_.isSpinning() && !face_.spinning());
}

}  // namespace qmv::gtk

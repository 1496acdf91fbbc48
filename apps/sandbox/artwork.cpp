#include "apps/sandbox/artwork.h"

#include <cairo.h>
#include <pango/pangocairo.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

#include "apps/sandbox/sandbox_texts.h"
#include "core/common/color_contrast.h"
#include "core/common/decoded_image.h"
#include "platform/codecs/image_codecs.h"

namespace qmv::sandbox {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kJpegQuality = 82;
constexpr const char* kFont = "Noto Sans CJK SC";

struct Rgb {
  double r, g, b;
};

// The five colours of the home page's category groups.
constexpr Rgb kFood{255 / 255.0, 106 / 255.0, 39 / 255.0};
constexpr Rgb kLeisure{239 / 255.0, 49 / 255.0, 57 / 255.0};
constexpr Rgb kBeauty{112 / 255.0, 176 / 255.0, 78 / 255.0};
constexpr Rgb kDiscovery{24 / 255.0, 152 / 255.0, 237 / 255.0};
constexpr Rgb kActivity{215 / 255.0, 59 / 255.0, 219 / 255.0};

enum class Pictogram { kBowl, kCup, kCake, kMic, kScissors, kBed, kGift };

Rgb colourOf(int category) {
  switch (category / 10) {
    case 1: return kFood;
    case 2:
    case 3: return kLeisure;
    case 4: return kBeauty;
    default: return kDiscovery;
  }
}

Pictogram pictogramOf(int category) {
  switch (category) {
    case 14:
    case 33: return Pictogram::kCup;
    case 15: return Pictogram::kCake;
    case 21:
    case 24:
    case 60:
    case 61: return Pictogram::kBed;
    case 42:
    case 43:
    case 44: return Pictogram::kScissors;
    default: break;
  }
  switch (category / 10) {
    case 1: return Pictogram::kBowl;
    case 3: return Pictogram::kMic;
    case 4: return Pictogram::kScissors;
    default: return Pictogram::kGift;
  }
}

// A small deterministic generator, so that a record's picture is the same every time.
struct Variation {
  uint64_t state;
  explicit Variation(uint64_t seed) : state(seed * 0x9E3779B97F4A7C15ULL + 0x632BE59BD9B4E019ULL) {}
  double next() {  // [0, 1)
    state ^= state >> 33;
    state *= 0xFF51AFD7ED558CCDULL;
    state ^= state >> 33;
    return static_cast<double>(state >> 11) / 9007199254740992.0;
  }
};

Rgb shade(Rgb c, double factor) {
  const auto f = [factor](double v) { return factor >= 1 ? v + (1 - v) * (factor - 1) : v * factor; };
  return {f(c.r), f(c.g), f(c.b)};
}

// An ARGB surface of the wanted width, drawn in the picture's own coordinates.
class Canvas {
 public:
  Canvas(int width, int height, int wanted) : width_(width), height_(height) {
    const int outWidth = std::clamp(wanted <= 0 ? width : wanted, 1, width);
    const double scale = static_cast<double>(outWidth) / width;
    const int outHeight = std::max(1, static_cast<int>(std::lround(height * scale)));
    surface_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, outWidth, outHeight);
    cr_ = cairo_create(surface_);
    cairo_scale(cr_, scale, scale);
  }
  ~Canvas() {
    cairo_destroy(cr_);
    cairo_surface_destroy(surface_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  cairo_t* cr() const { return cr_; }
  double width() const { return width_; }
  double height() const { return height_; }

  std::string png() {
    cairo_surface_flush(surface_);
    std::string bytes;
    cairo_surface_write_to_png_stream(
        surface_,
        [](void* closure, const unsigned char* data, unsigned int length) {
          static_cast<std::string*>(closure)->append(reinterpret_cast<const char*>(data), length);
          return CAIRO_STATUS_SUCCESS;
        },
        &bytes);
    return bytes;
  }

  std::string jpeg() {
    cairo_surface_flush(surface_);
    DecodedImage image;
    image.width = cairo_image_surface_get_width(surface_);
    image.height = cairo_image_surface_get_height(surface_);
    image.stride = static_cast<std::size_t>(image.width) * 4;
    image.pixels.resize(image.stride * image.height);
    const unsigned char* data = cairo_image_surface_get_data(surface_);
    const int stride = cairo_image_surface_get_stride(surface_);
    for (int y = 0; y < image.height; ++y) {
      const auto* row = reinterpret_cast<const uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
      char* out = image.pixels.data() + y * image.stride;
      for (int x = 0; x < image.width; ++x) {
        const uint32_t p = row[x];  // premultiplied ARGB in a native word, as is RGBA here
        out[4 * x] = static_cast<char>((p >> 16) & 0xFF);
        out[4 * x + 1] = static_cast<char>((p >> 8) & 0xFF);
        out[4 * x + 2] = static_cast<char>(p & 0xFF);
        out[4 * x + 3] = static_cast<char>(p >> 24);
      }
    }
    auto encoded = encodeJpeg(image, kJpegQuality);
    return encoded.ok() ? std::move(encoded).value() : std::string();
  }

 private:
  double width_, height_;
  cairo_surface_t* surface_;
  cairo_t* cr_;
};

void setColour(cairo_t* cr, Rgb c, double alpha = 1) { cairo_set_source_rgba(cr, c.r, c.g, c.b, alpha); }

// `c` deepened as far as white text on it needs: to the normal text's ratio, so that the
// large white titles keep theirs where the soft circles lighten the ground.
Rgb underWhiteText(Rgb c) {
  const auto byte = [](double v) { return static_cast<int>(std::lround(std::clamp(v, 0.0, 1.0) * 255)); };
  const Color deep = readableOn({byte(c.r), byte(c.g), byte(c.b)}, {255, 255, 255}, kNormalTextContrast);
  return {deep.red / 255.0, deep.green / 255.0, deep.blue / 255.0};
}

// A diagonal gradient of `base` whose lightness and angle `v` picks, with soft circles;
// white text reads anywhere on it.
void background(Canvas& canvas, Rgb base, Variation& v) {
  cairo_t* cr = canvas.cr();
  const double angle = v.next() * kPi;
  const double light = 0.8 + v.next() * 0.35;
  const double w = canvas.width(), h = canvas.height();
  const double dx = std::cos(angle) * w / 2, dy = std::sin(angle) * h / 2;
  cairo_pattern_t* gradient = cairo_pattern_create_linear(w / 2 - dx, h / 2 - dy, w / 2 + dx, h / 2 + dy);
  const Rgb from = underWhiteText(shade(base, light * 1.18)), to = underWhiteText(shade(base, light * 0.72));
  cairo_pattern_add_color_stop_rgb(gradient, 0, from.r, from.g, from.b);
  cairo_pattern_add_color_stop_rgb(gradient, 1, to.r, to.g, to.b);
  cairo_set_source(cr, gradient);
  cairo_paint(cr);
  cairo_pattern_destroy(gradient);
  const int circles = 3 + static_cast<int>(v.next() * 4);
  for (int i = 0; i < circles; ++i) {
    cairo_arc(cr, v.next() * w, v.next() * h, (0.08 + v.next() * 0.3) * std::min(w, h) * 1.4, 0, 2 * kPi);
    cairo_set_source_rgba(cr, 1, 1, 1, 0.05 + v.next() * 0.08);
    cairo_fill(cr);
  }
}

// The pictogram in white strokes, centred on (cx, cy), `size` across.
void pictogram(cairo_t* cr, Pictogram kind, double cx, double cy, double size, Rgb ink = {1, 1, 1}) {
  cairo_save(cr);
  cairo_translate(cr, cx - size / 2, cy - size / 2);
  cairo_scale(cr, size / 100, size / 100);
  setColour(cr, ink);
  cairo_set_line_width(cr, 6);
  cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
  switch (kind) {
    case Pictogram::kBowl:
      cairo_move_to(cr, 10, 50);
      cairo_line_to(cr, 90, 50);
      cairo_arc_negative(cr, 50, 50, 40, 0, kPi);
      cairo_close_path(cr);
      cairo_fill(cr);
      for (double x : {35.0, 50.0, 65.0}) {  // steam
        cairo_move_to(cr, x, 40);
        cairo_curve_to(cr, x - 8, 30, x + 8, 22, x, 10);
      }
      cairo_stroke(cr);
      cairo_move_to(cr, 62, 46);  // chopsticks
      cairo_line_to(cr, 92, 8);
      cairo_move_to(cr, 70, 46);
      cairo_line_to(cr, 98, 14);
      cairo_stroke(cr);
      break;
    case Pictogram::kCup:
      cairo_move_to(cr, 18, 30);
      cairo_line_to(cr, 74, 30);
      cairo_line_to(cr, 68, 86);
      cairo_line_to(cr, 24, 86);
      cairo_close_path(cr);
      cairo_fill(cr);
      cairo_arc(cr, 78, 52, 13, -kPi / 2, kPi / 2);
      cairo_stroke(cr);
      for (double x : {32.0, 46.0, 60.0}) {
        cairo_move_to(cr, x, 22);
        cairo_curve_to(cr, x - 6, 15, x + 6, 10, x, 4);
      }
      cairo_stroke(cr);
      break;
    case Pictogram::kCake:
      cairo_rectangle(cr, 14, 58, 72, 32);
      cairo_rectangle(cr, 24, 34, 52, 24);
      cairo_fill(cr);
      for (double x : {34.0, 50.0, 66.0}) {
        cairo_move_to(cr, x, 30);
        cairo_line_to(cr, x, 16);
        cairo_stroke(cr);
        cairo_arc(cr, x, 10, 4, 0, 2 * kPi);
        cairo_fill(cr);
      }
      break;
    case Pictogram::kMic:
      cairo_arc(cr, 50, 28, 18, 0, 2 * kPi);
      cairo_fill(cr);
      cairo_move_to(cr, 42, 44);
      cairo_line_to(cr, 46, 80);
      cairo_line_to(cr, 54, 80);
      cairo_line_to(cr, 58, 44);
      cairo_close_path(cr);
      cairo_fill(cr);
      cairo_arc(cr, 50, 34, 30, kPi * 0.15, kPi * 0.85);
      cairo_stroke(cr);
      cairo_move_to(cr, 50, 80);
      cairo_line_to(cr, 50, 94);
      cairo_move_to(cr, 36, 94);
      cairo_line_to(cr, 64, 94);
      cairo_stroke(cr);
      break;
    case Pictogram::kScissors:
      cairo_arc(cr, 28, 76, 13, 0, 2 * kPi);
      cairo_new_sub_path(cr);
      cairo_arc(cr, 72, 76, 13, 0, 2 * kPi);
      cairo_stroke(cr);
      cairo_move_to(cr, 36, 66);
      cairo_line_to(cr, 78, 8);
      cairo_move_to(cr, 64, 66);
      cairo_line_to(cr, 22, 8);
      cairo_stroke(cr);
      break;
    case Pictogram::kBed:
      cairo_move_to(cr, 8, 22);
      cairo_line_to(cr, 8, 86);
      cairo_move_to(cr, 92, 56);
      cairo_line_to(cr, 92, 86);
      cairo_move_to(cr, 8, 70);
      cairo_line_to(cr, 92, 70);
      cairo_stroke(cr);
      cairo_rectangle(cr, 36, 46, 56, 18);
      cairo_fill(cr);
      cairo_arc(cr, 24, 52, 9, 0, 2 * kPi);
      cairo_fill(cr);
      break;
    case Pictogram::kGift:
      cairo_rectangle(cr, 14, 40, 72, 50);
      cairo_fill(cr);
      cairo_rectangle(cr, 8, 28, 84, 14);
      cairo_fill(cr);
      cairo_move_to(cr, 50, 28);
      cairo_curve_to(cr, 30, 2, 14, 20, 50, 28);
      cairo_move_to(cr, 50, 28);
      cairo_curve_to(cr, 70, 2, 86, 20, 50, 28);
      cairo_stroke(cr);
      break;
  }
  cairo_restore(cr);
}

struct TextStyle {
  double px = 40;
  bool bold = true;
  int lines = 2;
  PangoAlignment align = PANGO_ALIGN_LEFT;
  Rgb colour{1, 1, 1};
  bool shadow = true;
};

// `text` in a box `width` wide from (x, y), wrapped to `style.lines` lines and ellipsized.
// Returns the height used.
double text(cairo_t* cr, const std::string& text, double x, double y, double width, const TextStyle& style) {
  PangoLayout* layout = pango_cairo_create_layout(cr);
  PangoFontDescription* font = pango_font_description_new();
  pango_font_description_set_family(font, kFont);
  pango_font_description_set_weight(font, style.bold ? PANGO_WEIGHT_BOLD : PANGO_WEIGHT_NORMAL);
  pango_font_description_set_absolute_size(font, style.px * PANGO_SCALE);
  pango_layout_set_font_description(layout, font);
  pango_font_description_free(font);
  pango_layout_set_width(layout, static_cast<int>(width * PANGO_SCALE));
  pango_layout_set_wrap(layout, PANGO_WRAP_WORD_CHAR);
  pango_layout_set_ellipsize(layout, PANGO_ELLIPSIZE_END);
  pango_layout_set_height(layout, -style.lines);
  pango_layout_set_alignment(layout, style.align);
  pango_layout_set_text(layout, text.c_str(), -1);
  int w = 0, h = 0;
  pango_layout_get_pixel_size(layout, &w, &h);
  if (style.shadow) {
    cairo_move_to(cr, x + 2, y + 3);
    cairo_set_source_rgba(cr, 0, 0, 0, 0.28);
    pango_cairo_show_layout(cr, layout);
  }
  cairo_move_to(cr, x, y);
  setColour(cr, style.colour);
  pango_cairo_show_layout(cr, layout);
  g_object_unref(layout);
  return h;
}

void roundedRectangle(cairo_t* cr, double x, double y, double w, double h, double r) {
  cairo_new_sub_path(cr);
  cairo_arc(cr, x + w - r, y + r, r, -kPi / 2, 0);
  cairo_arc(cr, x + w - r, y + h - r, r, 0, kPi / 2);
  cairo_arc(cr, x + r, y + h - r, r, kPi / 2, kPi);
  cairo_arc(cr, x + r, y + r, r, kPi, 3 * kPi / 2);
  cairo_close_path(cr);
}

std::string yuan(int64_t fen) {
  std::string text = "¥" + std::to_string(fen / 100);
  if (fen % 100 != 0) text += "." + std::to_string(fen % 100 / 10) + (fen % 10 ? std::to_string(fen % 10) : "");
  return text;
}

// A darker band at the bottom so that the name reads on any gradient.
void captionBand(Canvas& canvas, double top) {
  cairo_t* cr = canvas.cr();
  cairo_pattern_t* band = cairo_pattern_create_linear(0, top, 0, canvas.height());
  cairo_pattern_add_color_stop_rgba(band, 0, 0, 0, 0, 0);
  cairo_pattern_add_color_stop_rgba(band, 1, 0, 0, 0, 0.35);
  cairo_rectangle(cr, 0, top, canvas.width(), canvas.height() - top);
  cairo_set_source(cr, band);
  cairo_fill(cr);
  cairo_pattern_destroy(band);
}

}  // namespace

std::string drawStore(int64_t id, int photo, int category, const std::string& name, int width) {
  Canvas canvas(kStorePhotoWidth, kStorePhotoHeight, width);
  Variation v(static_cast<uint64_t>(id) * 16 + photo);
  background(canvas, colourOf(category), v);
  cairo_t* cr = canvas.cr();
  const double size = 170 + v.next() * 60;
  pictogram(cr, pictogramOf(category), 200 + v.next() * 350, 150 + v.next() * 60, size);
  captionBand(canvas, 280);
  text(cr, name, 40, 360, 670, {52, true, 2});
  TextStyle small{28, false, 1};
  text(cr, photo == 1 ? kArtStorePhoto : kArtStoreDish, 40, 310, 300, small);
  return canvas.jpeg();
}

std::string drawOffer(int64_t id, int category, const std::string& name, int64_t priceFen, int width) {
  Canvas canvas(kOfferWidth, kOfferHeight, width);
  Variation v(static_cast<uint64_t>(id) * 7919);
  background(canvas, colourOf(category), v);
  cairo_t* cr = canvas.cr();
  pictogram(cr, pictogramOf(category), 150 + v.next() * 80, 150, 160 + v.next() * 40);
  captionBand(canvas, 220);
  text(cr, name, 40, 280, 470, {46, true, 2});
  // The price tag: a white label with a notch, the price in the category's colour.
  const std::string price = yuan(priceFen);
  roundedRectangle(cr, 520, 40, 200, 96, 18);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_fill(cr);
  cairo_arc(cr, 545, 88, 8, 0, 2 * kPi);
  setColour(cr, shade(colourOf(category), 0.8));
  cairo_fill(cr);
  TextStyle tag{44, true, 1, PANGO_ALIGN_CENTER, shade(colourOf(category), 0.75), false};
  text(cr, price, 560, 58, 150, tag);
  return canvas.jpeg();
}

std::string drawDescription(int64_t id, int category, const std::string& name, const std::string& body, int width) {
  Canvas canvas(kDescriptionWidth, kDescriptionHeight, width);
  Variation v(static_cast<uint64_t>(id) * 104729);
  cairo_t* cr = canvas.cr();
  cairo_set_source_rgb(cr, 0.98, 0.97, 0.95);
  cairo_paint(cr);
  // A coloured header like the offer's, then the details on paper.
  cairo_save(cr);
  cairo_rectangle(cr, 0, 0, canvas.width(), 420);
  cairo_clip(cr);
  background(canvas, colourOf(category), v);
  pictogram(cr, pictogramOf(category), 375, 180, 220);
  cairo_restore(cr);
  text(cr, name, 40, 450, 670, {48, true, 2, PANGO_ALIGN_LEFT, {0.15, 0.15, 0.15}, false});
  cairo_set_line_width(cr, 2);
  setColour(cr, colourOf(category));
  cairo_move_to(cr, 40, 590);
  cairo_line_to(cr, 710, 590);
  cairo_stroke(cr);
  text(cr, body, 40, 620, 670, {32, false, 6, PANGO_ALIGN_LEFT, {0.3, 0.3, 0.3}, false});
  text(cr, kArtDescriptionNote, 40, 920, 670, {26, false, 1, PANGO_ALIGN_LEFT, {0.55, 0.55, 0.55}, false});
  return canvas.jpeg();
}

std::string drawBanner(int64_t id, const std::string& title, int width) {
  Canvas canvas(kBannerWidth, kBannerHeight, width);
  Variation v(static_cast<uint64_t>(id) * 31337);
  const Rgb colours[] = {kActivity, kFood, kDiscovery, kLeisure, kBeauty};
  const Rgb colour = colours[static_cast<uint64_t>(id) % 5];
  background(canvas, colour, v);
  cairo_t* cr = canvas.cr();
  pictogram(cr, Pictogram::kGift, 600, 150, 190);
  text(cr, title, 50, 90, 480, {64, true, 1});
  roundedRectangle(cr, 50, 190, 170, 56, 28);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_fill(cr);
  text(cr, kArtBannerAction, 50, 198, 170, {30, true, 1, PANGO_ALIGN_CENTER, shade(colour, 0.75), false});
  return canvas.jpeg();
}

std::string drawProduct(int64_t id, const std::string& name, int width) {
  Canvas canvas(kProductSide, kProductSide, width);
  Variation v(static_cast<uint64_t>(id) * 65537);
  background(canvas, kActivity, v);
  cairo_t* cr = canvas.cr();
  cairo_arc(cr, 375, 300, 210, 0, 2 * kPi);
  cairo_set_source_rgba(cr, 1, 1, 1, 0.18);
  cairo_fill(cr);
  pictogram(cr, Pictogram::kGift, 375, 300, 260);
  captionBand(canvas, 520);
  text(cr, name, 40, 600, 670, {54, true, 2, PANGO_ALIGN_CENTER});
  return canvas.jpeg();
}

std::string drawWheel(int64_t id, const std::vector<std::string>& prizes, int width) {
  Canvas canvas(kWheelSide, kWheelSide, width);
  Variation v(static_cast<uint64_t>(id));
  background(canvas, kActivity, v);
  cairo_t* cr = canvas.cr();
  const double cx = 375, cy = 375, radius = 330;
  const size_t n = std::max<size_t>(prizes.size(), 1);
  const double step = 2 * kPi / static_cast<double>(n);
  for (size_t i = 0; i < n; ++i) {
    const double from = -kPi / 2 + static_cast<double>(i) * step - step / 2;
    cairo_move_to(cr, cx, cy);
    cairo_arc(cr, cx, cy, radius, from, from + step);
    cairo_close_path(cr);
    setColour(cr, i % 2 ? Rgb{1, 0.95, 0.8} : Rgb{1, 0.82, 0.35});
    cairo_fill(cr);
    if (i < prizes.size()) {
      cairo_save(cr);
      cairo_translate(cr, cx, cy);
      cairo_rotate(cr, static_cast<double>(i) * step);
      text(cr, prizes[i], -90, -radius + 40, 180, {32, true, 2, PANGO_ALIGN_CENTER, shade(kActivity, 0.6), false});
      cairo_restore(cr);
    }
  }
  // The labels leave a current point behind: without a new path the rim would start with
  // a line drawn across the face from the last label.
  cairo_new_path(cr);
  cairo_set_line_width(cr, 14);
  cairo_arc(cr, cx, cy, radius, 0, 2 * kPi);
  cairo_set_source_rgb(cr, 1, 1, 1);
  cairo_stroke(cr);
  cairo_arc(cr, cx, cy, 70, 0, 2 * kPi);
  setColour(cr, kLeisure);
  cairo_fill(cr);
  text(cr, kArtWheelButton, cx - 70, cy - 24, 140, {40, true, 1, PANGO_ALIGN_CENTER});
  return canvas.jpeg();
}

std::string drawCategoryIcon(int subId, int width) {
  Canvas canvas(kCategoryIconSide, kCategoryIconSide, width);
  cairo_t* cr = canvas.cr();
  const Rgb colour = colourOf(subId);
  cairo_pattern_t* gradient = cairo_pattern_create_linear(0, 0, 96, 96);
  const Rgb light = shade(colour, 1.2), dark = shade(colour, 0.85);
  cairo_pattern_add_color_stop_rgb(gradient, 0, light.r, light.g, light.b);
  cairo_pattern_add_color_stop_rgb(gradient, 1, dark.r, dark.g, dark.b);
  cairo_arc(cr, 48, 48, 46, 0, 2 * kPi);
  cairo_set_source(cr, gradient);
  cairo_fill(cr);
  cairo_pattern_destroy(gradient);
  pictogram(cr, pictogramOf(subId), 48, 48, 52);
  return canvas.png();
}

std::string drawPortrait(const std::string& seed, const std::string& name) {
  Canvas canvas(kPortraitSide, kPortraitSide, kPortraitSide);
  Variation v(std::hash<std::string>{}(seed));
  const Rgb colours[] = {kFood, kLeisure, kBeauty, kDiscovery, kActivity};
  const Rgb colour = shade(colours[static_cast<size_t>(v.next() * 5)], 0.85 + v.next() * 0.25);
  cairo_t* cr = canvas.cr();
  cairo_arc(cr, 128, 128, 126, 0, 2 * kPi);
  setColour(cr, colour);
  cairo_fill(cr);
  // The first character, however many bytes it takes in UTF-8.
  size_t length = name.empty() ? 0 : 1;
  while (length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) ++length;
  text(cr, name.substr(0, length), 0, 60, 256, {120, true, 1, PANGO_ALIGN_CENTER, {1, 1, 1}, false});
  return canvas.png();
}

std::string drawWelcome() {
  Canvas canvas(kWelcomeWidth, kWelcomeHeight, kWelcomeWidth);
  Variation v(2016);
  background(canvas, kFood, v);
  cairo_t* cr = canvas.cr();
  text(cr, "qmv", 0, 380, 720, {150, true, 1, PANGO_ALIGN_CENTER});
  text(cr, kArtWelcomeLine, 0, 600, 720, {48, false, 1, PANGO_ALIGN_CENTER});
  const struct {
    Rgb colour;
    Pictogram kind;
  } groups[] = {{kFood, Pictogram::kBowl},
                {kLeisure, Pictogram::kMic},
                {kBeauty, Pictogram::kScissors},
                {kDiscovery, Pictogram::kBed},
                {kActivity, Pictogram::kGift}};
  double x = 96;
  for (const auto& group : groups) {
    cairo_arc(cr, x, 1000, 56, 0, 2 * kPi);
    cairo_set_source_rgb(cr, 1, 1, 1);
    cairo_fill(cr);
    pictogram(cr, group.kind, x, 1000, 60, group.colour);
    x += 132;
  }
  return canvas.png();
}

}  // namespace qmv::sandbox

#include "platform/linux/pango_text_measurer.h"

#include <pango/pangoft2.h>

#include <algorithm>
#include <cmath>
#include <mutex>

namespace qmv {
namespace {

// One font map for the process, never released: loading fontconfig's font list is the
// costly part of Pango, and tearing a font map down leaks inside pango's fontconfig
// layer. Pango's objects are not thread-safe, so every use of any of them holds the
// one lock.
std::mutex& pangoMutex() {
  static std::mutex mutex;
  return mutex;
}

// REQUIRES: pangoMutex() held.
PangoFontMap* sharedFontMap() {
  static PangoFontMap* fontMap = [] {
    PangoFontMap* map = pango_ft2_font_map_new();
    pango_ft2_font_map_set_resolution(PANGO_FT2_FONT_MAP(map), 72.0, 72.0);
    return map;
  }();
  return fontMap;
}

}  // namespace

struct PangoTextMeasurer::Impl {
  std::string family;
  PangoFontMap* fontMap = nullptr;  // not owned
  PangoContext* context = nullptr;
  PangoLayout* layout = nullptr;
  PangoFontDescription* font = nullptr;

  // REQUIRES: pangoMutex() held.
  void setSize(double points) {
    pango_font_description_set_absolute_size(font, points * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
  }
};

PangoTextMeasurer::PangoTextMeasurer(std::string family) : impl_(std::make_unique<Impl>()) {
  impl_->family = std::move(family);
  std::lock_guard lock(pangoMutex());
  impl_->fontMap = sharedFontMap();
  impl_->context = pango_font_map_create_context(impl_->fontMap);
  impl_->layout = pango_layout_new(impl_->context);
  pango_layout_set_wrap(impl_->layout, PANGO_WRAP_WORD_CHAR);
  impl_->font = pango_font_description_new();
  pango_font_description_set_family(impl_->font, impl_->family.c_str());
}

PangoTextMeasurer::~PangoTextMeasurer() {
  std::lock_guard lock(pangoMutex());
  pango_font_description_free(impl_->font);
  g_object_unref(impl_->layout);
  g_object_unref(impl_->context);
}

double PangoTextMeasurer::measure(const std::string& text, double fontPointSize, double width) const {
  if (text.empty()) return 0;
  // Pango warns about and truncates invalid UTF-8; replacement characters keep the length.
  gchar* valid = g_utf8_make_valid(text.data(), static_cast<gssize>(text.size()));
  std::lock_guard lock(pangoMutex());
  impl_->setSize(std::isfinite(fontPointSize) && fontPointSize > 0 ? fontPointSize : 1.0);
  const double points = std::isfinite(width) ? std::clamp(width, 1.0, 1.0e6) : 1.0e6;
  pango_layout_set_width(impl_->layout, static_cast<int>(std::lround(points * PANGO_SCALE)));
  pango_layout_set_text(impl_->layout, valid, -1);
  g_free(valid);
  PangoRectangle logical;
  pango_layout_get_extents(impl_->layout, nullptr, &logical);
  return static_cast<double>(logical.height) / PANGO_SCALE;
}

std::string PangoTextMeasurer::resolvedFamily() const {
  std::lock_guard lock(pangoMutex());
  impl_->setSize(14.0);
  PangoFont* font = pango_font_map_load_font(impl_->fontMap, impl_->context, impl_->font);
  if (font == nullptr) return {};
  PangoFontDescription* described = pango_font_describe(font);
  const char* name = pango_font_description_get_family(described);
  std::string family = name != nullptr ? name : "";
  pango_font_description_free(described);
  g_object_unref(font);
  return family;
}

}  // namespace qmv

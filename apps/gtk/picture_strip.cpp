#include "apps/gtk/picture_strip.h"

#include "apps/gtk/page_context.h"
#include "apps/gtk/page_navigator.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/screen_names.h"
#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/ui.h"
#include "core/common/json.h"

namespace qmv::gtk {

namespace {

constexpr int kStripWidth = 132;
constexpr int kStripHeight = 88;
constexpr ImageSize kStripBox{2 * kStripWidth, 2 * kStripWidth};

}  // namespace

PictureStrip::PictureStrip(PageContext& context) : context_(context) {
  set_name("picture-strip");
  add_css_class("picture-strip");
  set_policy(Gtk::PolicyType::AUTOMATIC, Gtk::PolicyType::NEVER);
  set_child(row_);
  set_visible(false);
}

void PictureStrip::setUrls(std::vector<std::string> urls) {
  set_visible(!urls.empty());
  if (urls == urls_) return;
  while (Gtk::Widget* child = row_.get_first_child()) row_.remove(*child);
  for (std::size_t i = 0; i < urls.size(); ++i) {
    auto* button = Gtk::make_managed<Gtk::Button>();
    button->set_name("picture" + std::to_string(i));
    button->set_overflow(Gtk::Overflow::HIDDEN);
    ui::nameIcon(*button, gtk_texts::pictureOf(i + 1, urls.size()));
    auto* picture = Gtk::make_managed<PictureView>(context_.pictures(), kStripBox, gtk_texts::pictureOf(i + 1, urls.size()));
    picture->set_size_request(kStripWidth, kStripHeight);
    picture->setUrl(urls[i]);
    button->set_child(*picture);
    button->signal_clicked().connect([this, i] { open(i); });
    row_.append(*button);
  }
  urls_ = std::move(urls);
}

void PictureStrip::open(std::size_t index) {
  if (index >= urls_.size()) return;
  context_.navigator().present(kImageBrowserScreen, Json{{"urls", urls_}, {"index", index}});
}

}  // namespace qmv::gtk

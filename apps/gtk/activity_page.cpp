#include "apps/gtk/activity_page.h"

#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"
#include "features/orders/checkout_texts.h"

namespace qmv::gtk {

ActivityPage::ActivityPage(PageContext& context, const std::string& activityId, const std::string& name)
    : ScreenPage(context, name, true), screen_(activityId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  screen_.loadDetail();
  refresh();
}

void ActivityPage::refresh() {
  namespace texts = discovery_texts;
  ui::clear(body());
  const auto& offer = screen_.activity();
  if (!offer) return;
  setTitle(offer->name);
  body().append(*ui::label(offer->name, "title-1"));
  body().append(*ui::label(offer->storeName, "dim-label"));
  auto* prices = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
  prices->append(*ui::label(screen_.priceText(), "price", false));
  prices->append(*ui::label(screen_.originalPriceText(), "dim-label", false));
  auto* sold = ui::label(screen_.soldText(), "dim-label", false);
  sold->set_hexpand(true);
  sold->set_xalign(1);
  prices->append(*sold);
  body().append(*prices);
  // Within reach without scrolling, as the phone's bar under the price is.
  auto* buy = ui::button(checkout_texts::kBuyButton, [this] { screen_.openSubmitOrder(); }, "suggested-action");
  buy->set_name("buy");
  buy->add_css_class("pill");
  body().append(*buy);

  body().append(*ui::label(texts::kPackageSection, "heading"));
  for (const auto& package : screen_.packages()) {
    auto* list = ui::boxedList();
    ui::addRow(*list, package.title, "");
    for (const auto& item : package.items) ui::addRow(*list, item.commodity, item.amount, item.price);
    body().append(*list);
  }
  body().append(*ui::label(texts::kNoticeSection, "heading"));
  auto* notice = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::VERTICAL, 4);
  notice->add_css_class("card");
  for (const std::string& line : screen_.noticeLines()) {
    auto* l = ui::label(line);
    l->set_margin(6);
    notice->append(*l);
  }
  body().append(*notice);
  auto* call = Gtk::make_managed<Gtk::Button>();
  call->set_icon_name("call-start-symbolic");
  call->set_name("call");
  call->set_halign(Gtk::Align::START);
  call->signal_clicked().connect([this] { screen_.callStore(); });
  body().append(*call);
}

}  // namespace qmv::gtk

#include "apps/gtk/activity_page.h"

#include "apps/gtk/gtk_texts.h"
#include "apps/gtk/store_rows.h"
#include "apps/gtk/ui.h"
#include "features/discovery/discovery_texts.h"
#include "features/orders/checkout_texts.h"

namespace qmv::gtk {

ActivityPage::ActivityPage(PageContext& context, const std::string& activityId, const std::string& name)
    : ScreenPage(context, name, true), screen_(activityId) {
  follow(screen_);
  screen_.onLoaded = [this](bool) { refreshSoon(); };
  addAction("buy", [this] { screen_.openSubmitOrder(); });
  addAction("call", [this] { screen_.callStore(); });

  name_ = ui::label("", "title-1");
  storeName_ = ui::label("", "dim-label");
  content_.append(strip_);
  content_.append(*name_);
  content_.append(*storeName_);
  auto* prices = Gtk::make_managed<Gtk::Box>(Gtk::Orientation::HORIZONTAL, 12);
  // Which price it is goes before it; the list price it replaces is struck through.
  priceLabel_ = ui::label("", "caption-heading", false);
  priceLabel_->set_name("price-label");
  priceLabel_->set_valign(Gtk::Align::BASELINE);
  price_ = ui::label("", "price", false);
  price_->set_name("price");
  price_->set_valign(Gtk::Align::BASELINE);
  originalPrice_ = ui::label("", "dim-label", false);
  originalPrice_->set_name("original-price");
  originalPrice_->set_valign(Gtk::Align::BASELINE);
  {
    Pango::AttrList struck;
    auto line = Pango::Attribute::create_attr_strikethrough(true);
    struck.insert(line);
    originalPrice_->set_attributes(struck);
  }
  sold_ = ui::label("", "dim-label", false);
  sold_->set_hexpand(true);
  sold_->set_xalign(1);
  prices->append(*priceLabel_);
  prices->append(*price_);
  prices->append(*originalPrice_);
  prices->append(*sold_);
  content_.append(*prices);
  // Within reach without scrolling, as the phone's bar under the price is.
  auto* buy = Gtk::make_managed<Gtk::Button>(checkout_texts::kBuyButton);
  buy->set_name("buy");
  buy->add_css_class("suggested-action");
  buy->add_css_class("pill");
  buy->set_action_name("page.buy");
  content_.append(*buy);

  content_.append(*ui::label(discovery_texts::kPackageSection, "heading"));
  content_.append(packages_);
  content_.append(*ui::label(discovery_texts::kNoticeSection, "heading"));
  notice_.add_css_class("card");
  content_.append(notice_);
  auto* call = Gtk::make_managed<Gtk::Button>();
  call->set_icon_name("call-start-symbolic");
  call->set_name("call");
  ui::nameIcon(*call, gtk_texts::kCall);
  call->set_halign(Gtk::Align::START);
  call->set_action_name("page.call");
  content_.append(*call);
  body().append(content_);

  screen_.loadDetail();
  refresh();
}

void ActivityPage::refresh() {
  const auto& offer = screen_.activity();
  content_.set_visible(offer.has_value());
  if (!offer) return;
  setTitle(offer->name);
  name_->set_text(offer->name);
  strip_.setUrls(offerPictures(*offer));
  storeName_->set_text(offer->storeName);
  priceLabel_->set_text(screen_.priceLabel());
  price_->set_text(screen_.priceText());
  originalPrice_->set_text(screen_.originalPriceText());
  sold_->set_text(screen_.soldText());
  setPackages();
  setNotice();
}

void ActivityPage::setPackages() {
  const auto packages = screen_.packages();
  while (packageRows_.size() > packages.size()) {
    packages_.remove(packageRows_.back()->widget());
    packageRows_.pop_back();
  }
  for (std::size_t i = 0; i < packages.size(); ++i) {
    if (i == packageRows_.size()) {
      packageRows_.push_back(std::make_unique<BoxedRows>());
      packages_.append(packageRows_.back()->widget());
    }
    std::vector<BoxedRow> rows{{{packages[i].title, "", "", false}, "", {}}};
    for (const auto& item : packages[i].items) rows.push_back({{item.commodity, item.amount, item.price, false}, "", {}});
    packageRows_[i]->assign(std::move(rows));
  }
}

void ActivityPage::setNotice() {
  const auto lines = screen_.noticeLines();
  while (noticeLines_.size() > lines.size()) {
    notice_.remove(*noticeLines_.back());
    noticeLines_.pop_back();
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (i == noticeLines_.size()) {
      noticeLines_.push_back(ui::label(""));
      noticeLines_.back()->set_margin(6);
      notice_.append(*noticeLines_.back());
    }
    noticeLines_[i]->set_text(lines[i]);
  }
}

}  // namespace qmv::gtk

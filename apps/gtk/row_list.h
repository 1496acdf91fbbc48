#pragma once
// A list of the core's rows as a GListModel, so that a GtkListView draws them and reuses
// their widgets: assign() hands in the screen's rows after each change and splices only
// what changed, compared by a key (an order id, a store id), so an unchanged row keeps
// its widget and its focus. A row whose key stays but whose look changed is replaced,
// which rebinds its widget.
#include <gtkmm.h>

#include <functional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace qmv {
class ImageLoader;
}

namespace qmv::gtk {

// One core row held by the model.
template <typename T>
class RowObject : public Glib::Object {
 public:
  static Glib::RefPtr<RowObject> create(T row) { return Glib::make_refptr_for_instance(new RowObject(std::move(row))); }
  const T& row() const { return row_; }
  void set(T row) { row_ = std::move(row); }

 private:
  explicit RowObject(T row) : row_(std::move(row)) {}
  T row_;
};

template <typename T>
class RowList {
 public:
  using Key = std::function<std::string(const T&)>;
  // Whether two rows of the same key draw alike.
  using Same = std::function<bool(const T&, const T&)>;

  RowList(Key key, Same same) : key_(std::move(key)), same_(std::move(same)) {}

  Glib::RefPtr<Gio::ListModel> model() const { return store_; }
  guint size() const { return store_->get_n_items(); }
  const T& at(guint position) const { return store_->get_item(position)->row(); }
  // The row of `key`, or null.
  const T* find(const std::string& key) const {
    for (guint i = 0; i < size(); ++i) {
      if (key_(at(i)) == key) return &at(i);
    }
    return nullptr;
  }

  // Walks the new rows against the old: a row whose key comes next keeps its object, old
  // rows before a key found further down are dropped, and rows with new keys are inserted
  // (consecutive ones in one splice). A page appended, a row removed or a new first row
  // therefore leave every other row's widget alone; a row that moved is built again.
  void assign(std::vector<T> rows) {
    std::unordered_map<std::string, guint> remaining;  // old keys not yet walked past
    for (guint i = 0; i < size(); ++i) ++remaining[key_(at(i))];
    guint position = 0;
    std::vector<Glib::RefPtr<RowObject<T>>> pending;  // new rows to insert at `position`
    const auto flush = [&] {
      if (pending.empty()) return;
      store_->splice(position, 0, pending);
      position += static_cast<guint>(pending.size());
      pending.clear();
    };
    for (T& row : rows) {
      const std::string key = key_(row);
      auto found = remaining.find(key);
      if (found == remaining.end() || found->second == 0) {
        pending.push_back(RowObject<T>::create(std::move(row)));
        continue;
      }
      flush();
      guint next = position;
      while (key_(at(next)) != key) --remaining[key_(at(next++))];
      if (next > position) store_->splice(position, next - position, {});
      --found->second;
      update(position++, std::move(row));
    }
    flush();
    if (position < size()) store_->splice(position, size() - position, {});
  }

 private:
  // A row that draws alike takes the new data silently (its callbacks stay current).
  void update(guint position, T row) {
    auto item = store_->get_item(position);
    if (same_(item->row(), row)) {
      item->set(std::move(row));
    } else {
      store_->splice(position, 1, {RowObject<T>::create(std::move(row))});
    }
  }

  Key key_;
  Same same_;
  Glib::RefPtr<Gio::ListStore<RowObject<T>>> store_ = Gio::ListStore<RowObject<T>>::create();
};

// What an action row shows.
struct RowTexts {
  std::string title;
  std::string subtitle;
  std::string trailing;
  bool activatable = false;  // a tap opens the row (the list's activate, page.open-row)
  std::string picture = {};  // a thumbnail's URL in front; empty: the placeholder
  bool current = false;      // the current choice of a menu: checked
  friend bool operator==(const RowTexts&, const RowTexts&) = default;
};

namespace detail {
// An action row that fillListActionRow fills, not yet managed; with `pictures`, it shows
// its texts' thumbnail in front.
GtkWidget* newActionRow(ImageLoader* pictures = nullptr);
Gtk::Widget* newListActionRow(const Glib::RefPtr<Gtk::ListItem>& item, ImageLoader* pictures);
void fillListActionRow(Gtk::Widget& row, const RowTexts& texts);
// Names the list's item holding `child` (the widget that takes the focus for the row) by
// what the row shows: an action row's title and subtitle, else its labels in order.
void nameListItem(Gtk::Widget& child);
}  // namespace detail

// A factory whose `setup` builds a row's widget once and whose `bind` fills it from a row
// each time the widget is given one.
template <typename T>
Glib::RefPtr<Gtk::SignalListItemFactory> rowFactory(std::function<Gtk::Widget*(const Glib::RefPtr<Gtk::ListItem>&)> setup,
                                                    std::function<void(Gtk::Widget&, const T&)> bind) {
  auto factory = Gtk::SignalListItemFactory::create();
  factory->signal_setup().connect([setup = std::move(setup)](const Glib::RefPtr<Gtk::ListItem>& item) {
    item->set_child(*setup(item));
  });
  factory->signal_bind().connect([bind = std::move(bind)](const Glib::RefPtr<Gtk::ListItem>& item) {
    auto row = std::dynamic_pointer_cast<RowObject<T>>(item->get_item());
    if (row && item->get_child() != nullptr) {
      bind(*item->get_child(), row->row());
      detail::nameListItem(*item->get_child());
    }
  });
  return factory;
}

// A factory of libadwaita action rows (title, subtitle, an accent trailing text, and with
// `pictures` a thumbnail in front). An activatable row's own activation runs the list's
// activate at the row's position.
template <typename T>
Glib::RefPtr<Gtk::SignalListItemFactory> actionRowFactory(std::function<RowTexts(const T&)> texts,
                                                          ImageLoader* pictures = nullptr) {
  return rowFactory<T>([pictures](const Glib::RefPtr<Gtk::ListItem>& item) { return detail::newListActionRow(item, pictures); },
                       [texts = std::move(texts)](Gtk::Widget& row, const T& data) {
                         detail::fillListActionRow(row, texts(data));
                       });
}

// A list view over `model`, without selection, whose rows open with one tap: each
// activation runs page.open-row with the row's position.
Gtk::ListView* listView(const Glib::RefPtr<Gio::ListModel>& model, const Glib::RefPtr<Gtk::ListItemFactory>& factory,
                        const std::string& name);

}  // namespace qmv::gtk

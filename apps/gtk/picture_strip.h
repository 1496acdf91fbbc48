#pragma once
// A record's pictures in a row that scrolls sideways; a tap on one opens the picture
// browser at that picture. Hidden while there are none.
#include <gtkmm.h>

#include <string>
#include <vector>

namespace qmv::gtk {

class PageContext;

class PictureStrip : public Gtk::ScrolledWindow {
 public:
  explicit PictureStrip(PageContext& context);

  // Rebuilds the pictures when the addresses changed.
  void setUrls(std::vector<std::string> urls);
  const std::vector<std::string>& urls() const { return urls_; }
  // Opens the browser at picture `index` (what a tap does).
  void open(std::size_t index);

 private:
  PageContext& context_;
  Gtk::Box row_{Gtk::Orientation::HORIZONTAL, 8};
  std::vector<std::string> urls_;
};

}  // namespace qmv::gtk

#pragma once
// The home banners: one card per banner (its picture under its title) in a carousel with
// dots, turning to the next every few seconds and from the last back to the first. It
// rests while it is not on screen or the pointer is over it, and a tick during a turn or
// a swipe leaves that motion alone. A tap runs page.open-banner with the banner's index.
#include <gtkmm.h>

#include <chrono>
#include <string>
#include <vector>

namespace qmv {
class ImageLoader;
}

namespace qmv::gtk {

class BannerCarousel : public Gtk::Box {
 public:
  static constexpr std::chrono::milliseconds kInterval{4000};

  struct Banner {
    std::string title;
    std::string picture;
    friend bool operator==(const Banner&, const Banner&) = default;
  };

  explicit BannerCarousel(ImageLoader* pictures);
  ~BannerCarousel() override;

  // Rebuilds the cards when the banners changed; none hides the carousel.
  void setBanners(std::vector<Banner> banners);
  std::size_t size() const { return banners_.size(); }
  // The index of the banner shown (the nearest while it moves).
  std::size_t shownIndex() const;
  // One timer step: turns to the next banner unless resting or already moving. Returns
  // whether it started a turn.
  bool advance();

 private:
  void startTimer();

  ImageLoader* pictures_;
  Gtk::Widget* carousel_ = nullptr;
  GObject* carouselRef_ = nullptr;  // our reference, so the destructor may still reach it
  Gtk::Widget* dots_ = nullptr;
  std::vector<Banner> banners_;
  bool hovered_ = false;
  long target_ = -1;  // the page a turn is heading for, until it gets there
  sigc::connection timer_;
};

}  // namespace qmv::gtk

#pragma once
// The first-run guide (LaunchViewController), put up once instead of the main tabs. The
// screen is the client's own design, three pages a member swipes through: what the
// application offers, why it asks for the device's position (with the one button that
// asks), and the city it starts in (the default city until the member picks another in
// the city picker). The last page goes on to the main tabs; nothing on the guide is
// required, so a member who skips the position and the city starts as before.
#include <functional>
#include <memory>
#include <string>

namespace qmv {

class AppDelegate;

class LaunchViewController {
 public:
  struct Page {
    const char* title;
    const char* text;
    const char* icon;  // a themed icon name
  };
  static constexpr std::size_t kPageCount = 3;
  static const Page& page(std::size_t index);
  static constexpr std::size_t kLocationPage = 1;
  static constexpr std::size_t kCityPage = 2;

  enum class Location { NotAsked, Asking, Located, ServicesOff, Failed };

  LaunchViewController() = default;
  ~LaunchViewController();
  LaunchViewController(const LaunchViewController&) = delete;
  LaunchViewController& operator=(const LaunchViewController&) = delete;

  // Asks the device for one position: granted, it becomes the member's location for the
  // home's first locate; refused or failed, the page says so and the home tries again.
  void askForLocation();
  Location location() const { return location_; }
  // A sentence for the location page; "" before asking.
  std::string locationText() const;

  // The city the main tabs will open in, as the page shows it.
  static std::string cityText();
  // Opens the city picker over the guide.
  static void chooseCity();

  // Leaves the guide for the main tabs, dropping an unanswered position request first:
  // the home's own locate shares the device's position service.
  void finish(AppDelegate& app);

  // After every change of what the pages show.
  std::function<void()> onChanged;

 private:
  void ended(Location location);

  Location location_ = Location::NotAsked;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace qmv

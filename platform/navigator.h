#pragma once
// Screen navigation: a stack of screens per presentation layer. The bottom layer is the
// application's own navigation stack; present() opens a new layer on top (a modal
// navigation controller) whose root is the presented screen, and dismiss() closes it.
// Screens are identified by name (the screen class, e.g. "LoginViewController") and a
// JSON payload of what it was opened with; each gets an id that stays unique for the
// navigator's lifetime, so holders of an id never keep a screen alive.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/common/json.h"

namespace qmv {

using ScreenId = std::uint64_t;

struct Screen {
  ScreenId id = 0;  // assigned by the navigator
  std::string name;
  Json payload;
};

class Navigator {
 public:
  virtual ~Navigator() = default;

  // All REQUIRE the interface thread.
  // Pushes onto the top layer and returns the new screen's id.
  virtual ScreenId push(const std::string& name, const Json& payload = nullptr) = 0;
  // Pops the top screen of the top layer; the root of a layer is never popped. Returns
  // whether a screen was removed.
  virtual bool pop() = 0;
  // Pops the top layer down to its root.
  virtual void popToRoot() = 0;
  // Pops the top layer down to the screen `id`. False (nothing changes) when that
  // screen is not in the top layer.
  virtual bool popTo(ScreenId id) = 0;
  // Opens a new layer with the screen as its root and returns its id.
  virtual ScreenId present(const std::string& name, const Json& payload = nullptr) = 0;
  // Closes the top layer; the bottom layer is never closed. Returns whether one closed.
  virtual bool dismiss() = 0;
  // Replaces every layer with a bottom layer holding only this screen (the window's
  // root) and returns its id.
  virtual ScreenId setRoot(const std::string& name, const Json& payload = nullptr) = 0;

  // Layers from bottom to top, each from root to top.
  virtual std::vector<std::vector<Screen>> layers() const = 0;
  // The screen the user sees, or nullopt when nothing is shown.
  std::optional<Screen> topScreen() const;
};

}  // namespace qmv

#pragma once
// Drives the real client in-process, as a member would, for the GTK tests and the
// screenshot tool: a front end in a 360x720 window, waits on GTK's own main context,
// the page on top, and rendering a widget to a PNG through GTK's snapshot path.
#include <gtkmm.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>

#include "apps/gtk/gtk_front_end.h"

namespace qmv::gtk {

class GtkDriver {
 public:
  static constexpr int kWidth = 360;
  static constexpr int kHeight = 720;

  // Initialises GTK and libadwaita once per process. False when no display can be opened.
  static bool initToolkit();

  // Starts the client in `home` (the embedded sandbox) at the WGS-84 position `at`.
  GtkDriver(const std::string& home, const std::string& at);
  ~GtkDriver();

  // How the start-up went: OK when the client runs.
  const Status& status() const { return status_; }
  GtkFrontEnd& app() { return *frontEnd_; }

  // Runs GTK's loop until `done` or the timeout; returns whether `done` became true.
  bool waitUntil(const std::function<bool()>& done, std::chrono::milliseconds timeout = std::chrono::seconds(15));
  // Runs the loop for a while (animations, idle syncs).
  void settle(std::chrono::milliseconds duration = std::chrono::milliseconds(150));
  // The page the member sees (after pending navigation has been drawn).
  Gtk::Widget& top();
  // The widget name of the page on top: the screen's name, e.g. "QXRStoreDetailViewController".
  std::string topName();

  // Resizes the window and waits until its content has been laid out at the new width
  // (and any change of panes that follows has been drawn). Returns whether it was.
  bool resize(int width, int height);

  // Renders `widget` at its allocated size to a PNG file. Returns whether it was written.
  bool renderToPng(Gtk::Widget& widget, const std::string& path);

 private:
  std::unique_ptr<GtkFrontEnd> frontEnd_;
  Gtk::Window* window_ = nullptr;
  Status status_;
};

}  // namespace qmv::gtk

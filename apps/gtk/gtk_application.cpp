#include "apps/gtk/gtk_application.h"

#include <adwaita.h>
#include <gtkmm/init.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

#include "apps/cli_docs/manual.h"
#include "apps/gtk/chinese_locale.h"
#include "apps/gtk/home_page.h"
#include "apps/gtk/main_view.h"
#include "apps/gtk/picture_view.h"
#include "apps/gtk/renderer_choice.h"
#include "apps/gtk/tab_bar_page.h"
#include "core/common/color_contrast.h"
#include "qmv/version.h"

// The generated resource bundle (apps/gtk/qmv.gresource.xml).
extern "C" void qmv_register_resource(void);

namespace qmv::gtk {

namespace {

constexpr const char* kApplicationId = "org.qmv.Client";

// The platform's look with the application's own orange (the navigation bar's tint
// that start-up configures) for accents, prices and the launch view. The accent as text
// is a deeper orange, readable on the light background. Colours that carry text are
// set by brandColours().
constexpr const char* kStyle = R"css(
@define-color accent_bg_color rgb(241, 161, 72);
@define-color accent_color rgb(166, 84, 0);
button.banner, .banner { border-radius: 12px; padding: 0; margin: 0 4px; }
.thumbnail { border-radius: 6px; }
.portrait { border-radius: 9999px; }
.picture-strip button { padding: 0; border-radius: 8px; }
.price { color: rgb(230, 80, 40); font-weight: bold; font-size: 1.4em; }
.bank-card { background: linear-gradient(135deg, rgb(60, 90, 160), rgb(40, 60, 120)); color: white;
             border-radius: 14px; padding: 22px; }
/* Opaque, so a pin reads on the map's light tiles in the dark style too. */
.pin { padding: 2px 6px; border-radius: 10px; background-color: @view_bg_color; color: @view_fg_color;
       box-shadow: 0 1px 3px alpha(black, 0.3); }
.pin-title { font-size: 0.8em; font-weight: bold; }
.my-location { color: rgb(53, 132, 228); -gtk-icon-size: 24px; }
)css";

constexpr Color kOrange{241, 161, 72};
constexpr Color kWhite{255, 255, 255};

std::string cssColour(const Color& c) {
  return "rgb(" + std::to_string(c.red) + ", " + std::to_string(c.green) + ", " + std::to_string(c.blue) + ")";
}

// Text on the orange, measured rather than assumed: a button's label on the accent is
// normal text, dark where white would not read; the launch view's name and a banner's
// title are large white text, on the orange made as much deeper as they need. The same
// in both styles, which do not change these backgrounds.
std::string brandColours() {
  const auto gradient = [](const char* direction, const Color& from, const Color& to) {
    return "linear-gradient(" + std::string(direction) + cssColour(readableOn(from, kWhite, kLargeTextContrast)) +
           ", " + cssColour(readableOn(to, kWhite, kLargeTextContrast)) + ")";
  };
  return "@define-color accent_fg_color " + cssColour(readableOn(kWhite, kOrange, kNormalTextContrast)) +
         ";\n.launch { background: " + gradient("", kOrange, Color{230, 120, 40}) +
         "; color: white; }\nbutton.banner, .banner { background: " +
         gradient("135deg, ", kOrange, Color{236, 110, 70}) + "; color: white; }\n";
}

// Added over the light sheet while the style is dark: the accent as text turns light.
constexpr const char* kDarkStyle = R"css(
@define-color accent_color rgb(255, 179, 102);
)css";

// The client's own options, read here and described in its manual page from this one list.
struct ValueOption {
  const char* name;
  const char* value;
  const char* description;
  std::string LaunchOptions::*field;
};
constexpr ValueOption kValueOptions[] = {
    {"--home", "DIR", "home directory (default $XDG_DATA_HOME/qmv), the same as qmv's", &LaunchOptions::home},
    {"--server", "URL", "application server base URL (else the configured one, else the embedded sandbox)",
     &LaunchOptions::server},
    {"--at", "LAT,LON", "device position (WGS-84) instead of asking GeoClue", &LaunchOptions::at},
    {"--pay-outcome", "{success,cancel,fail}",
     "what the embedded sandbox's payment applications do with a payment (default success)",
     &LaunchOptions::payOutcome},
};

docs::ManPage manPage() {
  docs::ManPage page;
  page.version = std::string("qmv ") + QMV_VERSION_STRING;
  page.summary = "the graphical client of a local-life services platform, for the desktop and phones";
  page.description = {
      "qmv-gtk is the GTK and libadwaita front end of qmv: the same client, home and embedded sandbox as "
      "qmv(1), drawn for a phone's screen or a desktop window.",
      "Each URL given is opened in the running instance (one window per user); the desktop hands it "
      "qqqmmmvvv:// URLs, with which payment applications return.",
  };
  page.program.name = "qmv-gtk";
  for (const ValueOption& option : kValueOptions) {
    page.program.options.push_back({{option.name}, option.value, option.description});
  }
  page.program.options.push_back({{"-h", "--help"}, "", "GApplication's help and its own options"});
  page.program.options.push_back({{"URL"}, "", "an inbound URL to open", true, false, true});
  page.exitStatus = {{"0", "The window was closed."},
                     {"1", "The start-up failed (the home, the configuration or the server)."},
                     {"2", "A malformed option."}};
  page.files = {{"$XDG_DATA_HOME/qmv", "The home shared with qmv (else ~/.local/share/qmv)."},
                {"/usr/share/qmv", "The shipped databases (share/qmv under the install prefix)."},
                {"/usr/lib/qmv/modules/libqmv_gtk_webkit.so", "The WebKit module that shows the server's pages."}};
  page.environment = {{"XDG_DATA_HOME", "Where the default home is made."},
                      {"QMV_RESOURCE_DIR", "Read the shipped databases from this directory instead."},
                      {"GSK_RENDERER", "GTK's renderer; left to GTK when set."},
                      {"LANGUAGE", "Unless the messages locale is Chinese already, the client runs under zh_CN.UTF-8 "
                                   "(when installed) so that GTK's and WebKit's own texts are Chinese; programs it "
                                   "opens get the desktop's locale back."}};
  page.seeAlso = {"qmv(1)", "qmv-sandbox(1)"};
  return page;
}

struct App {
  FrontEndOptions options;
  std::unique_ptr<GtkFrontEnd> frontEnd;
  Gtk::Window* window = nullptr;
  int status = 0;
};

// Whether every picture view below `widget` that was given an address draws its picture.
bool picturesDrawn(GtkWidget* widget) {
  // The current wrapper only: wrapping every widget of the page on each frame would make
  // wrappers for widgets that have none.
  if (auto* view = dynamic_cast<PictureView*>(Glib::ObjectBase::_get_current_wrapper(G_OBJECT(widget)));
      view != nullptr && !view->url().empty() && !view->showsPicture()) {
    return false;
  }
  for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
       child = gtk_widget_get_next_sibling(child)) {
    if (!picturesDrawn(child)) return false;
  }
  return true;
}

// For bench/gtk_start.sh: once a frame has been painted with the home content in it (and,
// with QMV_GTK_QUIT_WHEN_HOME_DRAWN=pictures, every picture of the home drawn), prints
// the wall-clock time (ms since the epoch); quits once the home's area refresh has ended
// too, so that the peak memory measured is the whole start's.
void quitWhenHomeDrawn(GtkApplication* application, App& app, bool withPictures) {
  struct Watch {
    GtkApplication* application;
    App* app;
    bool withPictures;
    bool contentSeen = false;
    bool drawn = false;
  };
  gtk_widget_add_tick_callback(
      GTK_WIDGET(app.window->gobj()),
      +[](GtkWidget*, GdkFrameClock*, gpointer data) -> gboolean {
        auto* watch = static_cast<Watch*>(data);
        if (!watch->app->frontEnd) return G_SOURCE_REMOVE;
        TabBarPage* tabs = watch->app->frontEnd->view().tabBar();
        if (tabs == nullptr) return G_SOURCE_CONTINUE;
        auto& home = static_cast<HomePage&>(tabs->tab(0));
        if (watch->contentSeen && !std::exchange(watch->drawn, true)) {
          // The frame after the one that laid the content out: it has been painted.
          const auto now = std::chrono::system_clock::now().time_since_epoch();
          std::cout << "home drawn at " << std::chrono::duration_cast<std::chrono::milliseconds>(now).count() << '\n'
                    << std::flush;
        }
        // The whole first load shown: every request ended and the page redrawn from it (at a
        // first start the categories and their pictures come with the load, not from storage).
        const bool shown = !home.screen().popularStores().empty() && !home.screen().isLoading() &&
                           !home.refreshPending() && (!watch->withPictures || picturesDrawn(GTK_WIDGET(home.gobj())));
        if (watch->drawn) {
          if (!shown || !home.screen().areaRefreshed()) return G_SOURCE_CONTINUE;
          g_application_quit(G_APPLICATION(watch->application));
          return G_SOURCE_REMOVE;
        }
        watch->contentSeen = shown;
        return G_SOURCE_CONTINUE;
      },
      new Watch{application, &app, withPictures}, [](gpointer data) { delete static_cast<Watch*>(data); });
}

void ensureWindow(GtkApplication* application, App& app) {
  if (app.window != nullptr) {
    app.window->present();
    return;
  }
  Gtk::init_gtkmm_internals();
  loadStyle();
  app.frontEnd = std::make_unique<GtkFrontEnd>(app.options);
  if (const Status started = app.frontEnd->start(); !started.ok()) {
    std::cerr << "qmv-gtk: " << started.message() << '\n';
    app.status = 1;
    app.frontEnd.reset();
    g_application_quit(G_APPLICATION(application));
    return;
  }
  // The page actions' shortcuts, for the page the member sees (each page also takes its
  // own when the focus is elsewhere).
  const char* reload[] = {"<Control>r", nullptr};
  gtk_application_set_accels_for_action(application, "page.refresh", reload);
  GtkWidget* window = adw_application_window_new(application);
  gtk_window_set_default_size(GTK_WINDOW(window), 360, 720);
  gtk_window_set_title(GTK_WINDOW(window), "qmv");
  app.window = Glib::wrap(GTK_WINDOW(window));
  app.frontEnd->attach(*app.window);
  g_signal_connect(window, "destroy", G_CALLBACK(+[](GtkWidget*, gpointer data) {
                     auto* app = static_cast<App*>(data);
                     app->window = nullptr;
                     app->frontEnd.reset();
                   }),
                   &app);
  gtk_window_present(GTK_WINDOW(window));
  if (const char* quit = std::getenv("QMV_GTK_QUIT_WHEN_HOME_DRAWN"); quit != nullptr) {
    quitWhenHomeDrawn(application, app, std::string_view(quit) == "pictures");
  }
}

}  // namespace

Status takeOptions(std::vector<std::string>& args, FrontEndOptions& options) {
  std::vector<std::string> rest;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& arg = args[i];
    std::string* target = nullptr;
    for (const ValueOption& option : kValueOptions) {
      if (arg == option.name) target = &(options.launch.*option.field);
    }
    if (target == nullptr) {
      rest.push_back(arg);
      continue;
    }
    if (i + 1 >= args.size()) return Status::invalidArgument(arg + " needs a value");
    *target = args[++i];
  }
  const std::string& outcome = options.launch.payOutcome;
  if (outcome != "success" && outcome != "cancel" && outcome != "fail") {
    return Status::invalidArgument("--pay-outcome expects success, cancel or fail");
  }
  args = std::move(rest);
  return {};
}

void loadStyle() {
  // A phone's title bar: only the close button beside the page's own buttons.
  if (GtkSettings* settings = gtk_settings_get_default()) {
    g_object_set(settings, "gtk-decoration-layout", ":close", nullptr);
  }
  // Icons the theme lacks (the wealth tab's wallet) come from the binary's own resource.
  static const bool registered = (qmv_register_resource(), true);
  (void)registered;
  Gtk::IconTheme::get_for_display(Gdk::Display::get_default())->add_resource_path("/org/qmv/Client/icons");
  auto provider = Gtk::CssProvider::create();
  provider->load_from_data(kStyle + brandColours());
  Gtk::StyleContext::add_provider_for_display(Gdk::Display::get_default(), provider,
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
  // The style follows the system's (libadwaita's default scheme); the dark sheet comes
  // and goes with it.
  static const Glib::RefPtr<Gtk::CssProvider> dark = [] {
    auto sheet = Gtk::CssProvider::create();
    sheet->load_from_data(kDarkStyle);
    return sheet;
  }();
  static const bool following = [] {
    const auto apply = +[](AdwStyleManager* styles, GParamSpec*, gpointer) {
      const auto display = Gdk::Display::get_default();
      if (adw_style_manager_get_dark(styles)) {
        Gtk::StyleContext::add_provider_for_display(display, dark, GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
      } else {
        Gtk::StyleContext::remove_provider_for_display(display, dark);
      }
    };
    AdwStyleManager* styles = adw_style_manager_get_default();
    g_signal_connect(styles, "notify::dark", G_CALLBACK(apply), nullptr);
    apply(styles, nullptr, nullptr);
    return true;
  }();
  (void)following;
}

int runGtkApplication(int argc, char** argv) {
  App app;
  std::vector<std::string> args(argv, argv + argc);
  // Hidden: the build writes the manual page and the bash completion with these.
  if (args.size() == 2 && (args[1] == "--man" || args[1] == "--bash-completion")) {
    const docs::ManPage page = manPage();
    std::cout << (args[1] == "--man" ? docs::renderManPage(page) : docs::renderBashCompletion(page.program));
    return 0;
  }
  if (args.size() == 2 && args[1] == "--version") {
    std::cout << "qmv-gtk " << QMV_VERSION_STRING << '\n';
    return 0;
  }
  if (const Status taken = takeOptions(args, app.options); !taken.ok()) {
    std::cerr << "qmv-gtk: " << taken.message() << "\nusage: qmv-gtk";
    for (const ValueOption& option : kValueOptions) std::cerr << " [" << option.name << ' ' << option.value << ']';
    std::cerr << " [URL...]\n";
    return 2;
  }
  if (!speakChinese()) {
    std::cerr << "qmv-gtk: no zh_CN.UTF-8 locale installed; GTK's own texts follow the desktop's language\n";
  }
  chooseRenderer();
  AdwApplication* application = adw_application_new(kApplicationId, G_APPLICATION_HANDLES_OPEN);
  g_signal_connect(application, "activate", G_CALLBACK(+[](GtkApplication* application, gpointer data) {
                     ensureWindow(application, *static_cast<App*>(data));
                   }),
                   &app);
  g_signal_connect(application, "open",
                   G_CALLBACK(+[](GtkApplication* application, GFile** files, gint count, const char*, gpointer data) {
                     auto& app = *static_cast<App*>(data);
                     ensureWindow(application, app);
                     if (!app.frontEnd) return;
                     for (gint i = 0; i < count; ++i) {
                       char* uri = g_file_get_uri(files[i]);
                       app.frontEnd->openURL(uri);
                       g_free(uri);
                     }
                   }),
                   &app);
  std::vector<char*> rest;
  for (auto& a : args) rest.push_back(a.data());
  const int status = g_application_run(G_APPLICATION(application), static_cast<int>(rest.size()), rest.data());
  app.frontEnd.reset();
  g_object_unref(application);
  return status != 0 ? status : app.status;
}

}  // namespace qmv::gtk

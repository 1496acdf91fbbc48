// Commands of the server pages: the page host of one page type (with its cookies, and a
// tap on one of its links, which may lead to a native screen: the login, or the pay-now
// screen and its payment), and the plain page screen for any URL, where an application
// link fails to load and the member may open its screen from the failure.
#include <iostream>
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/cli_texts.h"
#include "apps/qmv/command_registry.h"
#include "core/common/dictionary.h"
#include "core/session/base_view_controller.h"
#include "features/orders/checkout_texts.h"
#include "platform/navigator.h"
#include "shell/h5_texts.h"
#include "shell/qx_h5_view_controller.h"
#include "shell/web_view_controller.h"

namespace qmv::cli {
namespace {

struct PageOptions {
  long type = 0;
  std::string url;    // the plain page screen's
  std::string title;  // the plain page screen's
  bool openInApp = false;
  long follow = 0;  // 0: no link is followed
  std::optional<std::string> phone;
  std::optional<std::string> password;
  // Taps on a pay-now screen the link opens.
  bool noBalance = false;
  std::string channel;
};

// Runs the loop until the screen's load has ended; false (said why) when it failed.
bool awaitLoad(CliApp& app, WebPageScreen& screen) {
  // The load is already under way.
  if (!awaitSlot(app, screen.onLoadEnded, [] {})) {
    failWith("the page did not load in time");
    return false;
  }
  if (!screen.loadError().empty()) {
    failWith(screen.loadError());
    return false;
  }
  return true;
}

Json printPage(CliOutput& out, const std::string& title, const WebPage& page) {
  out.line("title: " + title);
  out.line("url: " + page.url);
  if (!page.text.empty()) {
    std::size_t start = 0;
    while (start < page.text.size()) {
      const std::size_t end = std::min(page.text.find('\n', start), page.text.size());
      out.line("  " + page.text.substr(start, end - start));
      start = end + 1;
    }
  }
  Json links = Json::array();
  for (std::size_t i = 0; i < page.links.size(); ++i) {
    out.line("[" + std::to_string(i + 1) + "] " + page.links[i].text + " -> " + page.links[i].url);
    links.push_back({{"text", page.links[i].text}, {"url", page.links[i].url}});
  }
  return {{"title", title}, {"url", page.url}, {"documentTitle", page.title}, {"text", page.text}, {"links", links}};
}

// What a tapped application link opened: the login screen or the pay-now screen.
int followNative(CliApp& app, const PageOptions& options, const std::optional<Screen>& before) {
  const auto shown = Env::current().navigator->topScreen();
  if (!shown || (before && shown->id == before->id)) {
    std::cerr << "qmv: the link opened nothing\n";
    return kExitFailure;
  }
  CliOutput& out = app.output();
  out.line("opened " + shown->name);
  out.data("opened", {{"screen", shown->name}, {"payload", shown->payload}});
  if (shown->name == BaseViewController::kLoginScreen) return signInOnLoginScreen(app, options.phone, options.password);
  if (shown->name == checkout_texts::kPayNowScreen) {
    for (const auto& [key, value] : shown->payload.items()) out.line("  " + key + ": " + textOf(value));
    return runPayNowScreen(app, shown->payload, options.noBalance, options.channel);
  }
  return kExitOk;
}

// Says which link --follow taps; a usage failure when the page has no such link.
std::optional<int> announceFollow(CliOutput& out, const PageOptions& options, WebPageScreen& screen) {
  const auto& links = screen.webView()->page().links;
  if (options.follow > static_cast<long>(links.size())) {
    std::cerr << "qmv: the page has " << links.size() << " links\n";
    return kExitUsage;
  }
  out.line("follow [" + std::to_string(options.follow) + "] " + links[options.follow - 1].url);
  return std::nullopt;
}

int runPage(CliApp& app, const PageOptions& options) {
  QXH5ViewController screen(options.type);
  Env::current().navigator->push("QXH5ViewController", {{"h5Type", options.type}});
  screen.viewDidLoad();
  if (!awaitLoad(app, screen)) return kExitFailure;
  CliOutput& out = app.output();
  Json cookies = Json::object();
  for (const Cookie& cookie : screen.cookies()) {
    out.line("cookie: " + cookie.name + "=" + cookie.value);
    cookies[cookie.name] = cookie.value;
  }
  out.data("cookies", cookies);
  out.data("page", printPage(out, screen.title(), screen.webView()->page()));
  if (options.follow == 0) return kExitOk;

  if (const auto refused = announceFollow(out, options, screen)) return *refused;
  const auto navigator = Env::current().navigator;
  const auto before = navigator->topScreen();
  if (!screen.webView()->tapLink(static_cast<std::size_t>(options.follow - 1))) {
    return followNative(app, options, before);
  }
  if (!awaitLoad(app, screen)) return kExitFailure;
  out.data("followed", printPage(out, screen.title(), screen.webView()->page()));
  return kExitOk;
}

// A plain page's load that failed at an application link: the screen says so and offers
// to open it, which --open-in-app taps.
int failedAppLink(CliApp& app, const PageOptions& options, WebViewController& screen) {
  CliOutput& out = app.output();
  out.line(screen.loadErrorText());
  out.line(std::string("[") + h5_texts::kOpenAppLink + "] -> " + screen.failedAppLink());
  out.data("appLink", screen.failedAppLink());
  if (!options.openInApp) return failWith(screen.loadError());
  const auto before = Env::current().navigator->topScreen();
  if (!screen.openFailedAppLink()) return failWith("the application link opened nothing");
  return followNative(app, options, before);
}

// Waits for the plain page's load; on failure, the application link's step or why.
std::optional<int> awaitPlainLoad(CliApp& app, const PageOptions& options, WebViewController& screen) {
  if (!awaitSlot(app, screen.onLoadEnded, [] {})) return failWith("the page did not load in time");
  if (!screen.failedAppLink().empty()) return failedAppLink(app, options, screen);
  if (!screen.loadError().empty()) return failWith(screen.loadError());
  return std::nullopt;
}

int runWeb(CliApp& app, const PageOptions& options) {
  WebViewController screen(options.title, options.url);
  Env::current().navigator->push("WebViewController", {{"title", options.title}, {"url", options.url}});
  screen.viewDidLoad();
  if (const auto ended = awaitPlainLoad(app, options, screen)) return *ended;
  CliOutput& out = app.output();
  out.data("page", printPage(out, screen.title(), screen.webView()->page()));
  if (options.follow == 0) return kExitOk;
  if (const auto refused = announceFollow(out, options, screen)) return *refused;
  // The plain screen lets every link load, so a tap that loads nothing is a failure.
  if (!screen.webView()->tapLink(static_cast<std::size_t>(options.follow - 1))) {
    return failWith("the link was not loaded");
  }
  if (const auto ended = awaitPlainLoad(app, options, screen)) return *ended;
  out.data("followed", printPage(out, screen.title(), screen.webView()->page()));
  return kExitOk;
}

}  // namespace

void registerPageCommands(CommandRegistry& registry) {
  {
    auto options = std::make_shared<PageOptions>();
    CLI::App* page = registry.add(
        "page", cli_texts::kPageHelp,
        [options](CliApp& app) { return runPage(app, *options); });
    page->add_option("TYPE", options->type, "page type")->required()->check(CLI::Range(0L, 5L));
    page->add_option("--follow", options->follow, "tap link N of the page (numbered from 1)")
        ->check(CLI::Range(1L, 100000L));
    page->add_option("--phone", options->phone, "phone typed on a login screen the link opens");
    page->add_option("--password", options->password, "password typed on a login screen the link opens");
    addPayNowOptions(page, options->noBalance, options->channel);
  }
  {
    auto options = std::make_shared<PageOptions>();
    CLI::App* web = registry.add("web", "the plain page screen: any URL, no cookies given, every link loads",
                                 [options](CliApp& app) { return runWeb(app, *options); });
    web->add_option("URL", options->url, "the page")->required();
    web->add_option("--title", options->title, "the screen's title");
    web->add_option("--follow", options->follow, "tap link N of the page (numbered from 1)")
        ->check(CLI::Range(1L, 100000L));
    web->add_flag("--open-in-app", options->openInApp,
                  std::string("when an application link fails to load, tap ") + h5_texts::kOpenAppLink);
    web->add_option("--phone", options->phone, "phone typed on a login screen the link opens");
    web->add_option("--password", options->password, "password typed on a login screen the link opens");
    addPayNowOptions(web, options->noBalance, options->channel);
  }
}

}  // namespace qmv::cli

#pragma once
// What the commands' flows share: the sign-in check, the failure line on stderr, and
// waiting for a screen to call one of its `on…` slots.
#include <chrono>
#include <cstddef>
#include <functional>
#include <iostream>
#include <optional>
#include <string_view>
#include <type_traits>
#include <utility>

#include "apps/qmv/cli_app.h"

namespace qmv::cli {

constexpr const char* kNotLoggedIn = "not logged in: run \"qmv login PHONE PASSWORD\" first";

// Whether a member is signed in; when not, says on stderr why (the automatic login's
// failure) or how to sign in.
bool memberSignedIn(CliApp& app);

// Prints "qmv: <why>" on stderr; returns kExitFailure.
int failWith(std::string_view why);
// failWith("<what> did not end in time").
int timedOut(std::string_view what);

// Runs `start`; true when it returned false.
template <class Start>
bool startRefused(Start& start) {
  if constexpr (std::is_same_v<std::invoke_result_t<Start&>, bool>) {
    return !start();
  } else {
    start();
    return false;
  }
}

// Sets `slot` to record the first value it is called with, runs `start`, and runs the loop
// until that value arrives or `timeout` passes; nullopt on time-out, or at once when `start`
// returns false (it refused, so the slot will not be called). The slot is cleared
// afterwards, so that a late call cannot reach this frame.
template <class Arg, class Start>
std::optional<std::decay_t<Arg>> awaitSlot(CliApp& app, std::function<void(Arg)>& slot, Start&& start,
                                           std::chrono::milliseconds timeout = CliApp::kFlowTimeout) {
  std::optional<std::decay_t<Arg>> value;
  slot = [&value](Arg arg) {
    if (!value) value.emplace(std::forward<Arg>(arg));
  };
  if (startRefused(start)) {
    slot = nullptr;
    return std::nullopt;
  }
  app.waitUntil([&value] { return value.has_value(); }, timeout);
  slot = nullptr;
  return value;
}

// The same for a slot without a value: whether it was called in time.
template <class Start>
bool awaitSlot(CliApp& app, std::function<void()>& slot, Start&& start,
               std::chrono::milliseconds timeout = CliApp::kFlowTimeout) {
  bool called = false;
  slot = [&called] { called = true; };
  if (!startRefused(start)) app.waitUntil([&called] { return called; }, timeout);
  slot = nullptr;
  return called;
}

// Loads pages 1..`pages` of a paged list screen (refresh, then loadMore), fewer when the
// list ends first, which is said on stderr. Returns the index of the first row of page
// `pages` (the row count when the list ended before it), or nullopt when a page failed or
// did not come in time.
template <class Screen>
std::optional<std::size_t> loadListPages(CliApp& app, Screen& screen, long pages) {
  auto answer = awaitSlot(app, screen.onLoaded, [&screen] { screen.refresh(); });
  std::size_t lastPageStart = 0;
  while (answer.value_or(false) && screen.pageNum() < pages && !screen.loadMoreFooterHidden()) {
    lastPageStart = screen.rows().size();
    answer = awaitSlot(app, screen.onLoaded, [&screen] { screen.loadMore(); });
  }
  if (!answer) {
    timedOut("the list");
    return std::nullopt;
  }
  if (!*answer) return std::nullopt;
  if (screen.pageNum() < pages) {
    std::cerr << "qmv: the list ends before page " << pages << '\n';
    return screen.rows().size();
  }
  return lastPageStart;
}

}  // namespace qmv::cli

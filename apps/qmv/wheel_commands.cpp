// Commands of the prize wheel: the current wheel as its screen shows it, and one spin
// on it through the screen's spin button.
#include <memory>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/cli_flow.h"
#include "apps/qmv/command_registry.h"
#include "features/wheel/wheel_view_controller.h"

namespace qmv::cli {
namespace {

int timedOut() { return failWith("the wheel did not answer in time"); }

void printWheel(CliOutput& out, const WheelViewController& screen) {
  const WheelModel& wheel = *screen.wheel();
  out.line(screen.title());
  out.line(screen.periodText());
  out.line(screen.leftCountText());
  out.line("rule: " + wheel.rule);
  out.line("sectors: " + std::to_string(screen.sectorCount()) + ", pointer at " + std::to_string(screen.restSector()));
  out.data("wheel", {{"id", wheel.wheelId},
                     {"leftCount", wheel.leftCount},
                     {"timeStart", wheel.timeStart.value_or("")},
                     {"timeEnd", wheel.timeEnd.value_or("")},
                     {"rule", wheel.rule},
                     {"imgURL", wheel.imgURL},
                     {"sectors", screen.sectorCount()},
                     {"restSector", screen.restSector()}});
}

int runWheel(CliApp& app, bool spin) {
  if (!memberSignedIn(app)) return kExitFailure;
  WheelViewController screen;
  const auto loaded = awaitSlot(app, screen.onLoaded, [&screen] { screen.wheelNet(); });
  if (!loaded) return timedOut();
  if (!*loaded) return kExitFailure;
  CliOutput& out = app.output();
  if (!spin) {
    printWheel(out, screen);
    return kExitOk;
  }
  bool asked = false;
  const auto spun = awaitSlot(app, screen.onSpun, [&] { return asked = screen.spinAction(); });
  if (!asked) return kExitFailure;
  if (!spun) return timedOut();
  if (!*spun) return kExitFailure;
  const auto stop = screen.stopSector();
  out.line("stopped on sector " + (stop ? std::to_string(*stop) : std::string("?")) + " of " +
           std::to_string(screen.sectorCount()));
  out.line("prize: " + screen.prize());
  out.line(screen.leftCountText());
  out.data("spin", {{"stopSector", stop ? Json(*stop) : Json()},
                    {"sectors", screen.sectorCount()},
                    {"prize", screen.prize()},
                    {"leftCount", screen.wheel()->leftCount}});
  return kExitOk;
}

}  // namespace

void registerWheelCommands(CommandRegistry& registry) {
  auto action = std::make_shared<std::string>();
  CLI::App* wheel = registry.add("wheel", "the prize wheel; \"wheel spin\" draws one spin",
                                 [action](CliApp& app) { return runWheel(app, *action == "spin"); });
  wheel->add_option("ACTION", *action, "spin: draw one spin")->check(CLI::IsMember({"spin"}));
}

}  // namespace qmv::cli

// Answers to the alerts a command's flow raises: given with --answer on the command line,
// typed on the shell's next lines while the screen that raised the alert still lives, and
// the hint that says how, in the words of wherever the command runs.
#include <iostream>

#include "apps/qmv/cli_app.h"
#include "apps/qmv/command_registry.h"
#include "platform/env.h"
#include "platform/linux/stream_alerts.h"
#include "platform/main_loop.h"

namespace qmv::cli {
namespace {

std::shared_ptr<StreamAlerts> streamAlerts() { return std::dynamic_pointer_cast<StreamAlerts>(Env::current().alerts); }

// Runs what the loop already holds: an answer given with --answer is delivered there.
void deliverGivenAnswers(CliApp& app) {
  bool reached = false;
  app.loop()->post([&reached] { reached = true; });
  app.waitUntil([&reached] { return reached; });
}

// The 1-based number of the button `given` names (its title, its number, or "answer N").
std::optional<int> buttonNumber(std::string given, const std::vector<std::string>& buttons) {
  if (given.starts_with("answer ")) given = given.substr(7);
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (buttons[i] == given || std::to_string(i + 1) == given) return static_cast<int>(i + 1);
  }
  return std::nullopt;
}

}  // namespace

std::string alertAnswerHint(CliApp& app, const std::vector<std::string>& buttons) {
  std::string hint;
  for (std::size_t i = 0; i < buttons.size(); ++i) {
    if (!hint.empty()) hint += ", ";
    hint += app.inShell() ? "\"answer " + std::to_string(i + 1) + "\" for " + buttons[i] : "--answer " + buttons[i];
  }
  return "answer it with " + hint;
}

bool askAndAwaitAnswer(CliApp& app, const std::function<void()>& ask) {
  const auto alerts = streamAlerts();
  const std::size_t before = alerts ? alerts->pendingCount() : 0;
  ask();
  deliverGivenAnswers(app);
  if (!alerts || alerts->pendingCount() <= before) return true;
  const AlertSpec alert = *alerts->newestAlert();
  std::string prompt;
  for (std::size_t i = 0; i < alert.buttons.size(); ++i) prompt += "[" + std::to_string(i + 1) + "] " + alert.buttons[i] + " ";
  while (app.inShell() && alerts->pendingCount() > before) {
    const auto line = app.readLine(prompt + "> ");
    if (!line) break;
    const auto number = buttonNumber(*line, alert.buttons);
    if (number) {
      alerts->answerNewest(AlertAnswer{*number - 1, {}});
    } else {
      std::cerr << "qmv: " << alertAnswerHint(app, alert.buttons) << '\n';
    }
    deliverGivenAnswers(app);
  }
  if (alerts->pendingCount() <= before) return true;
  std::cerr << "qmv: \"" << alert.message << "\" waits: " << alertAnswerHint(app, alert.buttons) << '\n';
  return false;
}

}  // namespace qmv::cli

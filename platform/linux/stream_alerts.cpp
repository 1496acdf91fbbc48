#include "platform/linux/stream_alerts.h"

#include <utility>

namespace qmv {

StreamAlerts::StreamAlerts(std::ostream& out, std::shared_ptr<MainLoop> loop, Answerer answerer)
    : out_(out), loop_(std::move(loop)), answerer_(std::move(answerer)) {}

void StreamAlerts::show(const AlertSpec& alert, Choice choice) {
  if (!alert.title.empty()) out_ << alert.title << '\n';
  if (!alert.message.empty()) out_ << alert.message << '\n';
  out_ << std::flush;
  std::optional<AlertAnswer> given;
  if (answerer_) given = answerer_(alert);
  if (given && loop_ && choice) {
    loop_->post([choice = std::move(choice), answer = *given] { choice(answer); });
    return;
  }
  pending_.emplace_back(alert, std::move(choice));
}

bool StreamAlerts::answer(const AlertAnswer& answer) {
  if (pending_.empty()) return false;
  auto [alert, choice] = std::move(pending_.front());
  pending_.pop_front();
  if (choice) choice(answer);
  return true;
}

bool StreamAlerts::answerNewest(const AlertAnswer& answer) {
  if (pending_.empty()) return false;
  auto [alert, choice] = std::move(pending_.back());
  pending_.pop_back();
  if (choice) choice(answer);
  return true;
}

}  // namespace qmv

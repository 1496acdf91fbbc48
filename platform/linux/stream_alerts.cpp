#include "platform/linux/stream_alerts.h"

#include <utility>

namespace qmv {

StreamAlerts::StreamAlerts(std::ostream& out, std::shared_ptr<MainLoop> loop, Answerer answerer)
    : out_(out), loop_(std::move(loop)), answerer_(std::move(answerer)) {}

void StreamAlerts::show(const AlertSpec& spec, Choice choice) {
  if (!spec.title.empty()) out_ << spec.title << '\n';
  if (!spec.message.empty()) out_ << spec.message << '\n';
  out_ << std::flush;
  std::optional<AlertAnswer> given;
  if (answerer_) given = answerer_(spec);
  if (given && loop_ && choice) {
    loop_->post([choice = std::move(choice), answer = *given] { choice(answer); });
    return;
  }
  pending_.emplace_back(spec, std::move(choice));
}

bool StreamAlerts::answer(const AlertAnswer& answer) {
  if (pending_.empty()) return false;
  auto [spec, choice] = std::move(pending_.front());
  pending_.pop_front();
  if (choice) choice(answer);
  return true;
}

}  // namespace qmv

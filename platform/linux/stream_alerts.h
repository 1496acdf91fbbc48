#pragma once
// Alerts of the command line: the title and the message are printed on their own lines
// (empty ones are skipped), then the front end answers. An answer given by the
// answerer is delivered on the main loop; without one, the alert waits for answer().
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>

#include "platform/alerts.h"
#include "platform/main_loop.h"

namespace qmv {

class StreamAlerts : public Alerts {
 public:
  using Answerer = std::function<std::optional<AlertAnswer>(const AlertSpec& alert)>;

  // REQUIRES: `out` outlives the object; `loop` is the interface thread's loop.
  StreamAlerts(std::ostream& out, std::shared_ptr<MainLoop> loop, Answerer answerer = {});

  void show(const AlertSpec& alert, Choice choice) override;

  // Answers the oldest alert still waiting; false when none waits. The choice runs on
  // the calling (interface) thread.
  bool answer(const AlertAnswer& answer);
  std::size_t pendingCount() const { return pending_.size(); }
  // The oldest alert still waiting, or null.
  const AlertSpec* pendingAlert() const { return pending_.empty() ? nullptr : &pending_.front().first; }
  // The newest alert still waiting, or null, and its answer: a flow answers the question it
  // has just asked, whatever older ones still wait.
  const AlertSpec* newestAlert() const { return pending_.empty() ? nullptr : &pending_.back().first; }
  bool answerNewest(const AlertAnswer& answer);

 private:
  std::ostream& out_;
  std::shared_ptr<MainLoop> loop_;
  Answerer answerer_;
  std::deque<std::pair<AlertSpec, Choice>> pending_;
};

}  // namespace qmv

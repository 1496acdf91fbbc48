#pragma once
// Alerts for tests: records every alert shown and answers them from a script. Answers
// are given by flush(), never from inside show(), as a real alert would.
#include <deque>
#include <utility>
#include <vector>

#include "platform/alerts.h"

namespace qmv {

class ScriptedAlerts : public Alerts {
 public:
  // Queues the answer for the next alert that flush() answers.
  void script(AlertAnswer answer) { script_.push_back(std::move(answer)); }

  void show(const AlertSpec& alert, Choice choice) override {
    shown_.push_back(alert);
    pending_.push_back(std::move(choice));
  }

  // Answers waiting alerts with scripted answers, oldest first, while both last.
  // Returns how many were answered.
  int flush() {
    int answered = 0;
    while (!pending_.empty() && !script_.empty()) {
      Choice choice = std::move(pending_.front());
      pending_.pop_front();
      AlertAnswer answer = std::move(script_.front());
      script_.pop_front();
      if (choice) choice(answer);
      ++answered;
    }
    return answered;
  }

  const std::vector<AlertSpec>& shown() const { return shown_; }
  std::size_t pendingCount() const { return pending_.size(); }

 private:
  std::vector<AlertSpec> shown_;
  std::deque<Choice> pending_;
  std::deque<AlertAnswer> script_;
};

}  // namespace qmv

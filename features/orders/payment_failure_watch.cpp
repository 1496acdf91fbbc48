#include "features/orders/payment_failure_watch.h"

#include <map>
#include <vector>

namespace qmv {
namespace {

std::map<std::uint64_t, std::function<void()>>& watches() {
  static std::map<std::uint64_t, std::function<void()>> all;
  return all;
}

std::uint64_t nextId = 1;

}  // namespace

PaymentFailureWatch::PaymentFailureWatch(std::function<void()> onFailure) : id_(nextId++) {
  watches()[id_] = std::move(onFailure);
}

PaymentFailureWatch::~PaymentFailureWatch() { watches().erase(id_); }

void PaymentFailureWatch::report() {
  // A watcher may end its own watch (or another) while being told.
  std::vector<std::uint64_t> ids;
  for (const auto& entry : watches()) ids.push_back(entry.first);
  for (const std::uint64_t id : ids) {
    const auto it = watches().find(id);
    if (it == watches().end() || !it->second) continue;
    const auto callback = it->second;
    callback();
  }
}

bool PaymentFailureWatch::anyWaiting() { return !watches().empty(); }

}  // namespace qmv

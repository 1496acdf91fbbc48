#include "apps/sandbox/login_throttle.h"

#include <algorithm>
#include <cstdint>

namespace qmv::sandbox {

LoginThrottle::LoginThrottle(Now now) : now_(now ? std::move(now) : Now([] { return Clock::now(); })) {}

LoginThrottle::Clock::duration LoginThrottle::waitIn(Records& records, const std::string& key, Clock::time_point now) {
  const auto it = records.find(key);
  if (it == records.end()) return Clock::duration::zero();
  if (now - it->second.last >= kForgetAfter) {
    records.erase(it);
    return Clock::duration::zero();
  }
  return std::max(Clock::duration::zero(), it->second.until - now);
}

void LoginThrottle::fail(Records& records, const std::string& key, const Policy& policy, Clock::time_point now) {
  if (!records.contains(key) && records.size() >= kMaxEntries) {
    std::erase_if(records, [&](const auto& entry) { return now - entry.second.last >= kForgetAfter; });
    if (records.size() >= kMaxEntries) {
      records.erase(std::min_element(records.begin(), records.end(),
                                     [](const auto& a, const auto& b) { return a.second.last < b.second.last; }));
    }
  }
  Record& record = records[key];
  if (record.failures > 0 && now - record.last >= kForgetAfter) record = Record{};
  ++record.failures;
  record.last = now;
  const int over = record.failures - policy.freeFailures;
  if (over >= 0) {
    // 1, 2, 4, ... seconds; the shift is bounded before it could overflow.
    const auto wait =
        over > 20 ? policy.longestWait : std::min(policy.longestWait, policy.firstWait * (int64_t{1} << over));
    record.until = now + wait;
  }
}

LoginThrottle::Clock::duration LoginThrottle::wait(const std::string& account, const std::string& address) {
  const auto now = now_();
  std::lock_guard lock(mutex_);
  return std::max(waitIn(accounts_, account, now), waitIn(addresses_, address, now));
}

void LoginThrottle::failed(const std::string& account, const std::string& address) {
  const auto now = now_();
  std::lock_guard lock(mutex_);
  fail(accounts_, account, kAccount, now);
  fail(addresses_, address, kAddress, now);
}

void LoginThrottle::succeeded(const std::string& account) {
  std::lock_guard lock(mutex_);
  accounts_.erase(account);
}

void LoginThrottle::clear() {
  std::lock_guard lock(mutex_);
  accounts_.clear();
  addresses_.clear();
}

}  // namespace qmv::sandbox

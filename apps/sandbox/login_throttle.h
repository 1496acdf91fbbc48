#pragma once
// LoginThrottle: back-off after wrong passwords, per account and per peer address. An
// account or an address may fail a few times freely (`freeFailures`); the last free failure
// and each one after it make it wait twice as long as the one before (from a second up to a
// ceiling) before a password is checked again, and while it waits nothing is checked at
// all, so a guesser learns nothing from trying. A right password clears the account's count; failures are
// forgotten after an hour without one. The account's ceiling is low, since anyone can make
// a known account wait; the address's is high, since one address guessing many accounts
// is the attack. Held in memory, bounded in size; thread-safe.
#include <chrono>
#include <functional>
#include <mutex>
#include <string>
#include <unordered_map>

namespace qmv::sandbox {

class LoginThrottle {
 public:
  using Clock = std::chrono::steady_clock;
  using Now = std::function<Clock::time_point()>;

  struct Policy {
    int freeFailures;
    std::chrono::seconds firstWait;
    std::chrono::seconds longestWait;
  };
  static constexpr Policy kAccount{5, std::chrono::seconds(1), std::chrono::seconds(300)};
  static constexpr Policy kAddress{20, std::chrono::seconds(1), std::chrono::seconds(900)};
  static constexpr std::chrono::seconds kForgetAfter{3600};
  // Entries kept per kind; past it the stalest are dropped.
  static constexpr size_t kMaxEntries = 20000;

  // `now` empty: the steady clock.
  explicit LoginThrottle(Now now = {});

  // How long `account` or `address` must still wait before a password may be checked;
  // zero when it may be now.
  Clock::duration wait(const std::string& account, const std::string& address);
  void failed(const std::string& account, const std::string& address);
  void succeeded(const std::string& account);
  // Forgets everything (a sandbox put back to a remembered state).
  void clear();

 private:
  struct Record {
    int failures = 0;
    Clock::time_point last;
    Clock::time_point until;
  };
  using Records = std::unordered_map<std::string, Record>;

  static Clock::duration waitIn(Records& records, const std::string& key, Clock::time_point now);
  static void fail(Records& records, const std::string& key, const Policy& policy, Clock::time_point now);

  Now now_;
  std::mutex mutex_;
  Records accounts_;
  Records addresses_;
};

}  // namespace qmv::sandbox

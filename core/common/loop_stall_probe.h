#pragma once
// Debug aid: how long the interface thread is held by one callback. Main loops time each
// callback they run with a Stretch; code that knows what a callback is doing names it with
// note(). Switched on by QMV_LOOP_STALL (set, non-empty and not "0"), when the command-line
// client prints describe() on stderr as each command ends. Off, a Stretch costs one test.
//
// Stretches are timed on the thread that runs them; the summary is shared and locked, so
// loops on several threads (tests, benchmarks) may all report into it.
#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace qmv {

class LoopStallProbe {
 public:
  // Wall time is what the member waits; the thread's CPU time is the callback's own work,
  // which other processes on a busy machine do not stretch.
  struct Summary {
    std::chrono::nanoseconds longest{0};
    std::string where;  // the kind of callback, then the last note made during it
    std::chrono::nanoseconds longestCpu{0};
    std::string whereCpu;
    std::size_t callbacks = 0;
    std::chrono::nanoseconds total{0};
  };

  static bool enabled();
  static void setEnabled(bool on);

  // Times one callback. A stretch inside another (a loop run from within a callback)
  // belongs to the outer one, which holds the thread throughout.
  class Stretch {
   public:
    explicit Stretch(const char* kind);
    ~Stretch();
    Stretch(const Stretch&) = delete;
    Stretch& operator=(const Stretch&) = delete;

   private:
    const char* kind_;
    bool counted_ = false;
    bool outermost_ = false;
    std::chrono::steady_clock::time_point start_;
    std::chrono::nanoseconds startCpu_{0};
  };

  // Names what the current stretch is doing; the last note of the longest one is kept.
  static void note(std::string_view what);

  static Summary summary();
  static void reset();
  // "longest loop callback: 1.234 ms wall (task: completion of X), 0.812 ms CPU (...);
  // 57 callbacks, 12.3 ms in all"
  static std::string describe();
};

}  // namespace qmv

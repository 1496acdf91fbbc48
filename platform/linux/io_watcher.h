#pragma once
// What a Linux main loop offers adapters that wait on descriptors of their own: readiness
// watches on file descriptors and deadline timers, both reported on the loop's thread.
// The Asio loop and the GLib loop provide it, so that one adapter (the curl transport)
// runs its transfers on whichever loop drives the interface.
//
// Everything here REQUIRES the loop's thread, except where a loop's own post() is used.
#include <chrono>
#include <functional>
#include <memory>

namespace qmv {

class IoWatcher {
 public:
  using Clock = std::chrono::steady_clock;
  enum Event : int { kReadable = 1, kWritable = 2, kError = 4 };

  // One descriptor being watched. The descriptor stays the caller's: destroying the
  // watch never closes it, and no report arrives after the watch is destroyed, even
  // one that was already due.
  class Watch {
   public:
    virtual ~Watch() = default;
    // The events to report from now on (kReadable, kWritable or both); 0 keeps the
    // descriptor known to the loop but reports nothing. A report that includes kError
    // pauses the watch until want() is called again, since the descriptor would be
    // reported again at once.
    virtual void want(int events) = 0;
  };

  // A one-shot timer. Setting it again replaces the pending expiry.
  class Timer {
   public:
    virtual ~Timer() = default;
    virtual void expireAt(Clock::time_point at) = 0;
    virtual void cancel() = 0;
  };

  virtual ~IoWatcher() = default;

  // Watches `fd`; `ready` gets the events that hold each time it is ready for a wanted
  // one (level-triggered: a descriptor still ready is reported again). Null when the
  // loop cannot watch this descriptor. Starts with no event wanted.
  // One exception, which spares a loop a system call per wait: an owner that stops
  // wanting to read from within the report that the descriptor is readable has taken
  // what it wanted, and a loop may then report it readable again only for data that
  // arrives later.
  virtual std::unique_ptr<Watch> watch(int fd, std::function<void(int events)> ready) = 0;
  // A timer that calls `fired` when it expires.
  virtual std::unique_ptr<Timer> timer(std::function<void()> fired) = 0;
};

}  // namespace qmv

#pragma once

#include <functional>
#include <memory>

namespace npar_host {

/// The exit code of a program that Ctrl-C ended.
inline constexpr int kInterruptedExitCode = 130;

/// Watches for Ctrl-C while it lives: it calls the function of the Cancelling scope that stands, or
/// without one ends the process with exit code 130. A second Ctrl-C ends the process in any case.
/// One at a time in a process.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  [[nodiscard]] bool Interrupted() const;

  /// While it lives, Ctrl-C calls `cancel`, on a thread of the watch's own.
  class Cancelling {
   public:
    Cancelling(InterruptWatch& watch, std::function<void()> cancel);
    ~Cancelling();
    Cancelling(const Cancelling&) = delete;
    Cancelling& operator=(const Cancelling&) = delete;

   private:
    InterruptWatch& watch;
  };

 private:
  struct State;  // the system's
  std::unique_ptr<State> state;
};

}  // namespace npar_host

#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>

namespace npar_host {

/// The exit code of a program that Ctrl-C ended.
inline constexpr int kInterruptedExitCode = 130;

/// Watches for Ctrl-C (SIGINT) while it lives. The signal only writes a byte to a pipe; a thread of
/// its own reads it and calls the function of the Cancelling scope that stands, or without one ends
/// the process with exit code 130. A second Ctrl-C ends the process in any case. One at a time in a
/// process.
class InterruptWatch {
 public:
  InterruptWatch();
  ~InterruptWatch();
  InterruptWatch(const InterruptWatch&) = delete;
  InterruptWatch& operator=(const InterruptWatch&) = delete;

  [[nodiscard]] bool Interrupted() const { return interrupted; }

  /// While it lives, Ctrl-C calls `cancel` on the watching thread.
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
  void Watch();

  int pipe[2] = {-1, -1};
  std::atomic<bool> interrupted = false;
  std::mutex mutex;  // guards cancel
  std::function<void()> cancel;
  std::thread watcher;
};

}  // namespace npar_host

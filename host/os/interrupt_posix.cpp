// The signal writes a byte to a pipe; a thread of its own reads it and calls the function. A second
// signal waits for no thread.

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

#include "host/os/interrupt.h"
#include "host/os/replace_file.h"

namespace npar_host {
namespace {

// Where the signal handler writes; a handler may touch little else.
std::atomic<int> signalPipe = -1;
std::atomic<bool> hasCome = false;

extern "C" void OnInterrupt(int signal) {
  if (hasCome.exchange(true)) {
    AbandonTemporaryFile();
    std::signal(signal, SIG_DFL);
    raise(signal);  // it comes as the handler returns
    return;
  }
  const int saved = errno;
  const char byte = 'i';
  static_cast<void>(!write(signalPipe, &byte, 1));
  errno = saved;
}

}  // namespace

struct InterruptWatch::State {
  int pipe[2] = {-1, -1};
  std::atomic<bool> interrupted = false;
  std::mutex mutex;  // guards cancel
  std::function<void()> cancel;
  std::thread watcher;

  void Watch() {
    char byte = 0;
    while (read(pipe[0], &byte, 1) == 1 || errno == EINTR) {
      if (byte == 'q') return;
      if (byte != 'i') continue;
      interrupted = true;
      const std::lock_guard lock(mutex);
      if (!cancel) {
        if (isatty(STDERR_FILENO) == 1) std::fputs("\n", stderr);  // behind a progress bar
        std::fputs("npar: cancelled\n", stderr);
        AbandonTemporaryFile();
        std::_Exit(kInterruptedExitCode);
      }
      cancel();
    }
  }
};

InterruptWatch::InterruptWatch() : state(std::make_unique<State>()) {
  constexpr const char* kRefused =
      "the system grants no thread or pipe to watch for Ctrl-C; end other programs or raise the "
      "limits of this one";
  if (pipe(state->pipe) != 0) {
    throw std::system_error(errno, std::generic_category(), kRefused);
  }
  for (const int end : state->pipe) fcntl(end, F_SETFD, FD_CLOEXEC);
  signalPipe = state->pipe[1];
  try {
    state->watcher = std::thread([this] { state->Watch(); });
  } catch (const std::system_error& error) {
    close(state->pipe[0]);
    close(state->pipe[1]);
    throw std::system_error(error.code(), kRefused);
  }
  hasCome = false;
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  action.sa_flags = SA_RESTART;
  sigaction(SIGINT, &action, nullptr);
}

InterruptWatch::~InterruptWatch() {
  std::signal(SIGINT, SIG_DFL);
  const char byte = 'q';
  static_cast<void>(!write(state->pipe[1], &byte, 1));
  state->watcher.join();
  close(state->pipe[0]);
  close(state->pipe[1]);
}

bool InterruptWatch::Interrupted() const { return state->interrupted; }

InterruptWatch::Cancelling::Cancelling(InterruptWatch& watch, std::function<void()> cancel)
    : watch(watch) {
  const std::lock_guard lock(watch.state->mutex);
  watch.state->cancel = std::move(cancel);
}

InterruptWatch::Cancelling::~Cancelling() {
  const std::lock_guard lock(watch.state->mutex);
  watch.state->cancel = nullptr;
}

}  // namespace npar_host

#include "host/cli/interrupt.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace npar_host {
namespace {

// Where the signal handler writes; a handler may touch little else.
std::atomic<int> signalPipe = -1;

extern "C" void OnInterrupt(int) {
  const int saved = errno;
  const char byte = 'i';
  // A full pipe holds an interrupt already.
  static_cast<void>(!write(signalPipe, &byte, 1));
  errno = saved;
}

}  // namespace

InterruptWatch::InterruptWatch() {
  constexpr const char* kRefused =
      "the system grants no thread or pipe to watch for Ctrl-C; end other programs or raise the "
      "limits of this one";
  if (pipe2(pipe, O_CLOEXEC) != 0) {
    throw std::system_error(errno, std::generic_category(), kRefused);
  }
  signalPipe = pipe[1];
  try {
    watcher = std::thread([this] { Watch(); });
  } catch (const std::system_error& error) {
    close(pipe[0]);
    close(pipe[1]);
    throw std::system_error(error.code(), kRefused);
  }
  struct sigaction action {};
  action.sa_handler = OnInterrupt;
  action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
  sigaction(SIGINT, &action, nullptr);
}

InterruptWatch::~InterruptWatch() {
  std::signal(SIGINT, SIG_DFL);
  const char byte = 'q';
  static_cast<void>(!write(pipe[1], &byte, 1));
  watcher.join();
  close(pipe[0]);
  close(pipe[1]);
}

void InterruptWatch::Watch() {
  char byte = 0;
  while (read(pipe[0], &byte, 1) == 1 || errno == EINTR) {
    if (byte == 'q') return;
    if (byte != 'i') continue;
    interrupted = true;
    const std::lock_guard lock(mutex);
    if (!cancel) {
      if (isatty(STDERR_FILENO) == 1) std::fputs("\n", stderr);  // behind a progress bar
      std::fputs("npar: cancelled\n", stderr);
      std::_Exit(kInterruptedExitCode);
    }
    cancel();
  }
}

InterruptWatch::Cancelling::Cancelling(InterruptWatch& watch, std::function<void()> cancel)
    : watch(watch) {
  const std::lock_guard lock(watch.mutex);
  watch.cancel = std::move(cancel);
}

InterruptWatch::Cancelling::~Cancelling() {
  const std::lock_guard lock(watch.mutex);
  watch.cancel = nullptr;
}

}  // namespace npar_host

// The system calls the handler on a thread of its own.

#include <windows.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "host/os/interrupt.h"
#include "host/os/replace_file.h"

namespace npar_host {
namespace {

// What the handler finds; one at a time in a process.
std::mutex mutex;  // guards cancel
std::function<void()> cancel;
std::atomic<bool> interrupted = false;

BOOL WINAPI OnInterrupt(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  if (interrupted.exchange(true)) return FALSE;  // the second one ends the process
  const std::lock_guard lock(mutex);
  if (!cancel) {
    std::fputs("npar: cancelled\n", stderr);
    AbandonTemporaryFile();
    std::_Exit(kInterruptedExitCode);
  }
  cancel();
  return TRUE;
}

}  // namespace

struct InterruptWatch::State {};

InterruptWatch::InterruptWatch() {
  interrupted = false;
  SetConsoleCtrlHandler(OnInterrupt, TRUE);
}

InterruptWatch::~InterruptWatch() { SetConsoleCtrlHandler(OnInterrupt, FALSE); }

bool InterruptWatch::Interrupted() const { return interrupted; }

InterruptWatch::Cancelling::Cancelling(InterruptWatch& watch, std::function<void()> cancel)
    : watch(watch) {
  const std::lock_guard lock(mutex);
  npar_host::cancel = std::move(cancel);
}

InterruptWatch::Cancelling::~Cancelling() {
  const std::lock_guard lock(mutex);
  npar_host::cancel = nullptr;
}

}  // namespace npar_host

#include <io.h>
#include <windows.h>

#include <cstdlib>

#include "host/os/terminal.h"

namespace npar_host {
namespace {

constexpr std::size_t kUsualColumns = 80;

HANDLE HandleOf(int descriptor) { return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); }

}  // namespace

bool IsTerminal(int descriptor) {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(descriptor), &mode) != 0;
}

std::size_t TerminalColumns(int descriptor) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (GetConsoleScreenBufferInfo(HandleOf(descriptor), &info) == 0) return kUsualColumns;
  return static_cast<std::size_t>(info.srWindow.Right - info.srWindow.Left + 1);
}

// PrepareStandardStreams has asked for them.
bool TerminalKnowsEscapes() {
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(kStandardError), &mode) != 0 &&
         (mode & ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

// PrepareStandardStreams sets the console so.
bool LocaleIsUtf8() { return true; }

bool IsInEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

}  // namespace npar_host

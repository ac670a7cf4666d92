#include <unistd.h>

#include <cstdlib>
#include <cstring>

#include "host/os/terminal.h"

namespace npar_host {

bool IsTerminal(int descriptor) { return isatty(descriptor) == 1; }

std::size_t TerminalColumns(int) {
  constexpr std::size_t kUsualColumns = 80;
  return kUsualColumns;
}

bool TerminalKnowsEscapes() {
  const char* const kind = std::getenv("TERM");
  return kind != nullptr && *kind != '\0' && std::strcmp(kind, "dumb") != 0;
}

bool LocaleIsUtf8() { return true; }

bool IsInEnvironment(const char* name) {
  const char* const value = std::getenv(name);
  return value != nullptr && *value != '\0';
}

}  // namespace npar_host

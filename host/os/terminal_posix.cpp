#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

#include "host/os/terminal.h"

namespace npar_host {
namespace {

constexpr std::size_t kUsualColumns = 80;

std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

bool IsTerminal(int descriptor) { return isatty(descriptor) == 1; }

std::size_t TerminalColumns(int descriptor) {
  struct winsize size {};
  const bool isTold = ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return isTold ? size.ws_col : kUsualColumns;
}

bool TerminalKnowsEscapes() { return Environment("TERM") != "dumb"; }

bool LocaleIsUtf8() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", locale_t{});
  if (locale == locale_t{}) return false;
  const locale_t before = uselocale(locale);  // of this thread
  const bool isUtf8 = std::string_view(nl_langinfo(CODESET)) == "UTF-8";
  uselocale(before);
  freelocale(locale);
  return isUtf8;
}

bool IsInEnvironment(const char* name) { return !Environment(name).empty(); }

}  // namespace npar_host

#include "host/cli/report_request.h"

#include <langinfo.h>
#include <locale.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <vector>

#include "host/cli/word_list.h"
#include "host/data/input_error.h"

namespace npar_host {
namespace {

// Tables are hard to read above, and impossible to lay out below.
constexpr std::size_t kNarrowest = 40;
constexpr std::size_t kWidest = 120;

const char* Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool IsSet(const char* name) { return *Environment(name) != '\0'; }

// The locale is asked for and not set: numbers stay those of the C locale.
bool LocaleIsUtf8() {
  const locale_t locale = newlocale(LC_CTYPE_MASK, "", locale_t{});
  if (locale == locale_t{}) return false;
  const bool isUtf8 = std::string_view(nl_langinfo_l(CODESET, locale)) == "UTF-8";
  freelocale(locale);
  return isUtf8;
}

}  // namespace

const Renderer& RequireRenderer(std::string_view name) {
  if (const Renderer* found = FindRenderer(name)) return *found;
  std::vector<std::string> names;
  for (const Renderer& renderer : AllRenderers()) names.emplace_back(renderer.name);
  throw UsageError("there is no report as " + Quoted(name) + "; there is " +
                   JoinWords(names, " and "));
}

ReportRequest ParseReportRequest(std::string_view text) {
  const std::size_t sign = text.find('=');
  ReportRequest request;
  request.renderer = &RequireRenderer(text.substr(0, sign));
  if (sign != std::string_view::npos) {
    request.path = text.substr(sign + 1);
    if (request.path.empty()) throw UsageError("--report " + std::string(text) + " names no file");
  }
  return request;
}

void AddAsciiOption(CLI::App& command, bool& ascii) {
  command.add_flag("--ascii", ascii, "draw the text report in ASCII alone");
}

TextStyle StyleFor(std::string_view path, bool ascii) {
  TextStyle style;
  style.ascii = ascii;
  if (path != "-" || isatty(STDOUT_FILENO) != 1) return style;
  struct winsize size {};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
    style.width = std::clamp<std::size_t>(size.ws_col, kNarrowest, kWidest);
  }
  style.ascii = ascii || !LocaleIsUtf8();
  style.colour = !IsSet("NO_COLOR") && std::string_view(Environment("TERM")) != "dumb";
  return style;
}

}  // namespace npar_host

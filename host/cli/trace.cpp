#include "host/cli/trace.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <vector>

#include "host/data/input_error.h"
#include "host/os/last_change.h"
#include "host/os/utf8_path.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

std::vector<std::string> commandLine;

std::string TimeText(std::int64_t seconds) {
  const std::chrono::sys_seconds time{std::chrono::seconds(seconds)};
  const auto day = std::chrono::floor<std::chrono::days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  std::array<char, 64> text;
  const int length = std::snprintf(
      text.data(), text.size(), "%d-%02u-%02u %02d:%02d:%02d UTC", static_cast<int>(date.year()),
      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
      static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
      static_cast<int>(clock.seconds().count()));
  return {text.data(), static_cast<std::size_t>(length)};
}

std::int64_t Now() {
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  return now.time_since_epoch().count();
}

// As a shell takes it.
std::string ShellWord(const std::string& word) {
  constexpr const char* kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./:=,+@%";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) return word;
  std::string quoted = "'";
  for (const char letter : word) quoted += letter == '\'' ? "'\\''" : std::string(1, letter);
  return quoted + "'";
}

std::string CommandLine() {
  std::string line = "npar";
  for (const std::string& word : commandLine) line += " " + ShellWord(word);
  return line;
}

}  // namespace

std::optional<std::int64_t> SourceDate() {
  constexpr std::int64_t kEndOfYear9999 = 253402300799;
  const char* const text = std::getenv("SOURCE_DATE_EPOCH");
  if (text == nullptr || *text == '\0') return std::nullopt;
  const std::string_view digits = text;
  std::int64_t seconds = -1;
  const auto [end, error] = std::from_chars(digits.begin(), digits.end(), seconds);
  if (error != std::errc() || end != digits.end() || seconds < 0 || seconds > kEndOfYear9999) {
    throw UsageError("the environment variable SOURCE_DATE_EPOCH is " + Quoted(text) +
                     "; give it the seconds since 1970 of the time to be told, or unset it");
  }
  return seconds;
}

void RememberCommandLine(const std::vector<std::string>& words) { commandLine = words; }

ReportTrace MakeTrace(const std::string& dataPath, const ResultDocument& document,
                      const std::vector<TracedField>& fields) {
  ReportTrace trace;
  trace.file = dataPath == "-" ? "standard input" : dataPath;
  const std::optional<std::int64_t> sourceDate = SourceDate();
  const std::filesystem::path path = Utf8Path(dataPath);
  std::error_code failure;
  if (dataPath != "-" && std::filesystem::is_regular_file(path, failure)) {
    trace.bytes = std::to_string(std::filesystem::file_size(path, failure));
    if (const std::optional<std::int64_t> changed = LastChange(path)) {
      trace.changed = TimeText(std::min(*changed, sourceDate.value_or(*changed)));
    }
  }
  trace.command = CommandLine();
  trace.program = document.application + " " + document.applicationVersion;
  trace.fields = fields;
  trace.made = TimeText(sourceDate ? *sourceDate : Now());
  return trace;
}

}  // namespace npar_host

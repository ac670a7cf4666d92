#include "host/cli/trace.h"

#include <sys/stat.h>

#include <array>
#include <ctime>
#include <fstream>
#include <iterator>

namespace npar_host {
namespace {

std::string TimeText(std::time_t time) {
  std::tm parts{};
  gmtime_r(&time, &parts);
  std::array<char, 64> text;
  const std::size_t length =
      std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S UTC", &parts);
  return {text.data(), length};
}

// As a shell takes it.
std::string Quoted(const std::string& word) {
  constexpr const char* kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789-_./:=,+@%";
  if (!word.empty() && word.find_first_not_of(kPlain) == std::string::npos) return word;
  std::string quoted = "'";
  for (const char letter : word) quoted += letter == '\'' ? "'\\''" : std::string(1, letter);
  return quoted + "'";
}

std::string CommandLine() {
  std::ifstream file("/proc/self/cmdline", std::ios::binary);
  const std::string words((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  std::string line = "npar";
  std::size_t start = words.find('\0');  // behind the program's path
  while (start != std::string::npos && start + 1 < words.size()) {
    const std::size_t end = words.find('\0', start + 1);
    line += " " + Quoted(words.substr(start + 1, end - start - 1));
    start = end;
  }
  return line;
}

}  // namespace

ReportTrace MakeTrace(const std::string& dataPath, const ResultDocument& document) {
  ReportTrace trace;
  trace.file = dataPath == "-" ? "standard input" : dataPath;
  struct stat file {};
  if (dataPath != "-" && stat(dataPath.c_str(), &file) == 0 && S_ISREG(file.st_mode)) {
    trace.bytes = std::to_string(file.st_size);
    trace.changed = TimeText(file.st_mtime);
  }
  trace.command = CommandLine();
  trace.program = document.application + " " + document.applicationVersion;
  trace.made = TimeText(std::time(nullptr));
  return trace;
}

}  // namespace npar_host

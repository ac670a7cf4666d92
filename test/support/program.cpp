#include "support/program.h"

#include <sys/wait.h>

#include <array>
#include <cstdio>

ProgramOutcome RunProgram(const std::string& command) {
  ProgramOutcome outcome;
  std::FILE* pipe = popen(("{ " + command + "; } 2>&1").c_str(), "r");
  if (pipe == nullptr) return outcome;
  std::array<char, 4096> part{};
  std::size_t length = 0;
  while ((length = std::fread(part.data(), 1, part.size(), pipe)) > 0) {
    outcome.output.append(part.data(), length);
  }
  const int status = pclose(pipe);
  if (WIFEXITED(status)) outcome.exitCode = WEXITSTATUS(status);
  return outcome;
}

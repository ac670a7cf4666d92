#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

#include "host/os/run_program.h"

extern char** environ;  // NOLINT: POSIX has each program declare it

namespace npar_host {

ProgramOutcome RunProgram(std::vector<std::string> words) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  pid_t child = 0;
  const int error = posix_spawnp(&child, arguments[0], nullptr, nullptr, arguments.data(), environ);
  if (error != 0) return ProgramOutcome::NotFound;
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return ProgramOutcome::Failed;
  }
  constexpr int kNotFound = 127;  // where the child finds that there is no such program
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotFound) return ProgramOutcome::NotFound;
  return status == 0 ? ProgramOutcome::Done : ProgramOutcome::Failed;
}

}  // namespace npar_host

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "host/os/run_program.h"

extern char** environ;  // NOLINT: POSIX has each program declare it

namespace npar_host {
namespace {

/// What is written into it comes out at its other end.
struct Pipe {
  Pipe() {
    if (pipe(ends) != 0) return;
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  ~Pipe() {
    CloseWriter();
    if (ends[0] >= 0) close(ends[0]);
  }

  void CloseWriter() {
    if (ends[1] >= 0) close(ends[1]);
    ends[1] = -1;
  }
  /// To the end of all writers.
  void ReadAll(std::string& text) const {
    std::array<char, std::size_t{1} << 16> buffer;
    for (;;) {
      const ssize_t got = read(ends[0], buffer.data(), buffer.size());
      if (got > 0) text.append(buffer.data(), static_cast<std::size_t>(got));
      if (got == 0 || (got < 0 && errno != EINTR)) return;
    }
  }

  int ends[2] = {-1, -1};
};

// Answers 0 or an errno.
int Start(std::vector<std::string>& words, int standardOutput, pid_t& child) {
  std::vector<char*> arguments;
  arguments.reserve(words.size() + 1);
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  int error = posix_spawn_file_actions_init(&actions);
  if (error != 0) return error;
  error = posix_spawn_file_actions_adddup2(&actions, standardOutput, STDOUT_FILENO);
  if (error == 0) {
    error = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
  }
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

}  // namespace

ProgramOutcome RunProgram(std::vector<std::string> words, std::string& output) {
  output.clear();
  Pipe pipe;
  if (pipe.ends[0] < 0) return ProgramOutcome::Failed;
  pid_t child = 0;
  if (Start(words, pipe.ends[1], child) != 0) return ProgramOutcome::NotFound;
  pipe.CloseWriter();
  pipe.ReadAll(output);
  int status = 0;
  while (waitpid(child, &status, 0) < 0) {
    if (errno != EINTR) return ProgramOutcome::Failed;
  }
  constexpr int kNotFound = 127;  // where the child finds that there is no such program
  if (WIFEXITED(status) && WEXITSTATUS(status) == kNotFound) return ProgramOutcome::NotFound;
  return status == 0 ? ProgramOutcome::Done : ProgramOutcome::Failed;
}

}  // namespace npar_host

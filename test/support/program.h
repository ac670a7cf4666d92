#pragma once

#include <string>

/// What became of a program.
struct ProgramOutcome {
  int exitCode = -1;   ///< -1 for one that could not be started or was ended by a signal
  std::string output;  ///< of standard output and standard error
};

/// Runs a shell command to its end.
[[nodiscard]] ProgramOutcome RunProgram(const std::string& command);

#pragma once

namespace npar_host {

/// Exit codes of the program.
enum ExitCode : int {
  kExitSuccess = 0,      // also when single tests carry messages
  kExitRefused = 1,      // the component refused the run; its messages are on standard error
  kExitUsage = 2,        // wrong usage, unreadable input, output that can't be written
  kExitAllFailed = 3,    // every test of an analysis failed; the report says why
  kExitCancelled = 130,  // Ctrl-C
};

/// The whole program npar.
[[nodiscard]] int RunCommandLine(int argc, char** argv);

}  // namespace npar_host

#include "host/os/run_program.h"

namespace npar_host {

ProgramOutcome RunProgram(std::vector<std::string> /*words*/, std::string& /*output*/) {
  return ProgramOutcome::NotFound;
}

}  // namespace npar_host

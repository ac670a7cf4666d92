#include <algorithm>

#include "host/os/standard_streams.h"

namespace npar_host {

void PrepareStandardStreams() {}

std::vector<std::string> ProgramWords(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

}  // namespace npar_host

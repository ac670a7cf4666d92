#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <utility>

#include "host/os/standard_streams.h"

namespace npar_host {

// A file that is opened while a standard descriptor is closed would take its place, and get what is
// written there. In the place of input and output stands what can only be used the wrong way round,
// so that reading and writing fail as with a closed one.
void PrepareStandardStreams() {
  for (const auto& [descriptor, wrongWay] :
       {std::pair(STDIN_FILENO, O_WRONLY), {STDOUT_FILENO, O_RDONLY}, {STDERR_FILENO, O_WRONLY}}) {
    if (fcntl(descriptor, F_GETFD) == -1 && errno == EBADF) {
      static_cast<void>(open("/dev/null", wrongWay));  // takes the lowest free one, which this is
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
}

std::vector<std::string> ProgramWords(int argc, char** argv) {
  return {argv + std::min(argc, 1), argv + argc};
}

}  // namespace npar_host

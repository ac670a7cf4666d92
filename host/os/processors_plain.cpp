#include <algorithm>
#include <thread>

#include "host/os/processors.h"

namespace npar_host {

std::size_t MachineThreads() {
  return std::max<std::size_t>(1, std::thread::hardware_concurrency());
}

}  // namespace npar_host

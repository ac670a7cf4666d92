// Linux: the machine may have more processors than the process is allowed to use.
#include <sched.h>

#include <algorithm>

#include "host/os/processors.h"

namespace npar_host {

std::size_t MachineThreads() {
  cpu_set_t allowed;
  if (sched_getaffinity(0, sizeof allowed, &allowed) != 0) return 1;
  return static_cast<std::size_t>(std::max(1, CPU_COUNT(&allowed)));
}

}  // namespace npar_host

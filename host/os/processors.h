#pragma once

#include <cstddef>

namespace npar_host {

/// Threads that this process may run at a time, 1 at least.
[[nodiscard]] std::size_t MachineThreads();

}  // namespace npar_host

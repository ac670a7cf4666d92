#pragma once

#include <cstddef>

namespace npar_host {

/// The double nearest to a decimal: an integer of `bytes` bytes, 32 at most, as two's complement,
/// the lowest byte first, divided by 10 to the power of `scale`.
[[nodiscard]] double DecimalValue(const void* value, std::size_t bytes, int scale);

}  // namespace npar_host

#pragma once

#include <type_traits>

#include "arithmetic/hardware_extended.h"
#include "arithmetic/software_extended.h"

namespace arithmetic {

/// Linux on x86-64 keeps the processor's extended precision switched on; elsewhere there is none,
/// or a host may have switched it off.
#if defined(__linux__) && defined(__x86_64__) && !defined(NPAR_SOFTWARE_EXTENDED)
inline constexpr bool kHasHardware = true;
#else
inline constexpr bool kHasHardware = false;
#endif

/// The type of inner figures: 64 binary digits and exponents to 16383, where a double has 53 and
/// 1023. Each operation is rounded to nearest, so that it has one answer, which both types give.
using Extended = std::conditional_t<kHasHardware, HardwareExtended, SoftwareExtended>;

}  // namespace arithmetic

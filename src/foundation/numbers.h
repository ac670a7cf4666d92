#pragma once

#include <cstdint>
#include <limits>

namespace QDCommon_700 {

/// The number without its fraction, for every double: not a number gives 0, a value out of range
/// the nearest end of the type.
[[nodiscard]] constexpr std::int32_t TruncateToInt32(double value) noexcept {
  if (value >= 2147483647.0) return std::numeric_limits<std::int32_t>::max();
  if (value <= -2147483648.0) return std::numeric_limits<std::int32_t>::min();
  return value == value ? static_cast<std::int32_t>(value) : 0;
}

/// As TruncateToInt32, for 64 bits.
[[nodiscard]] constexpr std::int64_t TruncateToInt64(double value) noexcept {
  if (value >= 9223372036854775808.0) return std::numeric_limits<std::int64_t>::max();
  if (value <= -9223372036854775808.0) return std::numeric_limits<std::int64_t>::min();
  return value == value ? static_cast<std::int64_t>(value) : 0;
}

}  // namespace QDCommon_700

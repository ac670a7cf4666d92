#pragma once

#include <cstdint>

/// The units of two groups that share a value, one run of ties among the ascending ones.
struct TiedUnits {
  std::int64_t first = 0;
  std::int64_t second = 0;

  [[nodiscard]] constexpr std::int64_t Total() const noexcept { return first + second; }
};

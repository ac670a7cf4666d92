#pragma once

#include <algorithm>
#include <cstdint>

/// C(n, k), 0 outside 0 <= k <= n. Every step is a binomial coefficient too, so that the result is
/// exact as long as k C(n, k) is below 2^53 (n up to 51, whatever k), and rounded beyond.
[[nodiscard]] inline double Combinations(std::int64_t n, std::int64_t k) {
  if (k < 0 || k > n) return 0.0;
  double product = 1.0;
  for (std::int64_t i = 1; i <= std::min(k, n - k); ++i) {
    product = product * static_cast<double>(n - i + 1) / static_cast<double>(i);
  }
  return product;
}

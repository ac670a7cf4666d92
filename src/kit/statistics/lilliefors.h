#pragma once

#include <cstdint>

/// The significance of a largest difference D from a distribution whose parameters were taken from
/// the same n units, or the bound where the approximation ends (docs/statistics/ks_one_sample.md).
struct LillieforsSig {
  enum class Kind { Value, AtLeast, AtMost };
  Kind kind = Kind::Value;
  double sig = 1.0;
};
/// The fewest units.
inline constexpr std::int64_t kFewestLillieforsUnits = 5;

/// Of the normal, mean and standard deviation being those of the data: G. E. Dallal, L. Wilkinson,
/// The American Statistician 40 (1986).
[[nodiscard]] LillieforsSig NormalLillieforsSig(std::int64_t n, double d);
/// Of the exponential, the mean being that of the data: M. A. Stephens, JASA 69 (1974), case 4.
[[nodiscard]] LillieforsSig ExponentialLillieforsSig(std::int64_t n, double d);

#pragma once

#include <cstdint>
#include <optional>

#include "kit/order/order_statistics.h"
#include "kit/statistics/sign_flip.h"

/// Distribution-free limits of the pseudo-median, which are Walsh averages
/// (docs/statistics/hodges_lehmann_pairs.md).
struct WalshInterval {
  /// From 2 to so many units they stand on the exact distribution of the signed ranks.
  static constexpr std::int64_t kMostUnits = 500;
  [[nodiscard]] static constexpr bool Takes(std::int64_t units) noexcept {
    return units >= 2 && units <= kMostUnits;
  }

  double lower = 0.0;
  double upper = 0.0;
  double attainedLevel = 0.0;
};

/// The limits by order statistics of the averages of sorted values, `ranks` being the distribution
/// of the signed ranks of as many units. Throws std::bad_alloc.
[[nodiscard]] std::optional<WalshInterval> FindWalshInterval(const WeightedValues& values,
                                                             const SignFlipDistribution& ranks,
                                                             double confidenceLevel);

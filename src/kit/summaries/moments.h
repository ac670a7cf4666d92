#pragma once

#include <cmath>
#include <cstdint>

#include "foundation/names.h"

/// Weighted mean and sum of squares, updated value by value (D. H. D. West, Comm. ACM 22, 1979).
struct Moments {
  double mean = 0.0;
  double sumOfSquares = 0.0;
  std::int64_t weightedCount = 0;

  void Add(double x, std::int64_t weight) noexcept {
    if (weight == 0) return;
    const auto w = static_cast<double>(weight);
    const auto earlier = static_cast<double>(weightedCount);
    weightedCount += weight;
    const auto total = static_cast<double>(weightedCount);
    const double delta = (x - mean) * w / total;
    mean += delta;
    sumOfSquares += delta * delta * total * earlier / w;
  }
  /// The same for a weight of 1, to the last bit.
  void Add(double x) noexcept {
    const auto earlier = static_cast<double>(weightedCount);
    ++weightedCount;
    const auto total = static_cast<double>(weightedCount);
    const double delta = (x - mean) / total;
    mean += delta;
    sumOfSquares += delta * delta * total * earlier;
  }
  /// 0 up to a weight of 1.
  [[nodiscard]] double StdDev() const noexcept {
    return weightedCount > 1 ? std::sqrt(sumOfSquares / static_cast<double>(weightedCount - 1))
                             : 0.0;
  }
};

/// The least and the greatest of some values; the missing value before the first.
struct Extremes {
  double minimum = QDMV::gMissingValue;
  double maximum = QDMV::gMissingValue;

  void Take(double x) noexcept {
    if (minimum == QDMV::gMissingValue || minimum > x) minimum = x;
    if (maximum == QDMV::gMissingValue || x > maximum) maximum = x;
  }
};

#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include "foundation/names.h"
#include "kit/statistics/normal.h"

/// Both tails of a binomial count.
struct BinomialTails {
  double lower = 0.0;  ///< P(X <= count)
  double upper = 0.0;  ///< P(X >= count)
};

/// Of the flags that a distribution function sets, these withhold its value.
[[nodiscard]] constexpr bool IsRefusal(std::int32_t flag) { return flag == 1 || flag == 3; }

/// Tails of `count` successes in n trials of probability p; nothing where the distribution function
/// refuses its arguments. The upper tail is the lower one of the failures, so that it stays
/// accurate when it is small.
[[nodiscard]] inline std::optional<BinomialTails> TailsOfCount(std::int64_t count, std::int64_t n,
                                                               double p) {
  std::int32_t lowerError = 0;
  std::int32_t upperError = 0;
  const auto trials = static_cast<double>(n);
  const BinomialTails tails{
      QDDistFun::CdfBin(static_cast<double>(count), trials, p, lowerError),
      QDDistFun::CdfBin(static_cast<double>(n - count), trials, 1.0 - p, upperError)};
  if (IsRefusal(lowerError) || IsRefusal(upperError)) return std::nullopt;
  return tails;
}

/// Normal approximation of `count` successes in n >= 1 trials of probability p, 0 < p < 1, with the
/// correction for continuity (docs/statistics/binomial.md). With p = 1/2 it is that of the sign
/// test: W. J. Dixon, A. M. Mood, JASA 41 (1946).
[[nodiscard]] inline NormalFigures BinomialApproximation(std::int64_t count, std::int64_t n,
                                                         double p) {
  const double expected = static_cast<double>(n) * p;
  return StandardizedFigures(CorrectedForContinuity(static_cast<double>(count) - expected),
                             std::sqrt(expected * (1.0 - p)));
}

#pragma once

#include <cstdint>
#include <optional>

#include "foundation/names.h"

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

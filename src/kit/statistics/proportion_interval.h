#pragma once

#include <cstdint>
#include <optional>

#include "foundation/names.h"

/// Limits of a confidence interval for a proportion.
struct ProportionInterval {
  double lower = 0.0;
  double upper = 1.0;
};

/// Intervals for the proportion of successes among successes and failures, at least one together,
/// at a confidence level strictly between 0 and 1 (docs/statistics/confidence_interval.md). A
/// proportion of 0 has the lower limit 0, one of 1 the upper limit 1, in every method.
class ProportionEstimator {
 public:
  ProportionEstimator(std::int64_t successes, std::int64_t failures, double confidenceLevel);

  [[nodiscard]] double Estimate() const noexcept { return proportion; }
  /// C. J. Clopper, E. S. Pearson, Biometrika 26 (1934), by quantiles of F.
  [[nodiscard]] ProportionInterval ClopperPearson() const;
  /// Equal-tailed posterior limits under Jeffreys' prior: L. D. Brown, T. T. Cai, A. DasGupta,
  /// Statistical Science 16 (2001), as are the next.
  [[nodiscard]] ProportionInterval Jeffreys() const;
  /// Found by Newton's method from Jeffreys' limits; nothing where an exponential fails.
  [[nodiscard]] std::optional<ProportionInterval> ProfileLikelihood() const;

 private:
  [[nodiscard]] double LogLikelihood(double x) const;
  [[nodiscard]] double SolveProfile(double start, double chiSquare) const;

  double a;
  double b;
  double n;
  double proportion;
  double level;
  bool isZero;
  bool isOne;
};

/// Wilson's interval, without correction, for x successes of n units, at least one: E. B. Wilson,
/// JASA 22 (1927). With x = 0 the lower limit is 0, with x = n the upper one 1.
[[nodiscard]] ProportionInterval WilsonInterval(std::int64_t x, std::int64_t n,
                                                double confidenceLevel);
/// Agresti's and Coull's, cut to 0 and 1: The American Statistician 52 (1998).
[[nodiscard]] ProportionInterval AgrestiCoullInterval(std::int64_t x, std::int64_t n,
                                                      double confidenceLevel);

#pragma once

#include <cmath>

#include "foundation/names.h"

/// What a statistic comes to beside the normal distribution.
struct NormalFigures {
  double standardError = 0.0;
  double z = 0.0;
  double sig = 1.0;  ///< two-sided
};

/// 2 (1 - Phi(|z|)); not a number for what is none.
[[nodiscard]] inline double TwoSidedNormalSig(double z) {
  return 2.0 * QDDistFun::SfStdNorm(std::abs(z));
}

/// z = deviation / standardError, 0 where nothing can vary.
[[nodiscard]] inline NormalFigures StandardizedFigures(double deviation, double standardError) {
  const double z = standardError == 0.0 ? 0.0 : deviation / standardError;
  return {standardError, z, TwoSidedNormalSig(z)};
}

/// A count's deviation from its mean, moved by 1/2 toward 0 and never past it: F. Yates, JRSS
/// Supplement 1 (1934).
[[nodiscard]] constexpr double CorrectedForContinuity(double deviation) {
  if (deviation < -0.5) return deviation + 0.5;
  return deviation > 0.5 ? deviation - 0.5 : 0.0;
}

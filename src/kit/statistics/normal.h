#pragma once

#include <cmath>
#include <optional>

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

/// Both tails of a standard statistic, each formed as itself.
struct NormalTails {
  explicit NormalTails(double z)
      : less(QDDistFun::CdfStdNorm(z)), greater(QDDistFun::SfStdNorm(z)) {}
  double less;
  double greater;
};

/// What a statistic that takes whole or half numbers comes to beside the normal distribution, with
/// the correction for continuity.
struct CorrectedNormalFigures {
  double z = 0.0;        ///< 0 up to 1/2 from the mean
  double sig = 1.0;      ///< two-sided
  double less = 1.0;     ///< the outcome and smaller ones
  double greater = 1.0;  ///< the outcome and larger ones
};

/// Nothing where nothing can vary.
[[nodiscard]] inline std::optional<CorrectedNormalFigures> CorrectedFigures(double deviation,
                                                                            double standardError) {
  constexpr double kHalf = 0.5;
  if (!(standardError > 0.0)) return std::nullopt;
  const double z = CorrectedForContinuity(deviation) / standardError;
  return CorrectedNormalFigures{z, TwoSidedNormalSig(z),
                                QDDistFun::CdfStdNorm((deviation + kHalf) / standardError),
                                QDDistFun::SfStdNorm((deviation - kHalf) / standardError)};
}

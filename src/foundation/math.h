#pragma once

#include <cstdint>

#include "foundation/export.h"

namespace QDMath_700 {

/// Distribution functions. Relative error at most 1e-12 over the whole domain where the result is a
/// normal double, tails included. Not a number in, or parameters outside their domain, give not a
/// number out; nothing throws. "Sf" is the upper tail 1 - Cdf, kept accurate where it is small.
class QD_EXPORT QDDistFun {
 public:
  /// Standard normal distribution.
  [[nodiscard]] static double CdfStdNorm(double x);
  [[nodiscard]] static double SfStdNorm(double x);
  /// Normal distribution with mean and standard deviation above 0.
  [[nodiscard]] static double CdfNorm(double x, double mean, double sd);
  /// Quantile of the standard normal: minus infinity at 0, infinity at 1.
  [[nodiscard]] static double IdfStdNorm(double p);
  /// Chi-square distribution, df above 0; x below 0 counts as 0.
  [[nodiscard]] static double CdfChi(double x, double df);
  [[nodiscard]] static double SfChi(double x, double df);
  [[nodiscard]] static double IdfChi(double p, double df);
  /// Upper tail of Fisher's F with df1 and df2 above 0; x below 0 counts as 0.
  [[nodiscard]] static double SfF(double x, double df1, double df2);
  /// Quantile of Fisher's F with df1 and df2 above 0.
  [[nodiscard]] static double IdfF(double p, double df1, double df2);
  /// Quantile of the beta distribution with shapes above 0.
  [[nodiscard]] static double IdfBeta(const double& p, const double& a, const double& b);
  /// P(X <= x) of a binomial count of n trials with probability p; 0 for x below 0, 1 from n on.
  /// `error`: 0 success, 1 arguments outside the domain (the result is then not a number).
  [[nodiscard]] static double CdfBin(double x, double n, double p, std::int32_t& error);
  /// P(X <= x) of the number of marked items among n drawn without return from `total` items of
  /// which k are marked. `error` as CdfBin.
  [[nodiscard]] static double CDFHyper(double x, double n, double k, double total,
                                       std::int32_t& error);
  /// Logarithm of the gamma function for x above 0.
  [[nodiscard]] static double lyradnlgam(const double& x);
};

/// What became of an exponential.
enum class PowerStatus { Success = 0, Underflow = 1, Overflow = 2 };

class QD_EXPORT QDPower {
 public:
  static constexpr double gMachineEpsilon = 2.220446049250313e-16;

  /// |a - b| <= tolerance; false with a not-a-number.
  [[nodiscard]] static bool AlmostEqual(double a, double b, double tolerance);
  [[nodiscard]] static bool IsEvenInteger(double x);
  /// e to the x: underflow gives 0, overflow infinity; not a number counts as overflow.
  static PowerStatus Exponent(double x, double& value);
};

}  // namespace QDMath_700

#pragma once

namespace QDMath_700 {

/// Internal figures carry more digits than a double, so that what is rounded at the end is right.
using Real = long double;

/// Both tails of a distribution at one place, each with a small relative error, and the density
/// there of the variable's logarithm (gamma) or log odds (beta). Both logarithmic densities are
/// log-concave, whatever the shapes: the quantiles rest on that.
struct Tails {
  Real lower;
  Real upper;
  Real density;
};

/// Gamma distribution with shape a > 0 and scale 1 at x > 0, both finite.
[[nodiscard]] Tails GammaTails(Real a, Real x);

/// Beta distribution with shapes a, b > 0 at x in (0, 1). y = 1 - x and excess = b x - a y come
/// from the caller, who may know them better than their formula would give them.
[[nodiscard]] Tails BetaTails(Real a, Real b, Real x, Real y, Real excess);

/// ln(Gamma(a)) less Stirling's (a - 1/2) ln a - a + ln(2 pi) / 2, for a > 0.
[[nodiscard]] Real StirlingRemainder(Real a);

/// ln(ratio) - d, where ratio = 1 + d >= 0 and both are known: without loss around 1.
[[nodiscard]] Real LogLess(Real ratio, Real d);

/// ln(Gamma(x)) for x > 0, without loss around its zeros 1 and 2.
[[nodiscard]] Real LogGamma(Real x);

/// P(X <= x) of the hypergeometric count of n drawn from `total` of which k are marked, for an x
/// from the smallest possible count to one below the largest.
[[nodiscard]] Real HypergeometricLower(Real x, Real n, Real k, Real total);

/// Quantile of the standard normal for p in (0, 1).
[[nodiscard]] Real NormalQuantile(Real p);

}  // namespace QDMath_700

#pragma once

#include "arithmetic/constants.h"
#include "arithmetic/elementary.h"

namespace QDMath_700 {

/// Internal figures carry more digits than a double, so that what is rounded at the end is right,
/// and the same digits on every machine.
using Real = arithmetic::Extended;
using arithmetic::operator""_ext;

enum class Side { Lower, Upper };

/// Tail of the gamma distribution with shape a > 0 and scale 1 at x > 0, both finite, with a small
/// relative error.
[[nodiscard]] Real GammaTail(Real a, Real x, Side side);
/// Density there of the variable's logarithm: log-concave, as the tails are, whatever the shape.
/// The quantiles rest on that.
[[nodiscard]] Real GammaDensity(Real a, Real x);

/// A place of the beta distribution with shapes a, b > 0: x in (0, 1). y = 1 - x and excess =
/// b x - a y come from the caller, who may know them better than their formula would give them.
struct BetaPlace {
  Real a;
  Real b;
  Real x;
  Real y;
  Real excess;
};
/// Tail there, as GammaTail.
[[nodiscard]] Real BetaTail(const BetaPlace& place, Side side);
/// Density there of the variable's log odds, as GammaDensity.
[[nodiscard]] Real BetaDensity(const BetaPlace& place);

/// ln(Gamma(a)) less Stirling's (a - 1/2) ln a - a + ln(2 pi) / 2, for a > 0.
[[nodiscard]] Real StirlingRemainder(Real a);

/// ln(ratio) - d, where ratio = 1 + d >= 0 and both are known: without loss around 1.
[[nodiscard]] Real LogLess(Real ratio, Real d);

/// P(X <= x) of the hypergeometric count of n drawn from `total` of which k are marked, for an x
/// from the smallest possible count to one below the largest.
[[nodiscard]] Real HypergeometricLower(Real x, Real n, Real k, Real total);

/// Quantile of the standard normal for p in (0, 1).
[[nodiscard]] Real NormalQuantile(Real p);

}  // namespace QDMath_700

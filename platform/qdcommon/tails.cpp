// Tails of the gamma and beta distributions for every shape a double can hold.
//
// Small shapes are Boost's: its series and continued fractions, in long double. They need about the
// square root of the larger shape in steps, and their leading factor x^a y^b / B(a, b) is a product
// of powers that nearly cancel, so neither time nor digits last for large ones.
//
// From shape kLargeShape on (both shapes, for beta) the tail away from the mean is its density
// times a factor without any such power. The density, of t = ln x (gamma) or ln(x / y) (beta), is
// taken apart as in C. Loader, Fast and accurate computation of binomial probabilities (2000):
// Stirling remainders, and a deviance that is a sum of positive terms.
//
// Gamma: with l = x / a and eta^2 / 2 = l - 1 - ln l, where eta has the sign of l - 1,
//   Q = erfc(eta sqrt(a / 2)) / 2 + density(t) / a * sum beta_n eta^n      where |eta| <= 1,
// P with the other signs, and beyond it a series (P) or a continued fraction (Q), which are short
// there: A. Gil, J. Segura, N. M. Temme, Efficient and accurate algorithms for the computation and
// inversion of the incomplete gamma function ratios, SIAM J. Sci. Comput. 34 (2012).
//
// Beta: the tail is integrated,
//   tail = density(t) * integral over s >= 0 of exp(h(t +- s) - h(t)),
//   h(t) = a t - (a + b) ln(1 + e^t).
// h is concave and written below in differences that do not cancel, the integrand is positive,
// starts at 1 and falls: the double-exponential rule on a fixed set of points has all digits for
// each shape.

#include "qdcommon/tails.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "arithmetic/for_boost.h"
//
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/gamma.hpp>

#include "qdcommon/quadrature.h"

namespace QDMath_700 {

namespace {

using arithmetic::Policy;

constexpr Real kTwoPi = 6.283185307179586476925286766559006_ext;
constexpr Real kHalfLogTwoPi = 0.918938533204672741780329736405618_ext;

// At 20, StirlingRemainder's first term left out is 4e-21.
constexpr Real kLargeShape = 20;

// A term below this part of its sum ends a series.
constexpr Real kSmallestPart = 1e-19_ext;

// From here on a beta variable whose other shape is below kLargeShape is a gamma variable: what the
// leading term of the expansion leaves out is below shape * ln(p)^2 / kHugeShape^2.
constexpr Real kHugeShape = 1e11;

// e^s - 1 - s, without loss around 0.
Real ExpLess(Real s) {
  if (!(fabs(s) < 0.5)) return expm1(s) - s;
  Real sum = 0;
  for (int k = 18; k >= 3; --k) sum = (1 + sum) * s / static_cast<Real>(k);
  return (1 + sum) * s * s / 2;
}

// The coefficients f_n of eta / (l - 1) in powers of eta. Those of l - 1 = sum alpha_n eta^n follow
// from eta l = (l - 1) dl/deta, f from their product. They fall as (4 pi)^(-n / 2), so that what is
// left out is below 1e-20 where |eta| <= 1.
class UniformSeries {
 public:
  UniformSeries() {
    std::array<Real, kCount + 2> alpha{0, 1};
    for (std::size_t n = 2; n < alpha.size(); ++n) {
      Real sum = 0;
      for (std::size_t j = 2; j < n; ++j) sum += alpha[j] * alpha[n + 1 - j];
      alpha[n] = alpha[n - 1] / static_cast<Real>(n + 1) - sum / 2;
    }
    for (std::size_t n = 0; n < kCount; ++n) {
      f[n] = n == 0 ? 1 : 0;
      for (std::size_t j = 1; j <= n; ++j) f[n] -= alpha[j + 1] * f[n - j];
    }
  }

  /// sum beta_n eta^n, where beta_(n-1) = f_n + (n + 1) beta_(n+1) / a, from the far end.
  [[nodiscard]] Real Sum(Real a, Real eta) const {
    const Real perShape = 1 / a;
    Real afterNext = f[kCount - 1];
    Real next = f[kCount - 2];
    Real sum = afterNext * eta + next;
    for (std::size_t n = kCount - 3; n > 0; --n) {
      const Real beta = f[n] + static_cast<Real>(n + 1) * perShape * afterNext;
      afterNext = next;
      next = beta;
      sum = sum * eta + beta;
    }
    return sum;
  }

 private:
  static constexpr std::size_t kCount = 40;
  std::array<Real, kCount> f;
};

// P / (density / a) where x is well below a.
Real LowerSeries(Real a, Real x) {
  Real term = 1;
  Real sum = 1;
  for (Real n = 1; term > sum * kSmallestPart; ++n) {
    term *= x / (a + n);
    sum += term;
  }
  return sum;
}

// Q / density where x is well above a: the continued fraction as a sum.
Real UpperFraction(Real a, Real x) {
  const Real first = x + 1 - a;
  Real p = 0;
  Real q = (x - 1 - a) * first;
  Real r = 4 * first;
  Real s = 1 - a;
  Real rho = 0;
  Real term = 1;
  Real sum = 1;
  while (fabs(term) > fabs(sum) * kSmallestPart) {
    p += s;
    s += 2;
    q += r;
    r += 8;
    const Real tau = p * (1 + rho);
    rho = tau / (q - tau);
    term *= rho;
    sum += term;
  }
  return sum / first;
}

// The tail away from the mean, for large shapes.
Real OuterGammaTail(Real a, Real x) {
  const bool isUpper = x > a;
  const Real density = GammaDensity(a, x);
  const Real halfSquare = -LogLess(x / a, (x - a) / a);
  if (halfSquare > 0.5) {
    return density * (isUpper ? UpperFraction(a, x) : LowerSeries(a, x) / a);
  }
  static const UniformSeries series;
  const Real eta = sqrt(2 * halfSquare);
  const Real sum = isUpper ? series.Sum(a, eta) : -series.Sum(a, -eta);
  return erfc(sqrt(a * halfSquare)) / 2 + density / a * sum;
}

Real OuterBetaTail(const BetaPlace& place) {
  const Real n = place.a + place.b;
  const Real x = place.x;
  const Real excess = place.excess;
  const Real sign = excess > 0 ? 1 : -1;
  const Real scale = 1 / std::max<Real>(fabs(excess), sqrt(n * x * place.y));
  const Real integral = TailRule::Get().Integrate(scale, [&](Real distance) {
    const Real s = sign * distance;
    // h(t + s) - h(t) = a s - n ln(1 + z)
    const Real z = x * expm1(s);
    return -excess * s - n * (LogLess(1 + z, z) + x * ExpLess(s));
  });
  return BetaDensity(place) * integral;
}

}  // namespace

Real LogLess(Real ratio, Real d) {
  if (!(fabs(d) <= 0.5)) return log(ratio) - d;
  // With r = d / (2 + d): ln(1 + d) = 2 atanh(r) and 2 r - d = -d r.
  const Real r = d / (2 + d);
  const Real square = r * r;
  Real sum = 0;
  for (int k = 43; k >= 3; k -= 2) sum = sum * square + 1 / static_cast<Real>(k);
  return -d * r + 2 * r * square * sum;
}

Real NormalQuantile(Real p) { return -sqrt(Real(2)) * erfc_inv(2 * p); }

Real StirlingRemainder(Real a) {
  if (a < kLargeShape) return lgamma(a) - (a - 0.5) * log(a) + a - kHalfLogTwoPi;
  static constexpr std::array<Real, 7> kTerms = {1 / 156_ext,   -691 / 360360_ext, 1 / 1188_ext,
                                                 -1 / 1680_ext, 1 / 1260_ext,      -1 / 360_ext,
                                                 1 / 12_ext};
  const Real square = 1 / (a * a);
  Real sum = 0;
  for (const Real term : kTerms) sum = sum * square + term;
  return sum / a;
}

Real GammaDensity(Real a, Real x) {
  const Real halfSquare = -LogLess(x / a, (x - a) / a);  // eta^2 / 2
  return sqrt(a / kTwoPi) * exp(-a * halfSquare - StirlingRemainder(a));
}

Real GammaTail(Real a, Real x, Side side) {
  if (a < kLargeShape) {
    return side == Side::Lower ? boost::math::gamma_p(a, x, Policy())
                               : boost::math::gamma_q(a, x, Policy());
  }
  const Side outer = x > a ? Side::Upper : Side::Lower;
  const Real tail = OuterGammaTail(a, x);
  return side == outer ? tail : 1 - tail;
}

Real BetaDensity(const BetaPlace& place) {
  const auto& [a, b, x, y, excess] = place;
  const Real n = a + b;
  const Real deviance =
      a * LogLess(x * (n / a), excess / a) + b * LogLess(y * (n / b), -excess / b);
  return sqrt(a / kTwoPi * (b / n)) *
         exp(deviance + StirlingRemainder(n) - StirlingRemainder(a) - StirlingRemainder(b));
}

Real BetaTail(const BetaPlace& place, Side side) {
  const auto& [a, b, x, y, excess] = place;
  const Side otherSide = side == Side::Lower ? Side::Upper : Side::Lower;
  if (x > y) return BetaTail({b, a, y, x, -excess}, otherSide);
  if (std::min<Real>(a, b) >= kLargeShape) {
    const Side outer = excess > 0 ? Side::Upper : Side::Lower;
    const Real tail = OuterBetaTail(place);
    return side == outer ? tail : 1 - tail;
  }
  if (b > kHugeShape) return GammaTail(a, -(b + (a - 1) / 2) * log1p(-x), side);
  if (a > kHugeShape) return GammaTail(b, -(a + (b - 1) / 2) * log(x), otherSide);
  return side == Side::Lower ? boost::math::ibeta(a, b, x, Policy())
                             : boost::math::ibetac(a, b, x, Policy());
}

}  // namespace QDMath_700

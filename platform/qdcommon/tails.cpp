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

#include <array>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>

#include "qdcommon/quadrature.h"

namespace QDMath_700 {

namespace {

namespace policies = boost::math::policies;

// Boost answers with infinity or not-a-number instead of throwing, in the type it was asked in.
using Policy = policies::policy<policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>,
                                policies::overflow_error<policies::ignore_error>,
                                policies::underflow_error<policies::ignore_error>,
                                policies::denorm_error<policies::ignore_error>,
                                policies::rounding_error<policies::ignore_error>,
                                policies::evaluation_error<policies::ignore_error>,
                                policies::indeterminate_result_error<policies::ignore_error>,
                                policies::promote_float<false>, policies::promote_double<false>>;

constexpr Real kTwoPi = 6.283185307179586476925286766559006L;
constexpr Real kHalfLogTwoPi = 0.918938533204672741780329736405618L;

// At 20, StirlingRemainder's first term left out is 4e-21.
constexpr Real kLargeShape = 20;

// A term below this part of its sum ends a series.
constexpr Real kSmallestPart = 1e-19L;

// From here on a beta variable whose other shape is below kLargeShape is a gamma variable: what the
// leading term of the expansion leaves out is below shape * ln(p)^2 / kHugeShape^2.
constexpr Real kHugeShape = 1e11L;

// e^s - 1 - s, without loss around 0.
Real ExpLess(Real s) {
  if (!(std::fabs(s) < 0.5L)) return std::expm1(s) - s;
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
  while (std::fabs(term) > std::fabs(sum) * kSmallestPart) {
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

// The tail on the side of `excess`, away from the mean, and its complement.
Tails FromTail(Real tail, Real density, bool isUpper) {
  return isUpper ? Tails{1 - tail, tail, density} : Tails{tail, 1 - tail, density};
}

}  // namespace

Real LogLess(Real ratio, Real d) {
  if (!(std::fabs(d) <= 0.5L)) return std::log(ratio) - d;
  // With r = d / (2 + d): ln(1 + d) = 2 atanh(r) and 2 r - d = -d r.
  const Real r = d / (2 + d);
  const Real square = r * r;
  Real sum = 0;
  for (int k = 43; k >= 3; k -= 2) sum = sum * square + 1 / static_cast<Real>(k);
  return -d * r + 2 * r * square * sum;
}

Real LogGamma(Real x) { return boost::math::lgamma(x, Policy()); }

Real NormalQuantile(Real p) { return -std::sqrt(2.0L) * boost::math::erfc_inv(2 * p, Policy()); }

Real StirlingRemainder(Real a) {
  if (a < kLargeShape) return LogGamma(a) - (a - 0.5L) * std::log(a) + a - kHalfLogTwoPi;
  static constexpr std::array<Real, 7> kTerms = {
      1 / 156.0L, -691 / 360360.0L, 1 / 1188.0L, -1 / 1680.0L, 1 / 1260.0L, -1 / 360.0L, 1 / 12.0L};
  const Real square = 1 / (a * a);
  Real sum = 0;
  for (const Real term : kTerms) sum = sum * square + term;
  return sum / a;
}

Tails GammaTails(Real a, Real x) {
  const Real excess = x - a;
  const Real halfSquare = -LogLess(x / a, excess / a);  // eta^2 / 2
  const Real density = std::sqrt(a / kTwoPi) * std::exp(-a * halfSquare - StirlingRemainder(a));
  if (a < kLargeShape) {
    return {boost::math::gamma_p(a, x, Policy()), boost::math::gamma_q(a, x, Policy()), density};
  }
  const bool isUpper = excess > 0;
  if (halfSquare > 0.5L) {
    const Real tail = isUpper ? UpperFraction(a, x) : LowerSeries(a, x) / a;
    return FromTail(density * tail, density, isUpper);
  }
  static const UniformSeries series;
  const Real eta = std::sqrt(2 * halfSquare);
  const Real sum = isUpper ? series.Sum(a, eta) : -series.Sum(a, -eta);
  const Real tail = std::erfc(std::sqrt(a * halfSquare)) / 2 + density / a * sum;
  return FromTail(tail, density, isUpper);
}

Tails BetaTails(Real a, Real b, Real x, Real y, Real excess) {
  if (x > y) {
    const Tails mirrored = BetaTails(b, a, y, x, -excess);
    return {mirrored.upper, mirrored.lower, mirrored.density};
  }
  const Real n = a + b;
  const Real deviance =
      a * LogLess(x * (n / a), excess / a) + b * LogLess(y * (n / b), -excess / b);
  const Real density =
      std::sqrt(a / kTwoPi * (b / n)) *
      std::exp(deviance + StirlingRemainder(n) - StirlingRemainder(a) - StirlingRemainder(b));
  if (std::fmin(a, b) < kLargeShape) {
    if (b > kHugeShape) {
      const Tails limit = GammaTails(a, -(b + (a - 1) / 2) * std::log1p(-x));
      return {limit.lower, limit.upper, density};
    }
    if (a > kHugeShape) {
      const Tails limit = GammaTails(b, -(a + (b - 1) / 2) * std::log(x));
      return {limit.upper, limit.lower, density};
    }
    return {boost::math::ibeta(a, b, x, Policy()), boost::math::ibetac(a, b, x, Policy()), density};
  }
  const bool isUpper = excess > 0;
  const Real sign = isUpper ? 1 : -1;
  const Real scale = 1 / std::fmax(std::fabs(excess), std::sqrt(n * x * y));
  const Real integral = TailRule::Get().Integrate(scale, [&](Real distance) {
    const Real s = sign * distance;
    // h(t + s) - h(t) = a s - n ln(1 + z)
    const Real z = x * std::expm1(s);
    return -excess * s - n * (LogLess(1 + z, z) + x * ExpLess(s));
  });
  return FromTail(density * integral, density, isUpper);
}

}  // namespace QDMath_700

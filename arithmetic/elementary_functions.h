#pragma once

// Elementary functions in nothing but sums, products, quotients and square roots, each of which has
// one answer: so the functions have one too. Their relative error is a few units of the 64th digit.
// Logarithm and exponential by tables: P. T. P. Tang, ACM Transactions on Mathematical Software 15
// (1989) and 16 (1990).

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "arithmetic/elementary_tables.h"
#include "arithmetic/limits.h"

namespace arithmetic::functions {

template <typename Real>
inline constexpr Real kInfinity = std::numeric_limits<Real>::infinity();
template <typename Real>
inline constexpr Real kNotANumber = std::numeric_limits<Real>::quiet_NaN();

/// What a * b lacks of the exact product. T. J. Dekker, Numer. Math. 18 (1971).
template <typename Real>
[[nodiscard]] Real ProductRest(Real a, Real b) {
  constexpr Real kSplit = 4294967297.0;  // 2^32 + 1: halves of 32 digits
  const auto upper = [kSplit](Real x) {
    const Real scaled = kSplit * x;
    return scaled - (scaled - x);
  };
  const Real aHigh = upper(a);
  const Real aLow = a - aHigh;
  const Real bHigh = upper(b);
  const Real bLow = b - bHigh;
  return ((aHigh * bHigh - a * b) + aHigh * bLow + aLow * bHigh) + aLow * bLow;
}

/// A number in two parts, the second small beside the first.
template <typename Real>
struct InTwo {
  Real high;
  Real low;
};

/// The sum, in two parts of which the first has all the digits that it can hold.
template <typename Real>
[[nodiscard]] constexpr InTwo<Real> Regrouped(TwoDoubles sum) {
  const Real high = Real(sum.high) + Real(sum.low);
  return {high, (Real(sum.high) - high) + Real(sum.low)};
}

template <typename Real>
inline constexpr auto kPowersInTwo = [] {
  std::array<InTwo<Real>, kPowers> powers;
  std::transform(kPower.begin(), kPower.end(), powers.begin(), Regrouped<Real>);
  return powers;
}();

/// sum of x^k / k! for k >= 1, |x| <= ln(2) / 64.
template <typename Real>
[[nodiscard]] Real SmallExponential(Real x) {
  constexpr std::array<Real, 7> kTerms = {Real(1) / 40320, Real(1) / 5040, Real(1) / 720,
                                          Real(1) / 120,   Real(1) / 24,   Real(1) / 6,
                                          Real(1) / 2};
  Real sum = kTerms[0];
  for (std::size_t i = 1; i < kTerms.size(); ++i) sum = sum * x + kTerms[i];
  return x + x * x * sum;
}

/// e^x = 2^scale (power.high + power.low) (1 + rest).
template <typename Real>
struct ExponentialParts {
  int scale;
  InTwo<Real> power;
  Real rest;
};

/// x = high + low, |high| below kExponentialEnd.
template <typename Real>
[[nodiscard]] ExponentialParts<Real> SplitExponential(Real high, Real low) {
  const Real steps = high * kStepsInOne;
  const auto step = static_cast<int>(steps + (steps < 0 ? Real(-0.5) : Real(0.5)));
  const Real reduced = (high - Real(step) * kStep.high) + (low - Real(step) * kStep.low);
  const int scale = step >> kPowerBits;
  const auto place = static_cast<std::size_t>(step & (kPowers - 1));
  return {scale, kPowersInTwo<Real>[place], SmallExponential(reduced)};
}

// Beyond it the exponential is infinite, or 0.
inline constexpr int kExponentialEnd = 11500;

template <typename Real>
[[nodiscard]] Real Exponential(Real high, Real low = 0) {
  if (!(high < kExponentialEnd)) return high > 0 ? kInfinity<Real> : high;
  if (high < -kExponentialEnd) return 0;
  const auto [scale, power, rest] = SplitExponential(high, low);
  return ldexp(power.high + (power.low + power.high * rest), scale);
}

/// e^x - 1.
template <typename Real>
[[nodiscard]] Real ExponentialLessOne(Real x) {
  constexpr int kOneIsNothing = 50;
  if (!(fabs(x) < kOneIsNothing)) return x > 0 ? Exponential(x) : x < 0 ? Real(-1) : x;
  if (x == 0) return x;
  const auto [scale, power, rest] = SplitExponential(x, Real(0));
  return (ldexp(power.high, scale) - 1) + ldexp(power.low + power.high * rest, scale);
}

/// ln((1 + s) / (1 - s)), |s| <= 1 / 128.
template <typename Real>
[[nodiscard]] Real SmallLogarithm(Real s) {
  constexpr std::array<Real, 5> kTerms = {Real(2) / 11, Real(2) / 9, Real(2) / 7, Real(2) / 5,
                                          Real(2) / 3};
  const Real square = s * s;
  Real sum = kTerms[0];
  for (std::size_t i = 1; i < kTerms.size(); ++i) sum = sum * square + kTerms[i];
  return 2 * s + s * square * sum;
}

/// ln(x) of a finite x > 0. The first part has at most 60 digits and is exact.
template <typename Real>
[[nodiscard]] InTwo<Real> LogarithmParts(Real x) {
  int exponent = x.Exponent();
  Real m = ldexp(x, -exponent);
  if (m > kLogarithmTop) {
    m = ldexp(m, -1);
    ++exponent;
  }
  const auto place = static_cast<int>(m * kLogarithmSteps + Real(0.5));
  const Real center = ldexp(Real(place), -kLogarithmBits);
  const TwoDoubles& known = kLogarithm[static_cast<std::size_t>(place - kFirstLogarithm)];
  const Real count = exponent;
  return {count * kLogarithmOfTwo.high + known.high,
          (count * kLogarithmOfTwo.low + known.low) + SmallLogarithm((m - center) / (m + center))};
}

template <typename Real>
[[nodiscard]] Real Logarithm(Real x) {
  if (!(x > 0)) return x == 0 ? -kInfinity<Real> : kNotANumber<Real>;
  if (x == kInfinity<Real>) return x;
  const InTwo<Real> parts = LogarithmParts(x);
  return parts.high + parts.low;
}

/// ln(1 + x).
template <typename Real>
[[nodiscard]] Real LogarithmOfOneMore(Real x) {
  constexpr double kSmall = 1 / 128.0;
  if (fabs(x) < kSmall) return x == 0 ? x : SmallLogarithm(x / (2 + x));
  const Real whole = 1 + x;
  if (!(whole > 0) || whole == kInfinity<Real>) return Logarithm(whole);
  const Real rest = x > 1 ? 1 - (whole - x) : x - (whole - 1);
  const InTwo<Real> parts = LogarithmParts(whole);
  return parts.high + (parts.low + rest / whole);
}

/// x^y; of a negative x where y is a whole number.
template <typename Real>
[[nodiscard]] Real Power(Real x, Real y) {
  if (y == 0 || x == 1) return 1;
  if (!(x == x) || !(y == y)) return kNotANumber<Real>;
  if (x < 0) {
    if (floor(y) != y) return kNotANumber<Real>;
    const Real half = ldexp(y, -1);
    const Real power = Power(-x, y);
    return floor(half) == half ? power : -power;
  }
  if (x == 0 || x == kInfinity<Real>) return (x == 0) == (y > 0) ? Real(0) : kInfinity<Real>;
  const InTwo<Real> logarithm = LogarithmParts(x);
  const Real high = logarithm.high * y;
  if (!(fabs(high) < kExponentialEnd)) return (high > 0) ? kInfinity<Real> : Real(0);
  const Real low = ProductRest(logarithm.high, y) + logarithm.low * y;
  const Real sum = high + low;
  return Exponential(sum, (high - sum) + low);
}

/// arcsin(x), |x| <= 1: asin(x) = 2 asin(x / sqrt(2 (1 + sqrt(1 - x^2)))), until a series is short.
template <typename Real>
[[nodiscard]] Real ArcSine(Real x) {
  if (!(fabs(x) <= 1)) return kNotANumber<Real>;
  constexpr int kHalvings = 4;  // to pi / 32
  constexpr int kTerms = 12;
  Real cosine = sqrt((1 - x) * (1 + x));
  for (int i = 0; i < kHalvings; ++i) {
    x = x / sqrt(2 * (1 + cosine));
    cosine = sqrt((1 - x) * (1 + x));
  }
  const Real square = x * x;
  Real sum = 0;
  for (int k = kTerms; k >= 1; --k) {
    const Real odd = 2 * k - 1;
    sum = (1 / (odd + 2) + sum) * square * odd / Real(2 * k);
  }
  return ldexp(x + x * sum, kHalvings);
}

}  // namespace arithmetic::functions

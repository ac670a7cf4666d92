#pragma once

#include <cmath>

/// The unevaluated sum of two doubles, of which `high` is the nearest double: about 106 bits.
/// Sources: T. J. Dekker, Numer. Math. 18 (1971); D. E. Knuth, The Art of Computer Programming 2,
/// 4.2.2 (the sum whose rounding error is known).
struct DoubleDouble {
  double high;
  double low;

  constexpr DoubleDouble(double high = 0.0, double low = 0.0) noexcept : high(high), low(low) {}

  [[nodiscard]] static DoubleDouble Sum(double a, double b) noexcept {
    const double sum = a + b;
    const double ofB = sum - a;
    return {sum, (a - (sum - ofB)) + (b - ofB)};
  }
  [[nodiscard]] static DoubleDouble Product(double a, double b) noexcept {
    const double product = a * b;
    return {product, std::fma(a, b, -product)};
  }

  friend bool operator==(const DoubleDouble&, const DoubleDouble&) = default;
  friend DoubleDouble operator+(DoubleDouble a, DoubleDouble b) noexcept {
    const DoubleDouble high = Sum(a.high, b.high);
    const DoubleDouble low = Sum(a.low, b.low);
    const DoubleDouble upper = Sum(high.high, high.low + low.high);
    return Sum(upper.high, upper.low + low.low);
  }
  friend DoubleDouble operator-(DoubleDouble a, DoubleDouble b) noexcept {
    return a + DoubleDouble{-b.high, -b.low};
  }
  friend DoubleDouble operator*(DoubleDouble a, DoubleDouble b) noexcept {
    const DoubleDouble high = Product(a.high, b.high);
    return Sum(high.high, high.low + (a.high * b.low + a.low * b.high));
  }
  friend DoubleDouble operator/(DoubleDouble a, double b) noexcept {
    const double quotient = a.high / b;
    const DoubleDouble rest = a - Product(quotient, b);
    return Sum(quotient, rest.high / b);
  }
};

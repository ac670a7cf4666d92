#include "arithmetic/elementary.h"

#include <array>
#include <cstddef>

#include "arithmetic/elementary_functions.h"

namespace arithmetic {

Extended exp(Extended x) noexcept { return functions::Exponential(x); }
Extended expm1(Extended x) noexcept { return functions::ExponentialLessOne(x); }
Extended log(Extended x) noexcept { return functions::Logarithm(x); }
Extended log1p(Extended x) noexcept { return functions::LogarithmOfOneMore(x); }
Extended pow(Extended x, Extended y) noexcept { return functions::Power(x, y); }
Extended asin(Extended x) noexcept { return functions::ArcSine(x); }
Extended ProductRest(Extended a, Extended b) noexcept { return functions::ProductRest(a, b); }

Extended Factorial(unsigned n) noexcept {
  constexpr std::size_t kCount = 171;
  // Products in two parts, so that the first has all its digits right.
  static const std::array<Extended, kCount> table = [] {
    std::array<Extended, kCount> factorials;
    Extended high = 1;
    Extended low = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
      if (i > 0) {
        const Extended product = high * i;
        const Extended rest = ProductRest(high, i) + low * i;
        high = product + rest;
        low = (product - high) + rest;
      }
      factorials[i] = high;
    }
    return factorials;
  }();
  return table[n];
}

bool IsFinite(Extended x) noexcept { return x - x == 0; }

double Exp(double x) noexcept { return static_cast<double>(exp(x)); }
double Expm1(double x) noexcept { return static_cast<double>(expm1(x)); }
double Log(double x) noexcept { return static_cast<double>(log(x)); }
double Log1p(double x) noexcept { return static_cast<double>(log1p(x)); }
double Pow(double x, double y) noexcept { return static_cast<double>(pow(x, y)); }
double Log10(double x) noexcept { return static_cast<double>(log(x) / log(Extended(10))); }
double Cbrt(double x) noexcept { return static_cast<double>(exp(log(x) / 3)); }
double Asin(double x) noexcept { return static_cast<double>(asin(x)); }
double Erfc(double x) noexcept { return static_cast<double>(erfc(x)); }
double LogGamma(double x) noexcept { return static_cast<double>(lgamma(x)); }

}  // namespace arithmetic

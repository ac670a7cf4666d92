#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace QDMath_700 {

/// Points and weights of the double-exponential rule for integrals over s > 0 of functions that
/// fall from 1 on the scale 1, s = exp(u - e^-u). Source: H. Takahasi, M. Mori, Double exponential
/// formulas for numerical integration, Publ. RIMS Kyoto 9 (1974).
class TailRule {
 public:
  TailRule() {
    for (std::size_t i = 0; i < kCount; ++i) {
      const long double u = kFirst + kStep * static_cast<long double>(i);
      const long double decay = std::exp(-u);
      point[i] = std::exp(u - decay);
      weight[i] = kStep * point[i] * (1 + decay);
    }
  }

  /// Integral over s > 0 of exp(exponent(s)), smooth, concave and falling from 0 on `scale`.
  template <typename Exponent>
  [[nodiscard]] long double Integrate(long double scale, Exponent exponent) const {
    long double sum = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
      sum += weight[i] * std::exp(exponent(scale * point[i]));
    }
    return scale * sum;
  }

  static const TailRule& Get() {
    static const TailRule rule;
    return rule;
  }

 private:
  // From 1e-31 to 70: what lies outside is below 1e-28 of the integral.
  static constexpr std::size_t kCount = 138;
  static constexpr long double kStep = 1 / 16.0L;
  static constexpr long double kFirst = -4.25L;

  std::array<long double, kCount> point;
  std::array<long double, kCount> weight;
};

}  // namespace QDMath_700

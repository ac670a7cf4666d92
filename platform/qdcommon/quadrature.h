#pragma once

#include <array>
#include <cstddef>

#include "qdcommon/tails.h"

namespace QDMath_700 {

/// Points and weights of the double-exponential rule for integrals over s > 0 of functions that
/// fall from 1 on the scale 1, s = exp(u - e^-u). Source: H. Takahasi, M. Mori, Double exponential
/// formulas for numerical integration, Publ. RIMS Kyoto 9 (1974).
class TailRule {
 public:
  TailRule() {
    for (std::size_t i = 0; i < kCount; ++i) {
      const Real u = kFirst + kStep * static_cast<Real>(i);
      const Real decay = exp(-u);
      point[i] = exp(u - decay);
      weight[i] = kStep * point[i] * (1 + decay);
    }
  }

  /// Integral over s > 0 of exp(exponent(s)), smooth, concave and falling from 0 on `scale`.
  template <typename Exponent>
  [[nodiscard]] Real Integrate(Real scale, Exponent exponent) const {
    Real sum = 0;
    for (std::size_t i = 0; i < kCount; ++i) {
      sum += weight[i] * exp(exponent(scale * point[i]));
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
  static constexpr Real kStep = 1 / 16.0;
  static constexpr Real kFirst = -4.25;

  std::array<Real, kCount> point;
  std::array<Real, kCount> weight;
};

}  // namespace QDMath_700

#include "kit/statistics/superiority.h"

#include <cmath>
#include <numeric>

#include "foundation/names.h"

namespace {

/// How far an estimate from n1 and n2 units may be from theta.
class Reach {
 public:
  Reach(double n1, double n2, double z) : z(z), pairs(n1 * n2), more((n1 + n2) / 2.0 - 1.0) {}

  [[nodiscard]] double At(double theta) const {
    const double rest = 1.0 - theta;
    const double variance =
        theta * rest * (1.0 + more * rest / (2.0 - theta) + more * theta / (1.0 + theta)) / pairs;
    return variance > 0.0 ? z * std::sqrt(variance) : 0.0;
  }

 private:
  double z;
  double pairs;
  double more;
};

/// The place between `outside`, which is not within reach of the estimate, and the estimate, where
/// the reach ends, to the last bit.
double EndOfReach(double outside, double estimate, const Reach& reach) {
  double inside = estimate;
  for (;;) {
    const double middle = std::midpoint(outside, inside);
    if (middle == outside || middle == inside) return middle;
    (std::abs(estimate - middle) <= reach.At(middle) ? inside : outside) = middle;
  }
}

}  // namespace

ProportionInterval SuperiorityInterval(double theta, double n1, double n2, double confidenceLevel) {
  const double z = QDDistFun::IdfStdNorm(1.0 - (1.0 - confidenceLevel) * 0.5);
  if (std::isinf(z)) return {0.0, 1.0};
  const Reach reach(n1, n2, z);
  return {theta == 0.0 ? 0.0 : EndOfReach(0.0, theta, reach),
          theta == 1.0 ? 1.0 : EndOfReach(1.0, theta, reach)};
}

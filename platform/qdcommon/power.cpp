#include <cmath>
#include <limits>

#include "arithmetic/elementary.h"
#include "foundation/math.h"

namespace QDMath_700 {

bool QDPower::AlmostEqual(double a, double b, double tolerance) {
  return std::fabs(a - b) <= tolerance;
}

bool QDPower::IsEvenInteger(double x) { return std::fmod(x, 2.0) == 0.0; }

PowerStatus QDPower::Exponent(double x, double& value) {
  value = arithmetic::Exp(x);
  if (value == 0.0) return PowerStatus::Underflow;
  if (value <= std::numeric_limits<double>::max()) return PowerStatus::Success;
  value = std::numeric_limits<double>::infinity();
  return PowerStatus::Overflow;
}

}  // namespace QDMath_700

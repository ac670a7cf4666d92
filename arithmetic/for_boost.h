#pragma once

// Extended as a number type of Boost.Math, included before it.

#include <ostream>

#include "arithmetic/elementary.h"

namespace arithmetic {

inline Extended abs(Extended x) noexcept { return fabs(x); }
inline Extended ceil(Extended x) noexcept { return -floor(-x); }
inline Extended trunc(Extended x) noexcept { return x < 0 ? ceil(x) : floor(x); }
inline Extended modf(Extended x, Extended* whole) noexcept {
  *whole = trunc(x);
  return x - *whole;
}
inline Extended frexp(Extended x, int* exponent) noexcept {
  *exponent = x == 0 || !IsFinite(x) ? 0 : x.Exponent() + 1;
  return ldexp(x, -*exponent);
}
inline std::ostream& operator<<(std::ostream& stream, Extended x) {
  return stream << static_cast<double>(x);
}
/// |x| <= pi / 2.
inline Extended sin(Extended x) noexcept {
  constexpr int kTerms = 14;
  Extended sum = 1;
  for (int k = kTerms; k >= 1; --k) sum = 1 - sum * x * x / (2 * k * (2 * k + 1));
  return sum * x;
}

}  // namespace arithmetic

#include <boost/math/policies/policy.hpp>

namespace arithmetic {

// Boost answers with infinity or not-a-number instead of throwing, in the type it was asked in.
namespace policies = boost::math::policies;
using Policy = policies::policy<policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>,
                                policies::overflow_error<policies::ignore_error>,
                                policies::underflow_error<policies::ignore_error>,
                                policies::denorm_error<policies::ignore_error>,
                                policies::rounding_error<policies::ignore_error>,
                                policies::evaluation_error<policies::ignore_error>,
                                policies::indeterminate_result_error<policies::ignore_error>,
                                policies::promote_float<false>, policies::promote_double<false>>;

}  // namespace arithmetic

// Boost's own table is as long as it is for a long double, which differs from machine to machine.
#include <boost/math/special_functions/factorials.hpp>

namespace boost::math {

template <>
struct max_factorial<arithmetic::Extended> {
  static constexpr unsigned value = 170;
};

template <>
inline arithmetic::Extended unchecked_factorial<arithmetic::Extended>(unsigned i) {
  return arithmetic::Factorial(i);
}

}  // namespace boost::math

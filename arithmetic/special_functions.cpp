#include "arithmetic/for_boost.h"
//
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>

namespace arithmetic {

// Boost tells a not-a-number from others by the type's own functions only.
Extended erfc(Extended x) noexcept { return x == x ? boost::math::erfc(x, Policy()) : x; }
Extended erfc_inv(Extended y) noexcept { return boost::math::erfc_inv(y, Policy()); }
Extended lgamma(Extended x) noexcept { return boost::math::lgamma(x, Policy()); }

}  // namespace arithmetic

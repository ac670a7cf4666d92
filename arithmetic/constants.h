#pragma once

#include <type_traits>

#include "arithmetic/extended.h"

namespace arithmetic {

template <typename Number>
constexpr Number FromDecimal(const char* digits) noexcept {
  const SoftwareExtended number(digits);
  if constexpr (std::is_same_v<Number, SoftwareExtended>) {
    return number;
  } else {
    return static_cast<long double>(number);
  }
}

/// A constant with all digits that are told, also where a long double has fewer. For constexpr
/// names: each call at run time would read the digits.
constexpr Extended operator""_ext(const char* digits) noexcept {
  return FromDecimal<Extended>(digits);
}

}  // namespace arithmetic

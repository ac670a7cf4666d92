#pragma once

#include <limits>

#include "arithmetic/extended.h"

/// What std::numeric_limits says of either type of extended precision.
namespace arithmetic {

template <typename Real>
struct ExtendedLimits {
  static constexpr bool is_specialized = true;
  static constexpr bool is_signed = true;
  static constexpr bool is_integer = false;
  static constexpr bool is_exact = false;
  static constexpr bool has_infinity = true;
  static constexpr bool has_quiet_NaN = true;
  static constexpr bool has_signaling_NaN = false;
  static constexpr std::float_denorm_style has_denorm = std::denorm_present;
  static constexpr bool has_denorm_loss = false;
  static constexpr std::float_round_style round_style = std::round_to_nearest;
  static constexpr bool is_iec559 = true;
  static constexpr bool is_bounded = true;
  static constexpr bool is_modulo = false;
  static constexpr int digits = 64;
  static constexpr int digits10 = 18;
  static constexpr int max_digits10 = 21;
  static constexpr int radix = 2;
  static constexpr int min_exponent = -16381;
  static constexpr int min_exponent10 = -4931;
  static constexpr int max_exponent = 16384;
  static constexpr int max_exponent10 = 4932;
  static constexpr bool traps = false;
  static constexpr bool tinyness_before = false;

  static constexpr Real min() noexcept { return Real::Scaled(1, min_exponent - 1); }
  static constexpr Real max() noexcept { return Real::Scaled(~0ULL, max_exponent - digits); }
  static constexpr Real lowest() noexcept { return -max(); }
  static constexpr Real epsilon() noexcept { return Real::Scaled(1, 1 - digits); }
  static constexpr Real round_error() noexcept { return Real(0.5); }
  static constexpr Real infinity() noexcept {
    return Real(std::numeric_limits<double>::infinity());
  }
  static constexpr Real quiet_NaN() noexcept {
    return Real(std::numeric_limits<double>::quiet_NaN());
  }
  static constexpr Real signaling_NaN() noexcept { return quiet_NaN(); }
  static constexpr Real denorm_min() noexcept { return Real::Scaled(1, min_exponent - digits); }
};

}  // namespace arithmetic

template <>
class std::numeric_limits<arithmetic::HardwareExtended>
    : public arithmetic::ExtendedLimits<arithmetic::HardwareExtended> {};
template <>
class std::numeric_limits<arithmetic::SoftwareExtended>
    : public arithmetic::ExtendedLimits<arithmetic::SoftwareExtended> {};

#pragma once

#include <algorithm>
#include <cmath>
#include <compare>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace arithmetic {

template <typename T>
concept BuiltInNumber = std::is_arithmetic_v<T>;

/// The processor's extended precision, of x86. A type of its own, so that a function of the system
/// is never found for it: those differ from system to system.
class HardwareExtended {
 public:
  constexpr HardwareExtended() noexcept = default;
  // Conversions are implicit as those of built-in numbers are.
  template <BuiltInNumber T>
  constexpr HardwareExtended(T number) noexcept : value(static_cast<long double>(number)) {}

  template <BuiltInNumber T>
  [[nodiscard]] explicit constexpr operator T() const noexcept {
    return static_cast<T>(value);
  }

  /// significand * 2^exponent, where that is no smaller than the least normal number.
  [[nodiscard]] static constexpr HardwareExtended Scaled(std::uint64_t significand,
                                                         int exponent) noexcept {
    long double scaled = static_cast<long double>(significand);
    for (; exponent > 0; --exponent) scaled *= 2;
    for (; exponent < 0; ++exponent) scaled /= 2;
    return scaled;
  }

  /// The e of 2^e <= |x| < 2^(e + 1), of a finite number but 0.
  [[nodiscard]] int Exponent() const noexcept {
    Bits bits;
    std::memcpy(&bits, &value, kSize);
    const int biased = bits.signAndExponent & kExponentMask;
    return biased == 0 ? std::ilogb(value) : biased - kBias;
  }

  constexpr HardwareExtended& operator+=(HardwareExtended other) noexcept {
    return *this = *this + other;
  }
  constexpr HardwareExtended& operator-=(HardwareExtended other) noexcept {
    return *this = *this - other;
  }
  constexpr HardwareExtended& operator*=(HardwareExtended other) noexcept {
    return *this = *this * other;
  }
  constexpr HardwareExtended& operator/=(HardwareExtended other) noexcept {
    return *this = *this / other;
  }
  constexpr HardwareExtended& operator++() noexcept { return *this += HardwareExtended(1); }
  constexpr HardwareExtended& operator--() noexcept { return *this -= HardwareExtended(1); }

  friend constexpr HardwareExtended operator+(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value + b.value;
  }
  friend constexpr HardwareExtended operator-(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value - b.value;
  }
  friend constexpr HardwareExtended operator*(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value * b.value;
  }
  friend constexpr HardwareExtended operator/(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value / b.value;
  }
  friend constexpr HardwareExtended operator-(HardwareExtended x) noexcept { return -x.value; }
  friend constexpr bool operator==(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value == b.value;
  }
  friend constexpr std::partial_ordering operator<=>(HardwareExtended a,
                                                     HardwareExtended b) noexcept {
    return a.value <=> b.value;
  }
  friend constexpr bool operator<(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value < b.value;
  }
  friend constexpr bool operator>(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value > b.value;
  }
  friend constexpr bool operator<=(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value <= b.value;
  }
  friend constexpr bool operator>=(HardwareExtended a, HardwareExtended b) noexcept {
    return a.value >= b.value;
  }
  friend HardwareExtended sqrt(HardwareExtended x) noexcept { return std::sqrt(x.value); }
  friend HardwareExtended fabs(HardwareExtended x) noexcept { return std::fabs(x.value); }
  friend HardwareExtended floor(HardwareExtended x) noexcept { return std::floor(x.value); }

  /// x * 2^exponent.
  friend HardwareExtended ldexp(HardwareExtended x, int exponent) noexcept {
    if (exponent <= -kBias || exponent > kBias) return std::ldexp(x.value, exponent);
    const Bits bits{kTopBit, static_cast<std::uint16_t>(exponent + kBias)};
    long double power = 0;
    std::memcpy(&power, &bits, kSize);
    return x.value * power;
  }

 private:
  struct Bits {
    std::uint64_t significand;
    std::uint16_t signAndExponent;
  };
  // Bytes of the format; elsewhere than on x86, where nothing uses the type, there may be fewer.
  static constexpr std::size_t kSize = std::min<std::size_t>(10, sizeof(long double));
  static constexpr int kBias = 16383;
  static constexpr int kExponentMask = 0x7fff;
  static constexpr std::uint64_t kTopBit = std::uint64_t{1} << 63;

  long double value = 0;
};

}  // namespace arithmetic

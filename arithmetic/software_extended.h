#pragma once

#include <bit>
#include <compare>
#include <concepts>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "arithmetic/decimal.h"
#include "arithmetic/wide_integer.h"

namespace arithmetic {

/// Extended precision in whole numbers: significand * 2^(exponent - 63), the significand's top bit
/// set. Rounded to nearest, ties to even, with the range of x86's extended precision: below
/// 2^-16382 digits are lost one by one. Source of the rounding rules: IEEE 754-2019, 4.3.1, 3.6.
class SoftwareExtended {
 public:
  constexpr SoftwareExtended() noexcept = default;
  // Conversions are implicit as those of built-in numbers are.
  template <std::integral T>
  constexpr SoftwareExtended(T number) noexcept {
    auto magnitude = static_cast<std::uint64_t>(number);
    if constexpr (std::signed_integral<T>) isNegative = number < 0;
    if (isNegative) magnitude = std::uint64_t{0} - magnitude;
    if (magnitude != 0) Normalise(magnitude, kDigits - 1);
  }
  constexpr SoftwareExtended(double number) noexcept;
  /// Of a constant, with as many digits as the compiler has. Where those are fewer than 64, ours
  /// come as text (constants.h), and so do Boost's.
  constexpr SoftwareExtended(long double number) noexcept;
  /// Of decimal digits such as "-1.5e-3", rounded once.
  explicit constexpr SoftwareExtended(const char* decimal) noexcept;

  [[nodiscard]] explicit constexpr operator double() const noexcept;
  [[nodiscard]] explicit constexpr operator float() const noexcept {
    return static_cast<float>(static_cast<double>(*this));
  }
  [[nodiscard]] explicit constexpr operator long double() const noexcept;
  /// The whole part, which the integer holds.
  template <std::integral T>
  [[nodiscard]] explicit constexpr operator T() const noexcept {
    if (exponent < 0) return 0;
    const std::uint64_t whole = significand >> (kDigits - 1 - exponent);
    return static_cast<T>(isNegative ? std::uint64_t{0} - whole : whole);
  }

  /// significand * 2^exponent, where that is no smaller than the least normal number.
  [[nodiscard]] static constexpr SoftwareExtended Scaled(std::uint64_t significand,
                                                         int exponent) noexcept {
    return ldexp(SoftwareExtended(significand), exponent);
  }

  /// The e of 2^e <= |x| < 2^(e + 1), of a finite number but 0.
  [[nodiscard]] constexpr int Exponent() const noexcept { return exponent; }

  constexpr SoftwareExtended& operator+=(SoftwareExtended other) noexcept {
    return *this = *this + other;
  }
  constexpr SoftwareExtended& operator-=(SoftwareExtended other) noexcept {
    return *this = *this - other;
  }
  constexpr SoftwareExtended& operator*=(SoftwareExtended other) noexcept {
    return *this = *this * other;
  }
  constexpr SoftwareExtended& operator/=(SoftwareExtended other) noexcept {
    return *this = *this / other;
  }
  constexpr SoftwareExtended& operator++() noexcept { return *this += SoftwareExtended(1); }
  constexpr SoftwareExtended& operator--() noexcept { return *this -= SoftwareExtended(1); }

  friend constexpr SoftwareExtended operator+(SoftwareExtended a, SoftwareExtended b) noexcept {
    return Add(a, b);
  }
  friend constexpr SoftwareExtended operator-(SoftwareExtended a, SoftwareExtended b) noexcept {
    b.isNegative = !b.isNegative;
    return Add(a, b);
  }
  friend constexpr SoftwareExtended operator*(SoftwareExtended a, SoftwareExtended b) noexcept;
  friend constexpr SoftwareExtended operator/(SoftwareExtended a, SoftwareExtended b) noexcept;
  friend constexpr SoftwareExtended operator-(SoftwareExtended x) noexcept {
    x.isNegative = !x.isNegative;
    return x;
  }
  friend constexpr bool operator==(SoftwareExtended a, SoftwareExtended b) noexcept {
    return (a <=> b) == std::partial_ordering::equivalent;
  }
  friend constexpr std::partial_ordering operator<=>(SoftwareExtended a,
                                                     SoftwareExtended b) noexcept {
    if (a.IsNotANumber() || b.IsNotANumber()) return std::partial_ordering::unordered;
    if (a.significand == 0 && b.significand == 0) return std::partial_ordering::equivalent;
    if (a.isNegative != b.isNegative) {
      return a.isNegative ? std::partial_ordering::less : std::partial_ordering::greater;
    }
    if (a.isNegative) std::swap(a, b);
    if (a.exponent != b.exponent) return a.exponent <=> b.exponent;
    return a.significand <=> b.significand;
  }
  friend constexpr SoftwareExtended sqrt(SoftwareExtended x) noexcept;
  friend constexpr SoftwareExtended fabs(SoftwareExtended x) noexcept {
    x.isNegative = false;
    return x;
  }
  friend constexpr SoftwareExtended floor(SoftwareExtended x) noexcept;

  /// x * 2^exponent.
  friend constexpr SoftwareExtended ldexp(SoftwareExtended x, int exponent) noexcept {
    if (!x.IsOrdinary()) return x;
    // Further than from one end of the range to the other there is nothing to tell apart.
    constexpr int kFar = 40000;
    const int shift = exponent > kFar ? kFar : exponent < -kFar ? -kFar : exponent;
    return Rounded(x.isNegative, x.significand, 0, x.exponent + shift);
  }

 private:
  static constexpr int kDigits = 64;
  static constexpr int kLargestExponent = 16383;
  static constexpr int kSmallestExponent = -16382;
  // Beyond every exponent, in the order of magnitudes.
  static constexpr int kZero = -0x100000;
  static constexpr int kInfinity = 0x100000;
  static constexpr int kNotANumber = 0x100001;
  static constexpr std::uint64_t kTopBit = std::uint64_t{1} << (kDigits - 1);

  constexpr SoftwareExtended(bool isNegative, std::uint64_t significand, int exponent) noexcept
      : significand(significand), exponent(exponent), isNegative(isNegative) {}

  [[nodiscard]] static constexpr SoftwareExtended Zero(bool isNegative) noexcept {
    return {isNegative, 0, kZero};
  }
  [[nodiscard]] static constexpr SoftwareExtended Infinity(bool isNegative) noexcept {
    return {isNegative, kTopBit, kInfinity};
  }
  [[nodiscard]] static constexpr SoftwareExtended NotANumber() noexcept {
    return {false, kTopBit, kNotANumber};
  }
  [[nodiscard]] constexpr bool IsNotANumber() const noexcept { return exponent == kNotANumber; }
  /// Neither 0 nor infinite.
  [[nodiscard]] constexpr bool IsOrdinary() const noexcept {
    return exponent > kZero && exponent < kInfinity;
  }
  [[nodiscard]] constexpr bool IsBelowInMagnitude(const SoftwareExtended& other) const noexcept {
    return exponent != other.exponent ? exponent < other.exponent : significand < other.significand;
  }
  constexpr void Normalise(std::uint64_t magnitude, int exponentOfTopBit) noexcept {
    const int shift = std::countl_zero(magnitude);
    significand = magnitude << shift;
    exponent = exponentOfTopBit - shift;
  }

  /// The number nearest to (high + low / 2^64) 2^(exponent - 63), whose top bit is set. A set last
  /// bit of `low` may stand for any digits behind it.
  [[nodiscard]] static constexpr SoftwareExtended Rounded(bool isNegative, std::uint64_t high,
                                                          std::uint64_t low,
                                                          int exponent) noexcept {
    if (exponent < kSmallestExponent) return RoundedSmall(isNegative, high, low, exponent);
    high += (low >> (kDigits - 1)) & ((low << 1 != 0 ? 1 : 0) | (high & 1));
    if (high == 0) {
      high = kTopBit;
      ++exponent;
    }
    if (exponent > kLargestExponent) return Infinity(isNegative);
    return {isNegative, high, exponent};
  }

  /// The same with fewer digits, below the least normal number.
  [[nodiscard]] static constexpr SoftwareExtended RoundedSmall(bool isNegative, std::uint64_t high,
                                                               std::uint64_t low,
                                                               int exponent) noexcept {
    const int lost = kSmallestExponent - exponent;
    if (lost > kDigits) return Zero(isNegative);
    const std::uint64_t rest = lost == kDigits ? high : high << (kDigits - lost);
    std::uint64_t kept = lost == kDigits ? 0 : high >> lost;
    const bool isAboveHalf = rest > kTopBit || (rest == kTopBit && low != 0);
    if (isAboveHalf || (rest == kTopBit && (kept & 1) != 0)) ++kept;
    if (kept == 0) return Zero(isNegative);
    SoftwareExtended result = Zero(isNegative);
    result.Normalise(kept, kSmallestExponent);
    return result;
  }

  [[nodiscard]] static constexpr SoftwareExtended Add(SoftwareExtended a,
                                                      SoftwareExtended b) noexcept {
    if (a.IsBelowInMagnitude(b)) std::swap(a, b);
    if (!a.IsOrdinary() || !b.IsOrdinary()) return AddSpecial(a, b);
    const int distance = a.exponent - b.exponent;
    // The smaller significand, moved to the larger one's place; what falls off marks the last bit.
    std::uint64_t high = b.significand;
    std::uint64_t low = 0;
    if (distance >= kDigits) {
      const int further = distance - kDigits;
      low = further >= kDigits ? 1
            : further == 0     ? high
                               : (high >> further) | (high << (kDigits - further) != 0 ? 1 : 0);
      high = 0;
    } else if (distance > 0) {
      low = high << (kDigits - distance);
      high >>= distance;
    }
    return a.isNegative == b.isNegative ? Sum(a, high, low) : Difference(a, high, low);
  }

  [[nodiscard]] static constexpr SoftwareExtended Sum(const SoftwareExtended& a, std::uint64_t high,
                                                      std::uint64_t low) noexcept {
    high += a.significand;
    if (high >= a.significand) return Rounded(a.isNegative, high, low, a.exponent);
    low = (high << (kDigits - 1)) | (low >> 1) | (low & 1);
    return Rounded(a.isNegative, kTopBit | (high >> 1), low, a.exponent + 1);
  }

  [[nodiscard]] static constexpr SoftwareExtended Difference(const SoftwareExtended& a,
                                                             std::uint64_t high,
                                                             std::uint64_t low) noexcept {
    high = a.significand - high - (low != 0 ? 1 : 0);
    low = std::uint64_t{0} - low;
    if (high == 0) {
      // Only neighbours cancel so far: one digit is left at most.
      if (low == 0) return Zero(false);
      return Rounded(a.isNegative, low << std::countl_zero(low), 0,
                     a.exponent - kDigits - std::countl_zero(low));
    }
    const int shift = std::countl_zero(high);
    if (shift > 0) {
      high = (high << shift) | (low >> (kDigits - shift));
      low <<= shift;
    }
    return Rounded(a.isNegative, high, low, a.exponent - shift);
  }

  /// Where one is 0 or infinite; `a` is not below `b` in magnitude.
  [[nodiscard]] static constexpr SoftwareExtended AddSpecial(SoftwareExtended a,
                                                             SoftwareExtended b) noexcept {
    if (a.IsNotANumber()) return a;
    if (a.exponent == kInfinity) {
      return b.exponent == kInfinity && a.isNegative != b.isNegative ? NotANumber() : a;
    }
    if (a.significand == 0) return Zero(a.isNegative && b.isNegative);
    return a;
  }

  std::uint64_t significand = 0;
  std::int32_t exponent = kZero;
  bool isNegative = false;
};

}  // namespace arithmetic

#include "arithmetic/software_extended_operations.h"

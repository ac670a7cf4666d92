#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace npar_host {

/// The number that the whole text spells in the C locale, rounded to the nearest double: decimal
/// digits with an optional sign (also "+"), point and exponent, or "inf" or "nan" in any case with
/// an optional sign. Beyond the range of a double it becomes infinite or zero, as with strtod. No
/// hexadecimal, no thousands separators, no blanks. False, and the number is left alone, otherwise.
[[nodiscard]] bool ParseNumber(std::string_view text, double& number);

/// The text of a number as "%.15g" in the C locale writes it; zero is never "-0".
[[nodiscard]] std::string NumberText(double number);

namespace number_detail {

inline constexpr std::array<double, 23> kPowersOfTen = {
    1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr std::array<std::uint64_t, 9> kIntegerPowers = {
    1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
inline constexpr int kLastPowerOfFive = 27;  // 5^27 is the last below 2^64
inline constexpr int kMostDigits = 19;       // 10^19 is below 2^64
inline constexpr std::uint64_t kLastExactInteger = std::uint64_t{1} << 53;

inline bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

/// How many of the eight bytes, the first in the lowest place, are digits before the first that is
/// none. Each byte is judged by itself: 0x76 takes 10 and more, and no less, over 0x7F.
inline int LeadingDigits(std::uint64_t bytes) {
  const std::uint64_t values = bytes ^ 0x3030303030303030U;
  const std::uint64_t others =
      (((values & 0x7F7F7F7F7F7F7F7FU) + 0x7676767676767676U) | values) & 0x8080808080808080U;
  return std::countr_zero(others) / 8;
}

/// The number that the first `count` of the eight bytes spell, 1 to 8 digits: behind zeros they are
/// eight digits, neighbours of which are joined to pairs, pairs to fours, fours to eight.
inline std::uint64_t DigitsValue(std::uint64_t bytes, int count) {
  bytes = (bytes ^ 0x3030303030303030U) << (64 - 8 * count);
  bytes = bytes * 10 + (bytes >> 8);
  return (((bytes & 0x000000FF000000FFU) * 0x000F424000000064U) +
          (((bytes >> 16) & 0x000000FF000000FFU) * 0x0000271000000001U)) >>
         32;
}

/// mantissa / 10^power, rounded to nearest, for a mantissa above 0 and 1 <= power <= 27.
double DivideByPowerOfTen(std::uint64_t mantissa, int power);

}  // namespace number_detail

/// Reads a plain decimal number from the beginning of a text that goes on for 8 readable bytes
/// after it. Returns where it ends, or null for what takes more care (ParseNumber): no number, a
/// word, more than 19 digits, a wide exponent.
///
/// With up to 19 digits the mantissa w is an exact 64-bit integer. w * 10^k and w / 10^k are
/// rounded once, and so correctly, if w <= 2^53 and k <= 22, since both operands are then exact
/// (Clinger 1990, How to read floating point numbers accurately); other quotients with k <= 27 are
/// formed in integers.
inline const char* ParsePlainNumber(const char* text, double& number) {
  using namespace number_detail;
  static_assert(std::endian::native == std::endian::little);
  const char* p = text;
  const bool isNegative = *p == '-';
  if (isNegative || *p == '+') ++p;

  std::uint64_t mantissa = 0;
  const char* first = p;
  while (IsDigit(*p)) mantissa = mantissa * 10 + static_cast<std::uint64_t>(*p++ - '0');
  std::ptrdiff_t digits = p - first;
  int exponent = 0;
  if (*p == '.') {
    first = ++p;
    for (int count = 8; count == 8;) {
      std::uint64_t bytes;
      std::memcpy(&bytes, p, sizeof bytes);
      count = LeadingDigits(bytes);
      if (count == 0) break;
      mantissa =
          mantissa * kIntegerPowers[static_cast<std::size_t>(count)] + DigitsValue(bytes, count);
      p += count;
    }
    digits += p - first;
    exponent = -static_cast<int>(p - first > kMostDigits ? kMostDigits : p - first);
  }
  if (digits == 0 || digits > kMostDigits) return nullptr;

  if (*p == 'e' || *p == 'E') {
    ++p;
    const bool isSmall = *p == '-';
    if (isSmall || *p == '+') ++p;
    if (!IsDigit(*p)) return nullptr;
    int scale = *p++ - '0';
    if (IsDigit(*p)) scale = scale * 10 + (*p++ - '0');
    if (IsDigit(*p)) return nullptr;
    exponent += isSmall ? -scale : scale;
  }

  double value = static_cast<double>(mantissa);  // rounded once where it is above 2^53
  if (exponent != 0 && mantissa != 0) {
    if (mantissa <= kLastExactInteger && exponent >= -22 && exponent <= 22) {
      value = exponent < 0 ? value / kPowersOfTen[static_cast<std::size_t>(-exponent)]
                           : value * kPowersOfTen[static_cast<std::size_t>(exponent)];
    } else if (exponent < 0 && exponent >= -kLastPowerOfFive) {
      value = DivideByPowerOfTen(mantissa, -exponent);
    } else {
      return nullptr;
    }
  }
  number = isNegative ? -value : value;
  return p;
}

}  // namespace npar_host

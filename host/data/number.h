#pragma once

#ifdef __SSE2__
#include <emmintrin.h>
#endif

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

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
inline constexpr int kLastPowerOfFive = 27;                // 5^27 is the last below 2^64
inline constexpr std::size_t kMostDigits = 24;             // that eight-digit steps take
inline constexpr std::size_t kMostSignificantDigits = 19;  // 10^19 is below 2^64
inline constexpr std::uint64_t kLastExactInteger = std::uint64_t{1} << 53;

inline bool IsDigit(char c) { return static_cast<unsigned char>(c - '0') < 10; }

inline std::uint64_t LoadEight(const char* text) {
  std::uint64_t bytes;
  std::memcpy(&bytes, text, sizeof bytes);
  return bytes;
}

/// A bit for each of the first 32 bytes that is no digit, the first lowest. Each byte is judged by
/// itself: 0x76 takes 10 and more, and no less, over 0x7F; a multiplication gathers the eight bits.
inline std::uint32_t NonDigitsByWords(const char* text) {
  std::uint32_t all = 0;
  for (int first = 0; first < 32; first += 8) {
    const std::uint64_t values = LoadEight(text + first) ^ 0x3030303030303030U;
    const std::uint64_t others =
        (((values & 0x7F7F7F7F7F7F7F7FU) + 0x7676767676767676U) | values) & 0x8080808080808080U;
    all |= static_cast<std::uint32_t>((others >> 7) * 0x0102040810204080U >> 56) << first;
  }
  return all;
}

/// NonDigitsByWords where a processor compares 16 bytes at once: files of short numbers are read in
/// about 0.85 of the time.
inline std::uint32_t NonDigits(const char* text) {
#ifdef __SSE2__
  const auto digits = [](const char* half) {
    __m128i values = _mm_loadu_si128(reinterpret_cast<const __m128i*>(half));
    values = _mm_sub_epi8(values, _mm_set1_epi8('0'));
    const __m128i areDigits = _mm_cmpeq_epi8(_mm_min_epu8(values, _mm_set1_epi8(9)), values);
    return static_cast<std::uint32_t>(_mm_movemask_epi8(areDigits));
  };
  return ~(digits(text) | digits(text + 16) << 16);
#else
  return NonDigitsByWords(text);
#endif
}

/// The first `count` bytes of `first`, up to 8, and behind them those of `second`, each at its own
/// index.
inline std::uint64_t Join(std::uint64_t first, std::uint64_t second, std::size_t count) {
  const std::uint64_t later = ~std::uint64_t{0} << 4 * count << 4 * count;
  return ((first ^ second) & later) ^ first;
}

/// The number that the first `count` of eight bytes spell, 1 to 8 digits: behind zeros they are
/// eight digits, neighbours of which are joined to pairs, pairs to fours, fours to eight.
inline std::uint64_t DigitsValue(std::uint64_t bytes, std::size_t count) {
  bytes = (bytes ^ 0x3030303030303030U) << (64 - 8 * count);
  bytes = bytes * (10 << 8 | 1) >> 8 & 0x00FF00FF00FF00FFU;
  bytes = bytes * (100 << 16 | 1) >> 16 & 0x0000FFFF0000FFFFU;
  return bytes * (std::uint64_t{10000} << 32 | 1) >> 32;
}

/// What turns division by 10^k into multiplication: 5^k * 2^shift has its highest bit set.
struct PowerOfFive {
  std::uint64_t inverseHigh = 0;  // 2^191 / (5^k * 2^shift), rounded down, in two words
  std::uint64_t inverseLow = 0;
  std::uint64_t exponent = 0;  // shift - k - 62, where a double has its exponent
};
extern const std::array<PowerOfFive, kLastPowerOfFive + 1> kPowersOfFive;

/// mantissa / 10^power, rounded to nearest, for 1 <= power <= 27.
double DivideExactly(std::uint64_t mantissa, std::size_t power);

/// As DivideExactly, by one multiplication where that is enough.
///
/// With its highest bit set the mantissa m has a quotient of at least 2^62, so that its bits behind
/// a double's are ten or eleven. The product with the high word of the inverse is less than two
/// below it: that cannot change to which double it is nearest, but where the lowest nine bits say
/// that the quotient may be a double or lie halfway between two.
inline double DivideByPowerOfTen(std::uint64_t mantissa, std::size_t power) {
  __extension__ using Wide = unsigned __int128;
  const PowerOfFive& five = kPowersOfFive[power];
  const auto shift = static_cast<unsigned>(std::countl_zero(mantissa | 1));
  const auto quotient =
      static_cast<std::uint64_t>(static_cast<Wide>(mantissa << shift) * five.inverseHigh >> 64);
  const bool isClose = ((quotient + 2) & 0x1FF) <= 3;
  if (isClose) [[unlikely]]
    return DivideExactly(mantissa, power);
  const auto half = static_cast<double>(static_cast<std::int64_t>(quotient >> 1));
  // Its exponent is changed in place: -190 at least, a normal double.
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(half) + five.exponent -
                               (std::uint64_t{shift} << 52));
}

/// The digits of a number around its point, `text` being followed by 32 readable bytes.
struct PlainDigits {
  const char* first;     // the first digit
  const char* rest;      // where those behind the point would begin if all stood behind it
  const char* end;       // of the last digit
  std::size_t count;     // of all digits
  std::size_t integers;  // before a point; 0 without one
  std::size_t fraction;  // behind it
};

/// False where no digit ends within 32 bytes.
[[gnu::always_inline]] inline bool FindDigits(const char* text, std::uint64_t isNegative,
                                              PlainDigits& digits) {
  std::uint64_t others = NonDigits(text) ^ isNegative;
  if (others == 0) return false;
  digits.first = text + isNegative;
  digits.end = text + std::countr_zero(others);
  digits.count = static_cast<std::size_t>(digits.end - digits.first);
  digits.integers = 0;
  digits.fraction = 0;
  digits.rest = digits.first;
  if (*digits.end == '.') [[likely]] {
    others &= others - 1;
    const char* point = std::exchange(digits.end, text + std::countr_zero(others));
    digits.integers = digits.count;
    digits.fraction = static_cast<std::size_t>(digits.end - point - 1);
    digits.count += digits.fraction;
    digits.rest = digits.first + 1;
  }
  return digits.count != 0 && digits.count <= kMostDigits;
}

/// All digits as one integer; false for more than 16 before the point, or 19 behind leading zeros.
[[gnu::always_inline]] inline bool ReadMantissa(const PlainDigits& digits,
                                                std::uint64_t& mantissa) {
  std::uint64_t head = LoadEight(digits.first);
  std::uint64_t next = LoadEight(digits.rest + 8);
  if (digits.integers <= 8) [[likely]] {
    head = Join(head, LoadEight(digits.rest), digits.integers);
  } else if (digits.integers <= 16) {
    next = Join(LoadEight(digits.first + 8), next, digits.integers - 8);
  } else {
    return false;
  }
  const std::size_t count = digits.count;
  if (count <= 8) {
    mantissa = DigitsValue(head, count);
    return true;
  }
  mantissa = DigitsValue(head, 8);
  if (count <= 16) {
    mantissa = mantissa * kIntegerPowers[count - 8] + DigitsValue(next, count - 8);
    return true;
  }
  const bool isTooLong = count > kMostSignificantDigits &&
                         mantissa >= kIntegerPowers[8 + kMostSignificantDigits - count];
  if (isTooLong) return false;
  mantissa = mantissa * kIntegerPowers[8] + DigitsValue(next, 8);
  mantissa =
      mantissa * kIntegerPowers[count - 16] + DigitsValue(LoadEight(digits.rest + 16), count - 16);
  return true;
}

/// Adds an exponent of one or two digits that stands at `end`, which moves behind it; false for
/// another.
[[gnu::always_inline]] inline bool ReadExponent(const char*& end, int& exponent) {
  if (*end != 'e' && *end != 'E') return true;
  ++end;
  const bool isSmall = *end == '-';
  if (isSmall || *end == '+') ++end;
  if (!IsDigit(*end)) return false;
  int scale = *end++ - '0';
  if (IsDigit(*end)) scale = scale * 10 + (*end++ - '0');
  if (IsDigit(*end)) return false;
  exponent += isSmall ? -scale : scale;
  return true;
}

/// mantissa * 10^exponent, rounded once; false where that takes more care. The mantissa has
/// `digits` digits.
[[gnu::always_inline]] inline bool ScaleMantissa(std::uint64_t mantissa, std::size_t digits,
                                                 int exponent, double& value) {
  if (digits > 8 && exponent < 0 && exponent >= -kLastPowerOfFive) {
    value = DivideByPowerOfTen(mantissa, static_cast<std::size_t>(-exponent));
  } else if (mantissa <= kLastExactInteger && exponent >= -22 && exponent <= 22) {
    value = static_cast<double>(static_cast<std::int64_t>(mantissa));
    value = exponent < 0 ? value / kPowersOfTen[static_cast<std::size_t>(-exponent)]
                         : value * kPowersOfTen[static_cast<std::size_t>(exponent)];
  } else if (exponent == 0) {
    value = static_cast<double>(mantissa);  // rounded once
  } else {
    return false;
  }
  return true;
}

}  // namespace number_detail

/// Reads a plain decimal number from the beginning of a text that goes on for 32 readable bytes.
/// Returns where it ends, or null for what takes more care (ParseNumber): no number, a plus sign, a
/// word, more than 24 digits or 19 behind leading zeros, a wide exponent.
///
/// Sign, point and length change from one number to the next: no branch depends on them but in
/// steps of eight digits. The mantissa w is an exact 64-bit integer. w * 10^k and w / 10^k are
/// rounded once, and so correctly, if w <= 2^53 and k <= 22, since both operands are then exact
/// (Clinger 1990, How to read floating point numbers accurately); other quotients with k <= 27 are
/// formed in integers.
[[gnu::always_inline]] inline const char* ParsePlainNumber(const char* text, double& number) {
  using namespace number_detail;
  static_assert(std::endian::native == std::endian::little);
  // By arithmetic: what a comparison leaves in a part of a register would wait for the rest of it,
  // and so perhaps for the number before.
  const std::uint64_t isNegative =
      ((std::uint64_t{static_cast<unsigned char>(*text)} ^ '-') - 1) >> 63;
  PlainDigits digits;
  std::uint64_t mantissa = 0;
  if (!FindDigits(text, isNegative, digits) || !ReadMantissa(digits, mantissa)) return nullptr;
  const char* end = digits.end;
  int exponent = -static_cast<int>(digits.fraction);
  double value = 0.0;
  if (!ReadExponent(end, exponent)) return nullptr;
  if (!ScaleMantissa(mantissa, digits.count, exponent, value)) return nullptr;
  number = std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) | isNegative << 63);
  return end;
}

}  // namespace npar_host

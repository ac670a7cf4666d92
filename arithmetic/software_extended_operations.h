#pragma once

// The longer operations of SoftwareExtended: the second half of its header.

namespace arithmetic {

namespace binary64 {

inline constexpr int kDigits = 53;
inline constexpr int kBias = 1023;
inline constexpr int kSmallestExponent = -1022;
inline constexpr std::uint64_t kExponentMask = 0x7ff;
inline constexpr std::uint64_t kFractionMask = (std::uint64_t{1} << (kDigits - 1)) - 1;

}  // namespace binary64

constexpr SoftwareExtended::SoftwareExtended(double number) noexcept {
  const auto bits = std::bit_cast<std::uint64_t>(number);
  isNegative = (bits >> (kDigits - 1)) != 0;
  const auto biased = static_cast<int>((bits >> (binary64::kDigits - 1)) & binary64::kExponentMask);
  const std::uint64_t fraction = bits & binary64::kFractionMask;
  if (biased == static_cast<int>(binary64::kExponentMask)) {
    *this = fraction != 0 ? NotANumber() : Infinity(isNegative);
  } else if (biased != 0) {
    significand = kTopBit | fraction << (kDigits - binary64::kDigits);
    exponent = biased - binary64::kBias;
  } else if (fraction != 0) {
    Normalise(fraction, binary64::kSmallestExponent + kDigits - binary64::kDigits);
  }
}

constexpr SoftwareExtended::SoftwareExtended(long double number) noexcept
    : SoftwareExtended(static_cast<double>(number)) {
  if (!IsOrdinary()) return;
  const long double rest = number - static_cast<long double>(static_cast<double>(number));
  const auto middle = static_cast<double>(rest);
  const auto last = static_cast<double>(rest - static_cast<long double>(middle));
  *this = *this + (SoftwareExtended(middle) + SoftwareExtended(last));
}

constexpr SoftwareExtended::SoftwareExtended(const char* decimal) noexcept {
  decimal::Quotient number = decimal::Parse(decimal);
  if (number.dividend.IsZero()) return;
  int place = -1;  // of the top bit
  for (; number.dividend < number.divisor; --place) number.dividend.Double();
  for (; !(number.dividend < number.divisor); ++place) number.divisor.Double();
  number.dividend.Double();
  // Digit by digit: those of the significand, one to round by, and whether anything follows it.
  std::uint64_t high = 0;
  std::uint64_t low = 0;
  for (int i = 0; i <= kDigits; ++i) {
    const bool isOne = !(number.dividend < number.divisor);
    if (isOne) number.dividend -= number.divisor;
    number.dividend.Double();
    if (i < kDigits)
      high = high << 1 | (isOne ? 1 : 0);
    else
      low = isOne ? kTopBit : 0;
  }
  if (!number.dividend.IsZero()) low |= 1;
  *this = Rounded(number.isNegative, high, low, place);
}

constexpr SoftwareExtended::operator long double() const noexcept {
  const auto high = static_cast<double>(*this);
  if (!(high - high == 0)) return static_cast<long double>(high);
  return static_cast<long double>(high) +
         static_cast<long double>(static_cast<double>(*this - SoftwareExtended(high)));
}

constexpr SoftwareExtended::operator double() const noexcept {
  const std::uint64_t sign = isNegative ? kTopBit : 0;
  const std::uint64_t top = binary64::kExponentMask << (binary64::kDigits - 1);
  if (IsNotANumber())
    return std::bit_cast<double>(top | (kTopBit >> (kDigits - binary64::kDigits + 1)));
  if (significand == 0) return std::bit_cast<double>(sign);
  int lost = kDigits - binary64::kDigits;
  if (exponent < binary64::kSmallestExponent) lost += binary64::kSmallestExponent - exponent;
  if (lost > kDigits) return std::bit_cast<double>(sign);
  std::uint64_t kept = lost == kDigits ? 0 : significand >> lost;
  const std::uint64_t rest = lost == kDigits ? significand : significand << (kDigits - lost);
  if (rest > kTopBit || (rest == kTopBit && (kept & 1) != 0)) ++kept;
  // A carry out of the digits goes into the exponent's field, where it belongs.
  if (exponent < binary64::kSmallestExponent) return std::bit_cast<double>(sign | kept);
  if (exponent > binary64::kBias) return std::bit_cast<double>(sign | top);
  const auto biased = static_cast<std::uint64_t>(exponent + binary64::kBias - 1);
  return std::bit_cast<double>(sign | ((biased << (binary64::kDigits - 1)) + kept));
}

constexpr SoftwareExtended operator*(SoftwareExtended a, SoftwareExtended b) noexcept {
  const bool isNegative = a.isNegative != b.isNegative;
  if (!a.IsOrdinary() || !b.IsOrdinary()) {
    if (a.IsNotANumber() || b.IsNotANumber()) return SoftwareExtended::NotANumber();
    const bool hasZero = a.significand == 0 || b.significand == 0;
    const bool isFinite =
        a.exponent < SoftwareExtended::kInfinity && b.exponent < SoftwareExtended::kInfinity;
    if (!isFinite) {
      return hasZero ? SoftwareExtended::NotANumber() : SoftwareExtended::Infinity(isNegative);
    }
    return SoftwareExtended::Zero(isNegative);
  }
  Wide product = Wide{a.significand} * b.significand;
  int exponent = a.exponent + b.exponent + 1;
  if ((product >> (2 * SoftwareExtended::kDigits - 1)) == 0) {
    product <<= 1;
    --exponent;
  }
  return SoftwareExtended::Rounded(isNegative,
                                   static_cast<std::uint64_t>(product >> SoftwareExtended::kDigits),
                                   static_cast<std::uint64_t>(product), exponent);
}

constexpr SoftwareExtended operator/(SoftwareExtended a, SoftwareExtended b) noexcept {
  const bool isNegative = a.isNegative != b.isNegative;
  if (!a.IsOrdinary() || !b.IsOrdinary()) {
    const bool bothZero = a.significand == 0 && b.significand == 0;
    const bool bothInfinite =
        a.exponent == SoftwareExtended::kInfinity && b.exponent == SoftwareExtended::kInfinity;
    if (a.IsNotANumber() || b.IsNotANumber() || bothZero || bothInfinite) {
      return SoftwareExtended::NotANumber();
    }
    const bool isInfinite = a.exponent == SoftwareExtended::kInfinity || b.significand == 0;
    return isInfinite ? SoftwareExtended::Infinity(isNegative) : SoftwareExtended::Zero(isNegative);
  }
  const bool isLess = a.significand < b.significand;
  const Wide dividend = Wide{a.significand} << (SoftwareExtended::kDigits - (isLess ? 0 : 1));
  const auto quotient = static_cast<std::uint64_t>(dividend / b.significand);
  const auto rest = static_cast<std::uint64_t>(dividend - Wide{quotient} * b.significand);
  // The next digit, and whether anything follows it.
  const std::uint64_t other = b.significand - rest;
  const std::uint64_t low = rest == 0       ? 0
                            : rest > other  ? SoftwareExtended::kTopBit | 1
                            : rest == other ? SoftwareExtended::kTopBit
                                            : 1;
  return SoftwareExtended::Rounded(isNegative, quotient, low,
                                   a.exponent - b.exponent - (isLess ? 1 : 0));
}

constexpr SoftwareExtended sqrt(SoftwareExtended x) noexcept {
  if (x.significand == 0 || x.IsNotANumber()) return x;
  if (x.isNegative) return SoftwareExtended::NotANumber();
  if (!x.IsOrdinary()) return x;
  // root = floor(sqrt(significand * 2^63 or 2^64)), which has 64 digits.
  const bool isOdd = (x.exponent & 1) != 0;
  const Wide square = Wide{x.significand} << (SoftwareExtended::kDigits - (isOdd ? 0 : 1));
  // Newton's steps from above end at the root.
  Wide root = ~std::uint64_t{0};
  for (Wide next = (root + square / root) / 2; next < root; next = (root + square / root) / 2) {
    root = next;
  }
  const Wide rest = square - root * root;
  const std::uint64_t low = rest == 0     ? 0
                            : rest > root ? SoftwareExtended::kTopBit | 1
                                          : 1;  // no root lies in the middle
  return SoftwareExtended::Rounded(false, static_cast<std::uint64_t>(root), low,
                                   (x.exponent - (isOdd ? 1 : 0)) / 2);
}

constexpr SoftwareExtended floor(SoftwareExtended x) noexcept {
  if (!x.IsOrdinary() || x.exponent >= SoftwareExtended::kDigits - 1) return x;
  if (x.exponent < 0) return x.isNegative ? SoftwareExtended(-1) : SoftwareExtended::Zero(false);
  const std::uint64_t fraction = (~std::uint64_t{0} >> 1) >> x.exponent;
  SoftwareExtended whole = x;
  whole.significand &= ~fraction;
  if (x.isNegative && whole.significand != x.significand) return whole - SoftwareExtended(1);
  return whole;
}

}  // namespace arithmetic

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

#include "foundation/record.h"
#include "foundation/xml.h"

namespace QDXML_700 {

namespace {

/// What a document shows of a number.
constexpr std::string_view kDocumentFormat = "%.15g";
constexpr int kDigits = std::numeric_limits<double>::digits10;
constexpr std::size_t kHalfDigits = kDigits / 2;
constexpr std::uint64_t kHalf = 100'000'000;               // 10 to the digits of the lower half
constexpr std::uint64_t kLargest = 1'000'000'000'000'000;  // 10 to so many digits

/// digits times ten to the exponent - 14: 15 digits, the first not 0.
struct Decimal {
  std::uint64_t digits;
  int exponent;
};

__extension__ using Wide = unsigned __int128;

/// Powers of five that 64 bits hold.
constexpr auto kPowersOfFive = [] {
  std::array<std::uint64_t, 28> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 5;
  return powers;
}();

/// A number above 0 rounded to 15 digits, the nearest of even last digit where two are as near.
/// None outside of 1e-13 to 1e15, within which the product of the number and a power of ten is an
/// exact one of 128 bits: with v = mantissa * 2^power, v * 10^k = mantissa * 5^k * 2^(power + k).
std::optional<Decimal> ShortDecimal(double value) {
  constexpr int kMantissaBits = std::numeric_limits<double>::digits - 1;
  constexpr int kBias = 1023 + kMantissaBits;
  constexpr std::int64_t kLog2 = 1233;  // of 10, over 4096, from below
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const int power = static_cast<int>(bits >> kMantissaBits) - kBias;
  const std::uint64_t unit = std::uint64_t{1} << kMantissaBits;
  const std::uint64_t mantissa = (bits & (unit - 1)) | unit;
  auto exponent =
      static_cast<int>((power + kMantissaBits) * kLog2 >> 12);  // or one less than it is
  for (;; ++exponent) {
    const int k = kDigits - 1 - exponent;
    if (k < 0 || k >= static_cast<int>(kPowersOfFive.size())) return std::nullopt;
    const Wide product = Wide{mantissa} * kPowersOfFive[static_cast<std::size_t>(k)];
    const int shift = -(power + k);  // at least 3, as 15 digits take fewer bits than a mantissa
    auto digits = static_cast<std::uint64_t>(product >> shift);
    if (digits >= kLargest) continue;
    const Wide half = Wide{1} << (shift - 1);
    const Wide rest = product & (2 * half - 1);
    if (rest > half || (rest == half && digits % 2 != 0)) ++digits;
    if (digits == kLargest) return Decimal{kLargest / 10, exponent + 1};
    return Decimal{digits, exponent};
  }
}

/// In the form of "%.15g".
std::string Write(const Decimal& decimal, bool isNegative) {
  constexpr int kSmallestFixed = -4;
  std::array<char, 40> text;
  std::array<char, kDigits> digits;
  // In two halves, which the processor takes side by side.
  auto upper = static_cast<std::uint32_t>(decimal.digits / kHalf);
  auto lower = static_cast<std::uint32_t>(decimal.digits % kHalf);
  for (std::size_t i = kHalfDigits; i-- > 0;) {
    digits[i] = static_cast<char>('0' + upper % 10);
    digits[i + kHalfDigits + 1] = static_cast<char>('0' + lower % 10);
    upper /= 10;
    lower /= 10;
  }
  digits[kHalfDigits] = static_cast<char>('0' + lower);
  std::ptrdiff_t count = kDigits;
  while (count > 1 && digits[static_cast<std::size_t>(count - 1)] == '0') --count;
  const char* const first = digits.data();
  char* out = text.data();
  if (isNegative) *out++ = '-';
  if (decimal.exponent >= 0 && decimal.exponent < kDigits) {
    const auto whole = std::min<std::ptrdiff_t>(decimal.exponent + 1, count);
    out = std::copy_n(first, whole, out);
    out = std::fill_n(out, decimal.exponent + 1 - whole, '0');
    if (count > whole) *out++ = '.';
    out = std::copy_n(first + whole, count - whole, out);
  } else if (decimal.exponent < 0 && decimal.exponent >= kSmallestFixed) {
    *out++ = '0';
    *out++ = '.';
    out = std::fill_n(out, -decimal.exponent - 1, '0');
    out = std::copy_n(first, count, out);
  } else {
    *out++ = *first;
    if (count > 1) *out++ = '.';
    out = std::copy_n(first + 1, count - 1, out);
    *out++ = 'e';
    *out++ = decimal.exponent < 0 ? '-' : '+';
    const int size = std::abs(decimal.exponent);  // of two digits at most
    *out++ = static_cast<char>('0' + size / 10);
    *out++ = static_cast<char>('0' + size % 10);
  }
  return std::string(text.data(), out);
}

/// The digits behind the point of "%.15g".
int DigitsOf(std::string_view format) {
  constexpr int kMostDigits = 100;  // beyond what any double carries in a report
  int digits = 6;                   // of a bare "%g"
  const std::size_t point = format.find('.');
  if (point != std::string_view::npos) {
    static_cast<void>(
        std::from_chars(format.data() + point + 1, format.data() + format.size(), digits));
  }
  return std::clamp(digits, 0, kMostDigits);
}

}  // namespace

std::string ReplaceSep(double value, std::string_view format) {
  if (std::isnan(value) || value == QDCommon_700::QDMV::gMissingValue) return "nan";
  if (std::isinf(value)) return value > 0.0 ? "inf" : "-inf";
  if (value == 0.0) return "0";
  if (format == kDocumentFormat) {
    if (const auto decimal = ShortDecimal(std::abs(value))) return Write(*decimal, value < 0.0);
  }
  std::array<char, 128> buffer;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                 std::chars_format::general, DigitsOf(format));
  return std::string(buffer.data(), end.ptr);
}

}  // namespace QDXML_700

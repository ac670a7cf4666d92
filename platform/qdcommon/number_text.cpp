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

/// Numbers for which there may be a short way.
constexpr double kSmallestShort = 1e-13;
constexpr double kLargestShort = 1e15;

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

/// The pairs of digits from "00" to "99".
constexpr auto kPairs = [] {
  std::array<char, 200> pairs{};
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
  }
  return pairs;
}();

/// The digits of a number below 10^8, to `out` to `out + 7`.
void WriteEight(std::uint32_t number, char* out) {
  const std::uint32_t halves[] = {number / 10'000, number % 10'000};
  for (const std::uint32_t half : halves) {
    std::copy_n(&kPairs[half / 100 * 2], 2, out);
    std::copy_n(&kPairs[half % 100 * 2], 2, out + 2);
    out += 4;
  }
}

/// In the form of "%.15g".
char* Write(const Decimal& decimal, bool isNegative, char* end) {
  constexpr int kSmallestFixed = -4;
  // A digit 0 before the first, and room behind the last: copies of a fixed length are quickest.
  std::array<char, 1 + 2 * kDigits + 1> room{};
  WriteEight(static_cast<std::uint32_t>(decimal.digits / kHalf), room.data());
  WriteEight(static_cast<std::uint32_t>(decimal.digits % kHalf), room.data() + kHalfDigits + 1);
  const char* const digits = room.data() + 1;
  std::ptrdiff_t count = kDigits;
  while (count > 1 && digits[count - 1] == '0') --count;
  static_assert(kLongestNumber > 3 * kDigits);  // what is copied beyond the end included
  if (isNegative) *end++ = '-';
  if (decimal.exponent >= 0 && decimal.exponent < kDigits) {
    const std::ptrdiff_t whole = decimal.exponent + 1;
    std::copy_n(digits, kDigits, end);
    if (count > whole) {
      end[whole] = '.';
      std::copy_n(digits + whole, kDigits, end + whole + 1);
      end += count + 1;
    } else {
      end += whole;
    }
  } else if (decimal.exponent < 0 && decimal.exponent >= kSmallestFixed) {
    *end++ = '0';
    *end++ = '.';
    end = std::fill_n(end, -decimal.exponent - 1, '0');
    std::copy_n(digits, kDigits, end);
    end += count;
  } else {
    *end++ = *digits;
    if (count > 1) *end++ = '.';
    end = std::copy_n(digits + 1, count - 1, end);
    *end++ = 'e';
    *end++ = decimal.exponent < 0 ? '-' : '+';
    // Of two digits at most.
    end = std::copy_n(&kPairs[static_cast<std::size_t>(std::abs(decimal.exponent)) * 2], 2, end);
  }
  return end;
}

constexpr int kMostDigits = 100;  // beyond what any double carries in a report

/// The digits behind the point of "%.15g".
int DigitsOf(std::string_view format) {
  int digits = 6;  // of a bare "%g"
  const std::size_t point = format.find('.');
  if (point != std::string_view::npos) {
    static_cast<void>(
        std::from_chars(format.data() + point + 1, format.data() + format.size(), digits));
  }
  return std::clamp(digits, 0, kMostDigits);
}

/// In the form of "%.<digits>g".
char* WriteGeneral(double value, int digits, char* out, char* roomEnd) {
  constexpr std::string_view kInfinity = "-inf";
  if (std::isnan(value) || value == QDCommon_700::QDMV::gMissingValue) {
    return std::copy_n("nan", 3, out);
  }
  if (std::isinf(value)) {
    const std::string_view text = kInfinity.substr(value > 0.0 ? 1 : 0);
    return std::copy(text.begin(), text.end(), out);
  }
  if (value == 0.0) return std::copy_n("0", 1, out);  // a negative zero too
  return std::to_chars(out, roomEnd, value, std::chars_format::general, digits).ptr;
}

}  // namespace

std::string ReplaceSep(double value, std::string_view format) {
  constexpr std::size_t kLongest = kMostDigits + 28;  // sign, point, zeros and exponent besides
  std::array<char, kLongest> text;
  char* const end = format == kDocumentFormat ? WriteNumber(value, text.data())
                                              : WriteGeneral(value, DigitsOf(format), text.data(),
                                                             text.data() + kLongest);
  return {text.data(), end};
}

char* WriteNumber(double value, char* out) {
  const double size = std::abs(value);
  if (size >= kSmallestShort && size < kLargestShort) {
    if (const auto decimal = ShortDecimal(size)) return Write(*decimal, value < 0.0, out);
  }
  return WriteGeneral(value, kDigits, out, out + kLongestNumber);
}

}  // namespace QDXML_700

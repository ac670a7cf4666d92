#include "host/data/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace npar_host {
namespace {

bool EqualsIgnoringCase(std::string_view text, std::string_view lowerCase) {
  if (text.size() != lowerCase.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char letter = text[i];
    const char lower = letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    if (lower != lowerCase[i]) return false;
  }
  return true;
}

/// The value of a well-formed unsigned number that no double can hold: is it too large or too
/// small? Decided by the decimal place of its first digit other than zero.
double BeyondRange(std::string_view number) {
  const std::size_t mark = number.find_first_of("eE");
  const std::string_view mantissa = number.substr(0, mark);
  const std::size_t leading = mantissa.find_first_of("123456789");
  if (leading == std::string_view::npos) return 0.0;
  if (mark != std::string_view::npos) {
    std::string_view digits = number.substr(mark + 1);
    if (!digits.empty() && digits.front() == '+') digits.remove_prefix(1);
    long long exponent = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (parsed.ec != std::errc()) {
      return digits.front() == '-' ? 0.0 : std::numeric_limits<double>::infinity();
    }
    const std::size_t point = std::min(mantissa.find('.'), mantissa.size());
    const long long place = static_cast<long long>(point) - static_cast<long long>(leading);
    return exponent + place > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  }
  return leading < mantissa.find('.') ? std::numeric_limits<double>::infinity() : 0.0;
}

}  // namespace

namespace number_detail {
namespace {

__extension__ using Wide = unsigned __int128;

/// m * 2^63 / (5^k * 2^shift) for an m with its highest bit set: between 2^62 and 2^64. A remainder
/// sets the lowest bit, which lies so far below the 53 bits of a double that it decides ties and no
/// more.
std::uint64_t Quotient(std::uint64_t m, const PowerOfFive& five) {
  const Wide low = static_cast<Wide>(m) * five.inverseLow;
  const Wide product = static_cast<Wide>(m) * five.inverseHigh + (low >> 64);
  const auto quotient = static_cast<std::uint64_t>(product >> 64);
  const auto fraction = static_cast<std::uint64_t>(product);
  // The inverse is rounded down, so that the exact product lies above this one, by less than 2 in
  // its last place, 2^-64. A remainder keeps the exact quotient at least 1 / 5^27 > 2^-63 below the
  // next integer: closer to it there is none, and the quotient is that integer.
  const bool isExact = fraction >= ~std::uint64_t{1};
  return isExact ? quotient + 1 : quotient | 1;
}

}  // namespace

constinit const std::array<PowerOfFive, kLastPowerOfFive + 1> kPowersOfFive = [] {
  std::array<PowerOfFive, kLastPowerOfFive + 1> powers{};
  std::uint64_t five = 1;
  for (std::size_t i = 1; i < powers.size(); ++i) {
    five *= 5;
    PowerOfFive& power = powers[i];
    const int shift = std::countl_zero(five);
    const std::uint64_t divisor = five << shift;
    const Wide dividend = static_cast<Wide>(1) << 127;
    const Wide remainder = dividend % divisor;
    power.inverseHigh = static_cast<std::uint64_t>(dividend / divisor);
    power.inverseLow = static_cast<std::uint64_t>((remainder << 64) / divisor);
    power.exponent = static_cast<std::uint64_t>(shift - static_cast<int>(i) - 62) << 52;
  }
  return powers;
}();

double DivideExactly(std::uint64_t mantissa, std::size_t power) {
  if (mantissa == 0) return 0.0;
  const PowerOfFive& five = kPowersOfFive[power];
  const int shift = std::countl_zero(mantissa);
  const auto quotient = static_cast<double>(Quotient(mantissa << shift, five));
  const auto exponent = five.exponent + (static_cast<std::uint64_t>(-1 - shift) << 52);
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(quotient) + exponent);
}

}  // namespace number_detail

bool ParseNumber(std::string_view text, double& number) {
  if (text.empty()) return false;
  const bool isNegative = text.front() == '-';
  if (isNegative || text.front() == '+') text.remove_prefix(1);
  if (text.empty()) return false;

  double value = 0.0;
  if (number_detail::IsDigit(text.front()) || text.front() == '.') {
    const char* end = text.data() + text.size();
    const auto parsed = std::from_chars(text.data(), end, value);
    if (parsed.ptr != end || parsed.ec == std::errc::invalid_argument) return false;
    if (parsed.ec == std::errc::result_out_of_range) value = BeyondRange(text);
  } else if (EqualsIgnoringCase(text, "inf")) {
    value = std::numeric_limits<double>::infinity();
  } else if (EqualsIgnoringCase(text, "nan")) {
    value = std::numeric_limits<double>::quiet_NaN();
  } else {
    return false;
  }
  number = isNegative ? -value : value;
  return true;
}

std::string NumberText(double number) {
  if (std::isnan(number)) return "nan";
  std::array<char, 32> buffer;
  const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number + 0.0,
                                     std::chars_format::general, 15);
  return std::string(buffer.data(), written.ptr);
}

}  // namespace npar_host

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

constexpr auto kPowersOfFive = [] {
  std::array<std::uint64_t, kLastPowerOfFive + 1> powers{1};
  for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = powers[i - 1] * 5;
  return powers;
}();

}  // namespace

double DivideByPowerOfTen(std::uint64_t mantissa, int power) {
  // mantissa / 10^power = (m / f) * 2^(fShift - mShift - power), m and f with their highest bit
  // set. The quotient of m * 2^63 by f lies between 2^62 and 2^64; a remainder becomes its lowest
  // bit, which is far below the 53 bits that are kept, so that the conversion rounds rightly.
  __extension__ using Wide = unsigned __int128;
  const std::uint64_t five = kPowersOfFive[static_cast<std::size_t>(power)];
  const int mantissaShift = std::countl_zero(mantissa);
  const int fiveShift = std::countl_zero(five);
  const std::uint64_t divisor = five << fiveShift;
  const Wide dividend = static_cast<Wide>(mantissa << mantissaShift) << 63;
  std::uint64_t quotient = static_cast<std::uint64_t>(dividend / divisor);
  const std::uint64_t remainder = static_cast<std::uint64_t>(dividend) - quotient * divisor;
  quotient |= remainder != 0 ? 1U : 0U;
  const int scale = fiveShift - mantissaShift - power - 63;  // -190 at least: a normal double
  return static_cast<double>(quotient) *
         std::bit_cast<double>(static_cast<std::uint64_t>(1023 + scale) << 52);
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

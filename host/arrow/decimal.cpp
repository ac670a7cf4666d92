#include "host/arrow/decimal.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include "host/data/number.h"

namespace npar_host {
namespace {

constexpr std::size_t kWords = 4;
constexpr std::uint64_t kTenTo18 = 1000000000000000000U;
constexpr std::size_t kDigitsOfStep = 18;

/// 256 bits, the lowest word first.
using Magnitude = std::array<std::uint64_t, kWords>;

/// Reads the two's complement as its magnitude; whether it is negative.
bool TakeMagnitude(const void* value, std::size_t bytes, Magnitude& magnitude) {
  const bool isNegative = (static_cast<const unsigned char*>(value)[bytes - 1] & 0x80U) != 0;
  magnitude.fill(isNegative ? ~std::uint64_t{0} : 0);
  std::memcpy(magnitude.data(), value, bytes);
  std::uint64_t carry = isNegative ? 1 : 0;
  for (std::uint64_t& word : magnitude) {
    if (!isNegative) break;
    word = ~word + carry;
    carry = carry == 1 && word == 0 ? 1 : 0;
  }
  return isNegative;
}

/// Divides in place; the remainder.
std::uint64_t Divide(Magnitude& magnitude, std::uint64_t divisor) {
  __extension__ using Wide = unsigned __int128;
  Wide rest = 0;
  for (std::size_t i = kWords; i-- > 0;) {
    rest = rest << 64U | magnitude[i];
    magnitude[i] = static_cast<std::uint64_t>(rest / divisor);
    rest %= divisor;
  }
  return static_cast<std::uint64_t>(rest);
}

std::string Digits(Magnitude magnitude) {
  std::string digits;
  while (std::ranges::any_of(magnitude, [](std::uint64_t word) { return word != 0; })) {
    std::string step = std::to_string(Divide(magnitude, kTenTo18));
    step.insert(0, kDigitsOfStep - step.size(), '0');
    digits.insert(0, step);
  }
  return digits.empty() ? "0" : digits;
}

}  // namespace

double DecimalValue(const void* value, std::size_t bytes, int scale) {
  Magnitude magnitude;
  const bool isNegative = TakeMagnitude(value, bytes, magnitude);
  const bool isSmall = magnitude[0] <= number_detail::kLastExactInteger && magnitude[1] == 0 &&
                       magnitude[2] == 0 && magnitude[3] == 0;
  double number = 0.0;
  if (isSmall && scale >= 0 && scale < static_cast<int>(number_detail::kPowersOfTen.size())) {
    // Both operands are exact, so that the quotient is rounded once.
    number = static_cast<double>(magnitude[0]) /
             number_detail::kPowersOfTen[static_cast<std::size_t>(scale)];
  } else {
    static_cast<void>(ParseNumber(Digits(magnitude) + "e" + std::to_string(-scale), number));
  }
  return isNegative ? -number : number;
}

}  // namespace npar_host

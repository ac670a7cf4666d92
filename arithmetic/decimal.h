#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

/// Decimal digits as a quotient of whole numbers, for SoftwareExtended.
namespace arithmetic::decimal {

/// A whole number of 1,024 bits, the highest word first.
class Large {
 public:
  constexpr void MultiplyAdd(std::uint32_t factor, std::uint32_t more) noexcept {
    std::uint64_t carry = more;
    for (auto word = words.rbegin(); word != words.rend(); ++word) {
      carry += std::uint64_t{*word} * factor;
      *word = static_cast<std::uint32_t>(carry);
      carry >>= kWordBits;
    }
  }
  constexpr void Double() noexcept { MultiplyAdd(2, 0); }
  constexpr Large& operator-=(const Large& other) noexcept {
    std::uint64_t borrowed = 0;
    for (std::size_t i = words.size(); i-- > 0;) {
      const std::uint64_t rest = std::uint64_t{words[i]} - other.words[i] - borrowed;
      words[i] = static_cast<std::uint32_t>(rest);
      borrowed = rest >> (2 * kWordBits - 1);
    }
    return *this;
  }
  friend constexpr bool operator<(const Large& a, const Large& b) noexcept {
    return std::lexicographical_compare(a.words.begin(), a.words.end(), b.words.begin(),
                                        b.words.end());
  }

 private:
  static constexpr int kWordBits = 32;
  static constexpr std::size_t kWords = 32;
  std::array<std::uint32_t, kWords> words{};
};

struct Quotient {
  Large dividend;
  Large divisor;
  bool isNegative = false;
};

/// Of a text such as "-1.5e-3", with an exponent from -200 to 200; digits behind the sixtieth are
/// beyond what a rounding to 64 binary digits can tell.
constexpr Quotient Parse(const char* text) noexcept {
  constexpr int kDigits = 60;
  constexpr std::uint32_t kBase = 10;
  Quotient number;
  number.divisor.MultiplyAdd(1, 1);
  number.isNegative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  int exponent = 0;
  int digits = 0;
  bool isBehindPoint = false;
  for (; *text == '.' || (*text >= '0' && *text <= '9'); ++text) {
    if (*text == '.') {
      isBehindPoint = true;
      continue;
    }
    const bool isKept = digits < kDigits;
    if (isKept) number.dividend.MultiplyAdd(kBase, static_cast<std::uint32_t>(*text - '0'));
    if (isKept && (digits > 0 || *text != '0')) ++digits;
    exponent += (isKept ? 0 : 1) - (isBehindPoint ? 1 : 0);
  }
  if (*text == 'e' || *text == 'E') {
    ++text;
    const bool isSmall = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    int told = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
      told = told * static_cast<int>(kBase) + (*text - '0');
    }
    exponent += isSmall ? -told : told;
  }
  Large& scaled = exponent < 0 ? number.divisor : number.dividend;
  for (int i = exponent < 0 ? -exponent : exponent; i > 0; --i) scaled.MultiplyAdd(kBase, 0);
  return number;
}

}  // namespace arithmetic::decimal

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// Decimal digits as a quotient of whole numbers, for SoftwareExtended.
namespace arithmetic::decimal {

/// A whole number of up to 17,408 bits, the lowest word first.
class Large {
 public:
  constexpr void MultiplyAdd(std::uint32_t factor, std::uint32_t more) noexcept {
    std::uint64_t carry = more;
    for (std::size_t i = 0; i < size; ++i) {
      carry += std::uint64_t{words[i]} * factor;
      words[i] = static_cast<std::uint32_t>(carry);
      carry >>= kWordBits;
    }
    if (carry != 0) words[size++] = static_cast<std::uint32_t>(carry);
  }
  constexpr void Double() noexcept { MultiplyAdd(2, 0); }
  /// Of what is not larger.
  constexpr Large& operator-=(const Large& other) noexcept {
    std::uint64_t borrowed = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::uint64_t rest = std::uint64_t{words[i]} - other.words[i] - borrowed;
      words[i] = static_cast<std::uint32_t>(rest);
      borrowed = rest >> (2 * kWordBits - 1);
    }
    while (size > 0 && words[size - 1] == 0) --size;
    return *this;
  }
  [[nodiscard]] constexpr bool IsZero() const noexcept { return size == 0; }
  friend constexpr bool operator<(const Large& a, const Large& b) noexcept {
    if (a.size != b.size) return a.size < b.size;
    for (std::size_t i = a.size; i-- > 0;) {
      if (a.words[i] != b.words[i]) return a.words[i] < b.words[i];
    }
    return false;
  }

 private:
  static constexpr int kWordBits = 32;
  std::size_t size = 0;  // without zeros at the top
  std::array<std::uint32_t, 544> words{};
};

struct Quotient {
  Large dividend;
  Large divisor;
  bool isNegative = false;
};

/// Of a text such as "-1.5e-3", with an exponent from -5000 to 5000, which the range of extended
/// precision is within; digits behind the sixtieth are beyond what a rounding to 64 binary digits
/// can tell.
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

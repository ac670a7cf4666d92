#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <vector>

#include "kit/order/wide_integer.h"

/// Writes numbers and texts as bytes, the same on every machine: 8 bytes a number, the lowest
/// first.
class ByteWriter {
 public:
  void operator()(std::uint64_t number) {
    constexpr unsigned kBitsOfByte = 8;
    for (unsigned i = 0; i < sizeof number; ++i) {
      bytes.push_back(static_cast<std::uint8_t>(number >> (kBitsOfByte * i)));
    }
  }
  void operator()(std::int64_t number) { (*this)(static_cast<std::uint64_t>(number)); }
  void operator()(WideInteger number) {
    const auto bits = static_cast<WideUnsigned>(number);
    (*this)(static_cast<std::uint64_t>(bits));
    (*this)(static_cast<std::uint64_t>(bits >> std::numeric_limits<std::uint64_t>::digits));
  }
  void operator()(double number) { (*this)(std::bit_cast<std::uint64_t>(number)); }
  void operator()(const std::string& text) {
    (*this)(static_cast<std::uint64_t>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
  }

  std::vector<std::uint8_t> bytes;
};

/// Reads them again. Behind the end there are zeros and empty texts, and IsShort tells.
class ByteReader {
 public:
  explicit ByteReader(std::span<const std::uint8_t> bytes) : bytes(bytes) {}

  [[nodiscard]] std::uint64_t Next() {
    constexpr unsigned kBitsOfByte = 8;
    std::uint64_t number = 0;
    const std::span<const std::uint8_t> taken = Take(sizeof number);
    for (std::size_t i = 0; i < taken.size(); ++i) {
      number |= static_cast<std::uint64_t>(taken[i]) << (kBitsOfByte * i);
    }
    return number;
  }
  /// A number of things that take at least `width` bytes each: 0 where so many can't follow.
  [[nodiscard]] std::size_t NextCount(std::size_t width) {
    const std::uint64_t count = Next();
    if (count <= bytes.size() / width) return static_cast<std::size_t>(count);
    isShort = true;
    return 0;
  }
  void operator()(std::int64_t& number) { number = static_cast<std::int64_t>(Next()); }
  void operator()(WideInteger& number) {
    const WideUnsigned low = Next();
    const WideUnsigned high = Next();
    number = static_cast<WideInteger>(high << std::numeric_limits<std::uint64_t>::digits | low);
  }
  void operator()(double& number) { number = std::bit_cast<double>(Next()); }
  void operator()(std::string& text) {
    const std::span<const std::uint8_t> letters = Take(NextCount(1));
    text.assign(letters.begin(), letters.end());
  }

  [[nodiscard]] bool IsShort() const noexcept { return isShort; }
  [[nodiscard]] bool IsAtEnd() const noexcept { return bytes.empty() && !isShort; }

 private:
  std::span<const std::uint8_t> Take(std::size_t count) {
    if (count > bytes.size()) {
      isShort = true;
      bytes = {};
      return {};
    }
    const std::span<const std::uint8_t> taken = bytes.first(count);
    bytes = bytes.subspan(count);
    return taken;
  }

  std::span<const std::uint8_t> bytes;
  bool isShort = false;
};

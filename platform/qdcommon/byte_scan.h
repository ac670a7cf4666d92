#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace QDXML_700 {

/// What the processor compares at once.
inline constexpr std::size_t kBytesAtOnce = 16;

/// Is any of so many bytes a control character but the line feed, no ASCII character, or one of
/// these? Left to itself the compiler compares them one by one.
template <char... kThese>
[[nodiscard]] bool HoldsAny(const char* bytes) noexcept {
  using Bytes = signed char __attribute__((vector_size(kBytesAtOnce)));  // negative from 0x80 on
  Bytes all;
  std::memcpy(&all, bytes, kBytesAtOnce);
  auto found = (all < ' ') & (all != '\n');
  ((found |= all == kThese), ...);
  const auto words = std::bit_cast<std::array<std::uint64_t, 2>>(found);
  return (words[0] | words[1]) != 0;
}

}  // namespace QDXML_700

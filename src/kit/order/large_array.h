#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>

#ifdef __linux__
#include <sys/mman.h>
#endif

struct FreeMemory {
  void operator()(void* memory) const noexcept { std::free(memory); }
};

/// Plain values in memory of their own, without a value at first.
template <typename Value>
using LargeArray = std::unique_ptr<Value[], FreeMemory>;

inline constexpr std::size_t kHugePage = std::size_t{2} << 20;  // bytes

/// Asks the system to map memory of at least one huge page in such pages: the first touch of a few
/// hundred megabytes in small ones costs more than sorting what stands in them. Where the advice is
/// not followed the memory works all the same.
inline void AdviseHugePages([[maybe_unused]] void* memory,
                            [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef __linux__
  // From the start of the page, where the notes of malloc stand: the system moves a mapping that
  // grows only as long as all of it was advised alike.
  constexpr std::size_t kPage = 4096;
  if (bytes < kHugePage) return;
  const std::size_t notes = reinterpret_cast<std::uintptr_t>(memory) % kPage;
  static_cast<void>(madvise(static_cast<char*>(memory) - notes, bytes + notes, MADV_HUGEPAGE));
#endif
}

/// Room for `count` values, in huge pages where it takes some. Throws std::bad_alloc.
template <typename Value>
[[nodiscard]] LargeArray<Value> MakeLargeArray(std::size_t count) {
  static_assert(std::is_trivially_default_constructible_v<Value>);
  static_assert(std::is_trivially_destructible_v<Value>);
  if (count > static_cast<std::size_t>(-1) / 2 / sizeof(Value)) throw std::bad_alloc();
  const std::size_t bytes = count * sizeof(Value);
  void* memory = nullptr;
  if (bytes < kHugePage) {
    memory = std::malloc(bytes + 1);  // never null for no bytes
  } else {
    const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
#ifdef __linux__
    memory = std::aligned_alloc(kHugePage, rounded);
#else
    memory = std::malloc(rounded);
#endif
    if (memory != nullptr) AdviseHugePages(memory, rounded);
  }
  if (memory == nullptr) throw std::bad_alloc();
  return LargeArray<Value>(static_cast<Value*>(memory));
}

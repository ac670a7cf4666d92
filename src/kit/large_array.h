#pragma once

#include <cstddef>
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

/// Room for `count` values. The system is asked to map it in huge pages: the first touch of a few
/// hundred megabytes in small pages costs more than sorting what stands in them. Throws
/// std::bad_alloc.
template <typename Value>
[[nodiscard]] LargeArray<Value> MakeLargeArray(std::size_t count) {
  static_assert(std::is_trivially_default_constructible_v<Value>);
  static_assert(std::is_trivially_destructible_v<Value>);
  constexpr std::size_t kHugePage = std::size_t{2} << 20;
  if (count > static_cast<std::size_t>(-1) / 2 / sizeof(Value)) throw std::bad_alloc();
  const std::size_t bytes = count * sizeof(Value);
  void* memory = nullptr;
  if (bytes < kHugePage) {
    memory = std::malloc(bytes + 1);  // never null for no bytes
  } else {
    const std::size_t rounded = (bytes + kHugePage - 1) / kHugePage * kHugePage;
    memory = std::aligned_alloc(kHugePage, rounded);
#ifdef __linux__
    // Advice; where it is not followed the memory works all the same.
    if (memory != nullptr) static_cast<void>(madvise(memory, rounded, MADV_HUGEPAGE));
#endif
  }
  if (memory == nullptr) throw std::bad_alloc();
  return LargeArray<Value>(static_cast<Value*>(memory));
}

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <type_traits>
#include <utility>

#include "kit/order/large_array.h"

/// Plain values side by side, further ones at the end. Unlike a vector's, its memory is made larger
/// by the system, which moves the pages of a large one instead of copying what is in them: at no
/// time is the list there twice.
template <typename Value>
class GrowingArray {
 public:
  GrowingArray() = default;
  GrowingArray(GrowingArray&& other) noexcept { *this = std::move(other); }
  GrowingArray& operator=(GrowingArray&& other) noexcept {
    values = std::move(other.values);
    count = std::exchange(other.count, 0);
    capacity = std::exchange(other.capacity, 0);
    return *this;
  }

  /// Throws std::bad_alloc and is as it was.
  void Add(Value value) {
    if (count == capacity) Grow(capacity == 0 ? kFirst : 2 * capacity);
    values[count++] = value;
  }
  /// Room for `further` values behind the last one, which become the list's with TakeOver. Throws
  /// std::bad_alloc and is as it was.
  [[nodiscard]] Value* MakeRoom(std::size_t further) {
    if (further > capacity - count) Grow(std::max(count + further, 2 * capacity));
    return end();
  }
  /// The first so many values that were written into the room.
  void TakeOver(std::size_t written) noexcept { count += written; }
  /// Throws std::bad_alloc.
  void Assign(std::size_t size, Value value) {
    if (size > capacity) Grow(size);
    for (count = 0; count < size; ++count) values[count] = value;
  }

  [[nodiscard]] std::size_t Size() const noexcept { return count; }
  [[nodiscard]] bool IsEmpty() const noexcept { return count == 0; }
  [[nodiscard]] Value operator[](std::size_t place) const noexcept { return values[place]; }
  [[nodiscard]] Value* begin() noexcept { return values.get(); }
  [[nodiscard]] Value* end() noexcept { return values.get() + count; }
  [[nodiscard]] const Value* begin() const noexcept { return values.get(); }
  [[nodiscard]] const Value* end() const noexcept { return values.get() + count; }

 private:
  static constexpr std::size_t kFirst = 1024;
  static_assert(std::is_trivially_copyable_v<Value>);

  void Grow(std::size_t size) {
    if (size > static_cast<std::size_t>(-1) / 2 / sizeof(Value)) throw std::bad_alloc();
    void* grown = std::realloc(values.get(), size * sizeof(Value));
    if (grown == nullptr) throw std::bad_alloc();
    static_cast<void>(values.release());
    values.reset(static_cast<Value*>(grown));
    capacity = size;
    AdviseHugePages(grown, size * sizeof(Value));
  }

  LargeArray<Value> values;
  std::size_t count = 0;
  std::size_t capacity = 0;
};

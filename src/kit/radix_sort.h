#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/large_array.h"

/// The order of records ascending by a double, equal values in the order of their records.
///
/// A negative zero equals zero, every not-a-number stands after infinity, the mark of a missing
/// value is a value like others. Memory: 12 bytes a record while values are added, 28 at most while
/// the order is made, of which the order keeps 4.
class RadixSorter {
 public:
  /// Room for `capacity` values, at most 2^32 - 1. Throws std::bad_alloc.
  explicit RadixSorter(std::size_t capacity);

  /// The value of the next record.
  void Add(double value) noexcept {
    const std::uint64_t key = OrderedBits(value);
    if (size == 0) firstKey = key;
    varying |= key ^ firstKey;
    entries[size] = Entry{static_cast<std::uint32_t>(key), static_cast<std::uint32_t>(key >> 32),
                          static_cast<std::uint32_t>(size)};
    ++size;
  }

  /// The record numbers, from 0. Empties the sorter. Throws std::bad_alloc.
  [[nodiscard]] std::vector<std::uint32_t> TakeOrder();

  /// Bits that compare as unsigned integers as the doubles compare.
  [[nodiscard]] static std::uint64_t OrderedBits(double value) noexcept {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    if (value != value) return ~std::uint64_t{0};
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(value + 0.0);  // -0 + 0 is 0
    return (bits & kSign) != 0 ? ~bits : bits | kSign;
  }

 private:
  /// A key in two halves beside the record number: 12 bytes where a whole key would take 16.
  struct Entry {
    std::uint32_t low;
    std::uint32_t high;
    std::uint32_t number;

    [[nodiscard]] std::uint64_t Key() const noexcept {
      return static_cast<std::uint64_t>(high) << 32 | low;
    }
  };

  static Entry* Sort(Entry* entries, Entry* spare, std::size_t count, std::uint64_t varying);
  static void FinishRuns(Entry* entries, Entry* spare, std::size_t count, int shift);
  static void InsertionSort(Entry* entries, std::size_t count);

  LargeArray<Entry> entries;
  std::size_t size = 0;
  std::uint64_t firstKey = 0;
  std::uint64_t varying = 0;  // bits in which some key differs from the first
};

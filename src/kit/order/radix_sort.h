#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/order/interruption.h"
#include "kit/order/large_array.h"

/// Bits that compare as unsigned integers as the doubles compare: a negative zero equals zero,
/// every not-a-number stands after infinity, the mark of a missing value is a value like others.
[[nodiscard]] inline std::uint64_t OrderedBits(double value) noexcept {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  if (value != value) return ~std::uint64_t{0};
  const std::uint64_t bits = std::bit_cast<std::uint64_t>(value + 0.0);  // -0 + 0 is 0
  return bits ^ ((0 - (bits >> 63)) | kSign);  // without a branch: signs come at random
}

/// The double of such bits, but for the sign of a zero and for what a not-a-number holds.
[[nodiscard]] inline double ValueOfOrderedBits(std::uint64_t bits) noexcept {
  constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
  return std::bit_cast<double>(bits ^ (((bits >> 63) - 1) | kSign));
}

/// A key alone.
struct PlainKey {
  std::uint64_t key;
  [[nodiscard]] std::uint64_t Key() const noexcept { return key; }
};

/// A key in two halves beside a record number: 12 bytes where a whole key would take 16.
struct NumberedKey {
  std::uint32_t low;
  std::uint32_t high;
  std::uint32_t number;

  NumberedKey() = default;
  NumberedKey(std::uint64_t key, std::size_t number) noexcept
      : low(static_cast<std::uint32_t>(key)),
        high(static_cast<std::uint32_t>(key >> 32)),
        number(static_cast<std::uint32_t>(number)) {}
  [[nodiscard]] std::uint64_t Key() const noexcept {
    return static_cast<std::uint64_t>(high) << 32 | low;
  }
};

/// The buckets that a sort puts its entries into first: by the upper bits in which keys differ,
/// each a small part of the entries wherever these bits tell them apart.
class RadixBuckets {
 public:
  /// `differing`: bits in which keys may differ, the highest one that they do among them. Throws
  /// std::bad_alloc.
  void StartCounting(std::size_t count, std::uint64_t differing);
  /// First look at a key.
  void Count(std::uint64_t key) noexcept { ++cells[CellOf(key)]; }
  /// Throws std::bad_alloc.
  void StartPlacing();
  /// Second look: where the entry goes.
  [[nodiscard]] std::size_t PlaceOf(std::uint64_t key) noexcept {
    return ends[cells[CellOf(key)]]++;
  }
  /// After the last entry is in its place: where each bucket ends.
  [[nodiscard]] const std::vector<std::uint32_t>& Ends() const noexcept { return ends; }

 private:
  [[nodiscard]] std::size_t CellOf(std::uint64_t key) const noexcept {
    return key >> shift & (cells.size() - 1);
  }

  int shift = 0;
  std::size_t count = 0;
  std::vector<std::uint32_t> cells;  // the count by upper bits, then the bucket
  std::vector<std::uint32_t> ends;
};

/// Sorts each bucket, equal keys in the order in which they stand. Throws std::bad_alloc.
template <typename Entry>
void SortBuckets(Entry* entries, const std::vector<std::uint32_t>& ends);
extern template void SortBuckets(PlainKey* entries, const std::vector<std::uint32_t>& ends);
extern template void SortBuckets(NumberedKey* entries, const std::vector<std::uint32_t>& ends);

/// Entries, at most 2^32 - 1, ascending by their keys, equal ones in the order in which they come.
/// `entries` has Count() of them, DifferingBits() as RadixBuckets takes them, ForEachKey(take) and
/// ForEachEntry(take), which are gone through once, so that nothing but the result is stored where
/// the keys are told apart well; at worst a second array of its size is. Throws std::bad_alloc.
template <typename Entry, typename Entries>
[[nodiscard]] LargeArray<Entry> SortEntries(const Entries& entries) {
  LargeArray<Entry> sorted = MakeLargeArray<Entry>(entries.Count());
  if (entries.Count() == 0) return sorted;
  RadixBuckets buckets;
  buckets.StartCounting(entries.Count(), entries.DifferingBits());
  entries.ForEachKey([&buckets](std::uint64_t key) { buckets.Count(key); });
  buckets.StartPlacing();
  Entry* places = sorted.get();
  entries.ForEachEntry(
      [&buckets, places](const Entry& entry) { places[buckets.PlaceOf(entry.Key())] = entry; });
  SortBuckets(places, buckets.Ends());
  return sorted;
}

/// Entries for SortEntries that a function of their place gives.
template <typename EntryAt>
class EntriesByPlace {
 public:
  EntriesByPlace(std::size_t count, EntryAt& entryAt) noexcept : count(count), entryAt(entryAt) {}
  [[nodiscard]] std::size_t Count() const noexcept { return count; }
  [[nodiscard]] std::uint64_t DifferingBits() const {
    const std::uint64_t first = entryAt(0).Key();
    std::uint64_t bits = 0;
    ForEachKey([&bits, first](std::uint64_t key) { bits |= key ^ first; });
    return bits;
  }
  template <typename Take>
  void ForEachKey(Take take) const {
    ForEachPlace([&](std::size_t place) { take(entryAt(place).Key()); });
  }
  template <typename Take>
  void ForEachEntry(Take take) const {
    ForEachPlace([&](std::size_t place) { take(entryAt(place)); });
  }

 private:
  template <typename Use>
  void ForEachPlace(Use use) const {
    constexpr std::size_t kBetweenChecks = std::size_t{1} << 16;
    for (std::size_t place = 0; place < count;) {
      Interruption::Check();
      const std::size_t end = std::min(count, place + kBetweenChecks);
      for (; place < end; ++place) use(place);
    }
  }

  std::size_t count;
  EntryAt& entryAt;
};

/// `count` entries, where `entryAt(place)` is asked three times for each place, in ascending order.
template <typename Entry, typename EntryAt>
[[nodiscard]] LargeArray<Entry> SortedEntries(std::size_t count, EntryAt entryAt) {
  return SortEntries<Entry>(EntriesByPlace<EntryAt>(count, entryAt));
}

/// Sorts at most 2^32 - 1 keys where they stand, in little more than their own memory. Throws
/// std::bad_alloc, and leaves the keys in some order.
void SortKeys(PlainKey* keys, std::size_t count);

/// Numbers of records, 4 bytes each, in some order.
class RecordOrder {
 public:
  RecordOrder() = default;
  /// The numbers of the entries; takes over their memory and gives back what it does not need.
  RecordOrder(LargeArray<NumberedKey> entries, std::size_t count) noexcept;

  [[nodiscard]] std::size_t size() const noexcept { return count; }
  [[nodiscard]] std::uint32_t operator[](std::size_t place) const noexcept {
    return numbers[place];
  }
  [[nodiscard]] const std::uint32_t* begin() const noexcept { return numbers.get(); }
  [[nodiscard]] const std::uint32_t* end() const noexcept { return numbers.get() + count; }

 private:
  LargeArray<std::uint32_t> numbers;
  std::size_t count = 0;
};

/// The places from 0 to `count` ascending by `valueAt(place)`, a double; equal values in the order
/// of their places. Memory: 12 bytes a place, of which the order keeps 4. Throws std::bad_alloc.
template <typename ValueAt>
[[nodiscard]] RecordOrder AscendingOrder(std::size_t count, ValueAt valueAt) {
  return RecordOrder(SortedEntries<NumberedKey>(count,
                                                [&valueAt](std::size_t place) {
                                                  return NumberedKey(OrderedBits(valueAt(place)),
                                                                     place);
                                                }),
                     count);
}

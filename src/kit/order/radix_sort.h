#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <vector>

#include "kit/order/interruption.h"
#include "kit/order/large_array.h"
#include "kit/order/threads.h"

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

/// A key without its upper bits, which a KeyLead tells, and what fits their place.
struct TaggedKey {
  static constexpr int kTagBits = 8;

  std::uint64_t bits;

  TaggedKey() = default;
  TaggedKey(std::uint64_t key, std::uint32_t tag) noexcept : bits(key << kTagBits | tag) {}
  [[nodiscard]] std::uint64_t Key() const noexcept { return bits >> kTagBits; }
  [[nodiscard]] std::uint32_t Tag() const noexcept {
    return static_cast<std::uint32_t>(bits & ((std::uint64_t{1} << kTagBits) - 1));
  }
};

/// The upper bits that keys of a sort share, those behind the lead before it up to `end`.
struct KeyLead {
  std::size_t end;
  std::uint64_t bits;  // where they stand in the key
};

/// The buckets that a sort puts its entries into first: by the upper bits in which keys differ,
/// each a small part of the entries wherever these bits tell them apart. The entries are gone
/// through in parts, which threads take side by side.
class RadixBuckets {
 public:
  /// Counts the keys of a part.
  class Counter {
   public:
    Counter(std::uint32_t* cells, int shift, std::size_t mask) noexcept
        : cells(cells), shift(shift), mask(mask) {}
    void Take(std::uint64_t key) const noexcept { ++cells[key >> shift & mask]; }

   private:
    std::uint32_t* cells;
    int shift;
    std::size_t mask;
  };
  /// Tells where the entries of a part go, in their order.
  class Placer {
   public:
    Placer(const std::uint16_t* bucketOfCell, std::uint32_t* next, int shift,
           std::size_t mask) noexcept
        : bucketOfCell(bucketOfCell), next(next), shift(shift), mask(mask) {}
    [[nodiscard]] std::size_t PlaceOf(std::uint64_t key) const noexcept {
      return next[bucketOfCell[key >> shift & mask]]++;
    }
    /// Where the next entry of a bucket goes.
    [[nodiscard]] std::size_t NextIn(std::size_t bucket) const noexcept { return next[bucket]; }

   private:
    const std::uint16_t* bucketOfCell;
    std::uint32_t* next;
    int shift;
    std::size_t mask;
  };

  /// Of so many entries: one part for each thread, as long as they are worth it. No bucket holds
  /// keys that differ in some of the `leadBits` upper ones, at most 8. Throws std::bad_alloc.
  explicit RadixBuckets(std::size_t count, int leadBits = 0);
  [[nodiscard]] std::size_t PartCount() const noexcept { return partCount; }
  /// Where a part begins; of the one behind the last the count.
  [[nodiscard]] std::size_t PartBegin(std::size_t part) const noexcept {
    return std::min(part * partSize, count);
  }
  /// `differing`: bits in which keys may differ from `key`, the highest one that they do among
  /// them. Throws std::bad_alloc.
  void StartCounting(std::uint64_t differing, std::uint64_t key);
  /// First look at the keys of a part.
  [[nodiscard]] Counter CounterOf(std::size_t part) noexcept {
    return {&cells[part * cellCount], shift, cellCount - 1};
  }
  /// When all are counted. Throws std::bad_alloc.
  void StartPlacing();
  /// Second look at the entries of a part. That of the first part alone would fill each bucket from
  /// its start to its end.
  [[nodiscard]] Placer PlacerOf(std::size_t part) noexcept {
    return {bucketOfCell.data(), nextPlaces[part].data(), shift, cellCount - 1};
  }
  /// Where each bucket ends; known before the entries are placed.
  [[nodiscard]] const std::vector<std::uint32_t>& Ends() const noexcept { return ends; }
  /// The upper bits that are kept apart, ascending. Throws std::bad_alloc.
  [[nodiscard]] std::vector<KeyLead> Leads() const;

  /// Parts are gone through in pieces of so many entries.
  static constexpr std::size_t kPiece = std::size_t{1} << 16;

 private:
  [[nodiscard]] std::vector<std::uint32_t> JoinedCells() const;
  void FormBuckets(const std::vector<std::uint32_t>& counts);
  void DividePlaces();
  [[nodiscard]] std::uint64_t LeadMask() const noexcept { return ~(~std::uint64_t{0} >> leadBits); }

  std::size_t count;
  std::size_t partCount;
  std::size_t partSize;
  int leadBits;
  int shift = 0;
  std::uint64_t common = 0;  // the bits of every key above those of the cells
  std::size_t cellCount = 1;
  std::vector<std::uint32_t> cells;         // of each part: counts by upper bits
  std::vector<std::uint16_t> bucketOfCell;  // there are some thousand
  std::vector<std::uint32_t> firstCells;    // by bucket
  std::vector<std::uint32_t> ends;
  std::vector<std::vector<std::uint32_t>> nextPlaces;  // of each part by bucket
};

/// Told how far a sort is, from 0 to 1, on the thread that sorts; null for nobody.
using TellSorted = void (*)(double part);

/// Sorts each bucket, equal keys in the order in which they stand. Throws std::bad_alloc.
template <typename Entry>
void SortBuckets(Entry* entries, const std::vector<std::uint32_t>& ends, TellSorted tell = nullptr);
extern template void SortBuckets(PlainKey* entries, const std::vector<std::uint32_t>& ends,
                                 TellSorted tell);
extern template void SortBuckets(NumberedKey* entries, const std::vector<std::uint32_t>& ends,
                                 TellSorted tell);
extern template void SortBuckets(TaggedKey* entries, const std::vector<std::uint32_t>& ends,
                                 TellSorted tell);

// Shares of a sort's time: counting, placing and sorting the buckets.
inline constexpr double kSortCounted = 0.2;
inline constexpr double kSortPlaced = 0.6;

/// Gives each part of the entries to a thread: use(part, begin, end) for its pieces in order.
template <typename Use>
void ForEachPart(const RadixBuckets& buckets, TellSorted tell, double from, double to, Use use) {
  Threads::ForEach(buckets.PartCount(), [&](std::size_t part) {
    const std::size_t first = buckets.PartBegin(part);
    const std::size_t last = buckets.PartBegin(part + 1);
    for (std::size_t begin = first; begin < last; begin += RadixBuckets::kPiece) {
      const std::size_t end = std::min(begin + RadixBuckets::kPiece, last);
      use(part, begin, end);
      if (tell == nullptr) continue;
      tell(from +
           (to - from) * static_cast<double>(end - first) / static_cast<double>(last - first));
    }
  });
}

/// Touches each huge page of an array. The system clears a page when it is touched first, which
/// takes about a millisecond; the first entries that are placed would touch all of them, and a
/// cancel wait for that.
template <typename Entry>
void TouchPages(Entry* entries, std::size_t count) {
  constexpr std::size_t kStep = kHugePage / sizeof(Entry);
  const std::size_t pages = count / kStep;
  const std::size_t parts = std::min(Threads::PartsOf(count), pages);
  Threads::ForEach(parts, [&](std::size_t part) {
    for (std::size_t page = pages * part / parts; page < pages * (part + 1) / parts; ++page) {
      Interruption::Check();
      *reinterpret_cast<volatile char*>(entries + page * kStep) = 0;
    }
  });
}

template <typename Entry>
struct SortedKeys {
  LargeArray<Entry> entries;
  std::vector<KeyLead> leads;  // of keys without their upper bits
};

/// Entries, at most 2^32 - 1, ascending by their keys, equal ones in the order in which they come.
/// `entries` has Count() of them, FirstKey(), DifferingBits() as RadixBuckets takes them, and, for
/// pieces that several threads go through once, ForEachKey(begin, end, take) and
/// ForEachEntry(begin, end, take) for each key with its entry, so that nothing but the result is
/// stored where the keys are told apart well; at worst a second array of its size is. Throws
/// std::bad_alloc.
template <typename Entry, typename Entries>
[[nodiscard]] SortedKeys<Entry> SortEntries(const Entries& entries, TellSorted tell = nullptr) {
  SortedKeys<Entry> sorted;
  sorted.entries = MakeLargeArray<Entry>(entries.Count());
  if (entries.Count() == 0) return sorted;
  constexpr bool kHasLeads = std::is_same_v<Entry, TaggedKey>;
  RadixBuckets buckets(entries.Count(), kHasLeads ? TaggedKey::kTagBits : 0);
  buckets.StartCounting(entries.DifferingBits(), entries.FirstKey());
  ForEachPart(buckets, tell, 0.0, kSortCounted,
              [&](std::size_t part, std::size_t begin, std::size_t end) {
                const RadixBuckets::Counter counter = buckets.CounterOf(part);
                entries.ForEachKey(begin, end, [counter](std::uint64_t key) { counter.Take(key); });
              });
  buckets.StartPlacing();
  if constexpr (kHasLeads) sorted.leads = buckets.Leads();
  Entry* places = sorted.entries.get();
  TouchPages(places, entries.Count());
  ForEachPart(buckets, tell, kSortCounted, kSortPlaced,
              [&](std::size_t part, std::size_t begin, std::size_t end) {
                const RadixBuckets::Placer placer = buckets.PlacerOf(part);
                entries.ForEachEntry(begin, end,
                                     [placer, places](std::uint64_t key, const Entry& entry) {
                                       places[placer.PlaceOf(key)] = entry;
                                     });
              });
  SortBuckets(places, buckets.Ends(), tell);
  return sorted;
}

/// Entries for SortEntries that a function of their place gives.
template <typename EntryAt>
class EntriesByPlace {
 public:
  EntriesByPlace(std::size_t count, EntryAt& entryAt) noexcept : count(count), entryAt(entryAt) {}
  [[nodiscard]] std::size_t Count() const noexcept { return count; }
  [[nodiscard]] std::uint64_t FirstKey() const { return entryAt(0).Key(); }
  [[nodiscard]] std::uint64_t DifferingBits() const {
    const std::uint64_t first = FirstKey();
    std::atomic<std::uint64_t> differing{0};
    const RadixBuckets parts(count);
    ForEachPart(parts, nullptr, 0.0, 0.0, [&](std::size_t, std::size_t begin, std::size_t end) {
      std::uint64_t bits = 0;
      ForEachKey(begin, end, [&bits, first](std::uint64_t key) { bits |= key ^ first; });
      differing |= bits;
    });
    return differing;
  }
  template <typename Take>
  void ForEachKey(std::size_t begin, std::size_t end, Take take) const {
    Interruption::Check();
    for (std::size_t place = begin; place < end; ++place) take(entryAt(place).Key());
  }
  template <typename Take>
  void ForEachEntry(std::size_t begin, std::size_t end, Take take) const {
    Interruption::Check();
    for (std::size_t place = begin; place < end; ++place) {
      const auto entry = entryAt(place);
      take(entry.Key(), entry);
    }
  }

 private:
  std::size_t count;
  EntryAt& entryAt;
};

/// `count` entries, where `entryAt(place)` is asked three times for each place, by several threads.
template <typename Entry, typename EntryAt>
[[nodiscard]] LargeArray<Entry> SortedEntries(std::size_t count, EntryAt entryAt) {
  return SortEntries<Entry>(EntriesByPlace<EntryAt>(count, entryAt)).entries;
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

#include "kit/radix_sort.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <utility>

// A radix sort from the lowest digit up: each pass puts the entries into the buckets of one digit
// and keeps the order of the pass before inside a bucket, so that after the highest digit the
// entries stand by all digits, equal ones as they were added.
//
// Each pass moves all entries through memory, which is what it costs. So only the 32 bits below the
// highest bit in which keys differ are sorted this way, in four passes at most: measurements differ
// in these, and what follows them is settled inside short runs of equal upper bits, in the fastest
// cache. A long run, as of values that lie close together while a missing value stretches the
// range, is sorted by the same procedure on its own bits. A digit that is the same in every key
// costs nothing, and whole numbers, whose low bits are 0, have no second step.
//
// Reference: D. E. Knuth, The Art of Computer Programming 3, 5.2.5.

namespace {

constexpr int kDigitBits = 8;
constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
constexpr int kDigits = 4;
constexpr std::size_t kShortRun = 32;  // up to here comparing is quicker than counting

std::size_t DigitOf(std::uint64_t bits, int digit) noexcept {
  return bits >> (digit * kDigitBits) & (kBuckets - 1);
}

}  // namespace

RadixSorter::RadixSorter(std::size_t capacity) : entries(MakeLargeArray<Entry>(capacity)) {}

std::vector<std::uint32_t> RadixSorter::TakeOrder() {
  LargeArray<Entry> spare;
  if (varying != 0) spare = MakeLargeArray<Entry>(size);
  const Entry* sorted = Sort(entries.get(), spare.get(), size, varying);
  std::vector<std::uint32_t> order(size);
  for (std::size_t i = 0; i < size; ++i) order[i] = sorted[i].number;
  entries.reset();
  size = 0;
  return order;
}

/// Sorts the entries, whose keys differ in the given bits; answers which of the two places they
/// stand in then.
RadixSorter::Entry* RadixSorter::Sort(Entry* entries, Entry* spare, std::size_t count,
                                      std::uint64_t varying) {
  const int shift = std::max(0, static_cast<int>(std::bit_width(varying)) - kDigits * kDigitBits);
  std::array<std::array<std::uint32_t, kBuckets>, kDigits> places{};
  if (varying != 0) {
    for (std::size_t i = 0; i < count; ++i) {
      const std::uint64_t bits = entries[i].Key() >> shift;
      for (int digit = 0; digit < kDigits; ++digit) {
        ++places[static_cast<std::size_t>(digit)][DigitOf(bits, digit)];
      }
    }
  }
  for (int digit = 0; digit < kDigits; ++digit) {
    if (DigitOf(varying >> shift, digit) == 0) continue;
    auto& place = places[static_cast<std::size_t>(digit)];
    std::exclusive_scan(place.begin(), place.end(), place.begin(), 0U);
    for (std::size_t i = 0; i < count; ++i) {
      const Entry entry = entries[i];
      spare[place[DigitOf(entry.Key() >> shift, digit)]++] = entry;
    }
    std::swap(entries, spare);
  }
  if ((varying & ((std::uint64_t{1} << shift) - 1)) != 0) FinishRuns(entries, spare, count, shift);
  return entries;
}

/// Sorts each run of entries whose keys agree from bit `shift` up.
void RadixSorter::FinishRuns(Entry* entries, Entry* spare, std::size_t count, int shift) {
  std::size_t end = 0;
  for (std::size_t begin = 0; begin < count; begin = end) {
    const std::uint64_t key = entries[begin].Key();
    std::uint64_t differing = 0;
    for (end = begin + 1; end < count; ++end) {
      const std::uint64_t difference = entries[end].Key() ^ key;
      if (difference >> shift != 0) break;
      differing |= difference;
    }
    if (differing == 0) continue;
    if (end - begin <= kShortRun) {
      InsertionSort(entries + begin, end - begin);
      continue;
    }
    const Entry* sorted = Sort(entries + begin, spare + begin, end - begin, differing);
    if (sorted != entries + begin) std::copy_n(sorted, end - begin, entries + begin);
  }
}

void RadixSorter::InsertionSort(Entry* entries, std::size_t count) {
  for (std::size_t i = 1; i < count; ++i) {
    const Entry entry = entries[i];
    std::size_t place = i;
    for (; place > 0 && entries[place - 1].Key() > entry.Key(); --place) {
      entries[place] = entries[place - 1];
    }
    entries[place] = entry;
  }
}

#include "kit/radix_sort.h"

#include <numeric>
#include <utility>

// A radix sort from the lowest digit up: each pass puts the entries into the buckets of one digit
// and keeps the order of the pass before inside a bucket, so that after the highest digit the
// entries stand by the whole key, equal keys as they were added. The sizes of all buckets are
// counted while the values come in, and a digit that is the same in every key costs nothing: whole
// numbers and codes, whose low bits are 0, need a third of the passes. Reference: D. E. Knuth, The
// Art of Computer Programming 3, 5.2.5.

RadixSorter::RadixSorter(std::size_t capacity)
    : entries(std::make_unique_for_overwrite<Entry[]>(capacity)) {}

std::vector<std::size_t> RadixSorter::VaryingDigits() const {
  std::vector<std::size_t> digits;
  for (std::size_t digit = 0; size > 0 && digit < kDigits; ++digit) {
    if (counts[digit][DigitOf(entries[0].Key(), digit)] != size) digits.push_back(digit);
  }
  return digits;
}

std::vector<std::uint32_t> RadixSorter::TakeOrder() {
  std::vector<std::uint32_t> order(size);
  const std::vector<std::size_t> digits = VaryingDigits();
  if (digits.empty()) std::iota(order.begin(), order.end(), 0U);

  std::unique_ptr<Entry[]> target;
  if (digits.size() > 1) target = std::make_unique_for_overwrite<Entry[]>(size);
  for (const std::size_t digit : digits) {
    Counts places;
    std::exclusive_scan(counts[digit].begin(), counts[digit].end(), places.begin(), 0U);
    const bool isLast = digit == digits.back();
    for (std::size_t i = 0; i < size; ++i) {
      const Entry entry = entries[i];
      const std::uint32_t place = places[DigitOf(entry.Key(), digit)]++;
      if (isLast) {
        order[place] = entry.number;
      } else {
        target[place] = entry;
      }
    }
    std::swap(entries, target);
  }
  entries.reset();
  size = 0;
  return order;
}

#include "kit/comparisons/range_successes.h"

#include <bit>

#include "kit/order/interruption.h"

RangeSuccesses::RangeSuccesses(std::size_t fieldCount)
    : fieldCount(fieldCount), sums(fieldCount * fieldCount) {}

void RangeSuccesses::Start(std::size_t recordCount, const std::int32_t* recordWeights) {
  weights = recordWeights;
  wordCount = (recordCount + kWordBits - 1) / kWordBits;
  bits.assign(fieldCount * wordCount, 0);
}

std::int64_t RangeSuccesses::WeightOfBoth(std::size_t place, std::size_t other) const noexcept {
  const std::uint64_t* own = bits.data() + place * wordCount;
  const std::uint64_t* others = bits.data() + other * wordCount;
  std::int64_t sum = 0;
  for (std::size_t word = 0; word < wordCount; ++word) {
    std::uint64_t both = own[word] & others[word];
    if (weights == nullptr) {
      sum += std::popcount(both);
      continue;
    }
    const std::int32_t* ofWord = weights + word * kWordBits;
    for (; both != 0; both &= both - 1) sum += ofWord[std::countr_zero(both)];
  }
  return sum;
}

void RangeSuccesses::CountPairs() {
  for (std::size_t place = 0; place < fieldCount; ++place) {
    Interruption::Check();
    WideInteger* row = sums.data() + place * fieldCount;
    for (std::size_t other = place; other < fieldCount; ++other) {
      row[other] += WeightOfBoth(place, other);
    }
  }
}

void RangeSuccesses::Finish() {
  // A range has the pairs of the two that lack one of its ends, those of both but once, and twice
  // the pair of the ends.
  for (std::size_t first = fieldCount; first-- > 0;) {
    Interruption::Check();
    WideInteger* own = sums.data() + first * fieldCount;
    const WideInteger* without = own + fieldCount;
    for (std::size_t last = first + 1; last < fieldCount; ++last) {
      const WideInteger inner = first + 1 < last ? without[last - 1] : 0;
      own[last] = 2 * own[last] + own[last - 1] + without[last] - inner;
    }
  }
}

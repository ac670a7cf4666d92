#include "kit/comparisons/range_medians.h"

#include <algorithm>
#include <numeric>
#include <span>

#include "kit/order/interruption.h"
#include "kit/order/radix_sort.h"

namespace {

constexpr std::size_t kMostCells = std::size_t{1} << 22;
constexpr std::size_t kFewestInBlock = 16;

}  // namespace

RangeMedians::RangeMedians(const std::vector<const SortedSample*>& samples) {
  ListValues(samples);
  CountBlocks(samples.size());
  SumSquares(samples.size());
}

void RangeMedians::ListValues(const std::vector<const SortedSample*>& samples) {
  std::vector<Entry> listed;
  for (std::size_t place = 0; place < samples.size(); ++place) {
    const SortedSample& sample = *samples[place];
    for (std::size_t i = 0; i < sample.Values().size(); ++i) {
      listed.push_back(
          {sample.Values()[i], sample.CountBefore(i + 1) - sample.CountBefore(i), place});
    }
  }
  const RecordOrder order =
      AscendingOrder(listed.size(), [&listed](std::size_t i) { return listed[i].value; });
  entries.reserve(listed.size());
  for (const std::uint32_t i : order) entries.push_back(listed[i]);
}

void RangeMedians::CountBlocks(std::size_t sampleCount) {
  const std::size_t mostBlocks = kMostCells / (sampleCount + 1) + 1;
  blockSize = std::max(entries.size() / mostBlocks + 1, kFewestInBlock);
  blockCount = entries.size() / blockSize + 1;
  const std::size_t columns = blockCount + 1;
  before.assign((sampleCount + 1) * columns, 0);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    before[(entries[i].place + 1) * columns + i / blockSize + 1] += entries[i].weight;
  }
  for (std::size_t row = 1; row <= sampleCount; ++row) {
    Interruption::Check();
    std::int64_t* own = before.data() + row * columns;
    std::partial_sum(own, own + columns, own);
    for (std::size_t at = 0; at < columns; ++at) own[at] += own[at - columns];
  }
}

void RangeMedians::SumSquares(std::size_t sampleCount) {
  const std::size_t columns = blockCount + 1;
  inside.assign(sampleCount, 0);
  squares.assign(before.size(), 0.0);
  for (std::size_t place = 0; place < sampleCount; ++place) {
    Interruption::Check();
    const auto size = static_cast<double>(SizeOf(place));
    const double* last = squares.data() + place * columns;
    for (std::size_t at = 0; at < columns; ++at) {
      const auto upTo = static_cast<double>(Before({place, place}, at));
      squares[(place + 1) * columns + at] = last[at] + upTo * upTo / size;
    }
  }
}

RangeMedians::Halves RangeMedians::Halve(const SampleRange& range) {
  const std::int64_t total = Before(range, blockCount);
  const std::int64_t lower = total / 2 + total % 2;
  const std::int64_t upper = total / 2 + 1;
  while (Before(range, block) >= lower) --block;
  while (Before(range, block + 1) < lower) ++block;

  std::int64_t upTo = Before(range, block);
  double lowerMiddle = 0.0;
  bool isFound = false;
  for (std::size_t i = block * blockSize; i < entries.size(); ++i) {
    const Entry& entry = entries[i];
    if (entry.place < range.first || entry.place > range.last) continue;
    if (isFound && entry.value > lowerMiddle) {
      const bool isBetween = upTo < upper;
      return {isBetween ? std::midpoint(lowerMiddle, entry.value) : lowerMiddle, upTo,
              Squares(range, i)};
    }
    upTo += entry.weight;
    if (!isFound && upTo >= lower) {
      isFound = true;
      lowerMiddle = entry.value;
    }
  }
  return {lowerMiddle, upTo, Squares(range, entries.size())};
}

double RangeMedians::Squares(const SampleRange& range, std::size_t end) {
  const std::size_t columns = blockCount + 1;
  const std::size_t at = end / blockSize;  // ties may end far behind the block of the median
  double sum = squares[(range.last + 1) * columns + at] - squares[range.first * columns + at];
  const auto entriesInside = std::span(entries).subspan(at * blockSize, end - at * blockSize);
  for (const Entry& entry : entriesInside) {
    if (entry.place < range.first || entry.place > range.last) continue;
    const auto upTo =
        static_cast<double>(Before({entry.place, entry.place}, at) + inside[entry.place]);
    const auto weight = static_cast<double>(entry.weight);
    sum += weight * (2.0 * upTo + weight) / static_cast<double>(SizeOf(entry.place));
    inside[entry.place] += entry.weight;
  }
  for (const Entry& entry : entriesInside) inside[entry.place] = 0;
  return sum;
}

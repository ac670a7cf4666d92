#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/order/sorted_sample.h"

/// The medians of samples taken together, for every range of neighbouring samples.
///
/// All values stand in one ascending list, cut in blocks. A table tells for each block the weight
/// that lies before it in the first 0, 1, ... samples, and so in any range: a median takes a look
/// for its block and a walk within it. Another has the sums that a chi-square of the range needs.
/// The blocks are such that a table fills a few megabytes however many samples there are. Ranges
/// whose medians lie near each other are best asked for one after the other.
class RangeMedians {
 public:
  struct Halves {
    double median;      ///< as MedianOf has it
    std::int64_t upTo;  ///< weight of the range's values at or below it
    double squares;     ///< sum of u^2 / n over the samples, u of whose n units lie there
  };

  /// Values of all samples together: at most 2^32 - 1. Throws std::bad_alloc.
  explicit RangeMedians(const std::vector<const SortedSample*>& samples);
  /// The range has a value.
  [[nodiscard]] Halves Halve(const SampleRange& range);

 private:
  struct Entry {
    double value;
    std::int64_t weight;
    std::size_t place;  // its sample
  };

  void ListValues(const std::vector<const SortedSample*>& samples);
  void CountBlocks(std::size_t sampleCount);
  void SumSquares(std::size_t sampleCount);
  /// Weight of the range before a block.
  [[nodiscard]] std::int64_t Before(const SampleRange& range, std::size_t at) const noexcept {
    const std::size_t columns = blockCount + 1;
    return before[(range.last + 1) * columns + at] - before[range.first * columns + at];
  }
  [[nodiscard]] std::int64_t SizeOf(std::size_t place) const noexcept {
    return Before({place, place}, blockCount);
  }
  /// Of the entries before `end`.
  [[nodiscard]] double Squares(const SampleRange& range, std::size_t end);

  std::vector<Entry> entries;  // ascending by value
  std::size_t blockSize = 1;
  std::size_t blockCount = 0;
  std::vector<std::int64_t> before;  // row: the first samples, column: the block; with both ends
  std::vector<double> squares;       // likewise: sums of u^2 / n
  std::vector<std::int64_t> inside;  // by sample: weight found in a block; 0 between two ranges
  std::size_t block = 0;             // of the median before
};

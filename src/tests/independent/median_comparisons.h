#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "kit/comparisons/multiple_comparisons.h"
#include "kit/comparisons/range_medians.h"
#include "kit/order/sorted_sample.h"

/// What pairs or ranges of groups come to in a median test. A pair or range is parted at its own
/// median, or all are at a given one.
class MedianComparisons {
 public:
  MedianComparisons(std::size_t groupCount, std::optional<double> givenMedian)
      : samples(groupCount), givenMedian(givenMedian) {}

  /// Values of a group ascend. Throws std::bad_alloc.
  void Add(double x, std::int64_t weight, std::size_t group) { samples[group].Add(x, weight); }

  // After the last value:
  [[nodiscard]] double MedianOfGroup(std::size_t group) const;
  [[nodiscard]] RangeFigures PairOf(std::size_t first, std::size_t second) const;
  /// `groups` in the order in which ranges of them are neighbours. Throws std::bad_alloc.
  void StartRanges(const std::vector<std::size_t>& groups);
  /// None where the range is surely significant at the level.
  [[nodiscard]] std::optional<RangeFigures> RangeOf(const SampleRange& range, double level);

 private:
  using Samples = std::span<const SortedSample* const>;

  [[nodiscard]] RangeMedians::Halves Halve(const SampleRange& range);
  [[nodiscard]] bool IsSurelyApart(const SampleRange& range, const RangeMedians::Halves& halves,
                                   double level) const;
  [[nodiscard]] RangeFigures FiguresOf(Samples groups) const;
  [[nodiscard]] std::int64_t TotalOf(const SampleRange& range) const noexcept {
    return totalBefore[range.last + 1] - totalBefore[range.first];
  }

  std::vector<SortedSample> samples;
  std::optional<double> givenMedian;
  // Of ranges:
  std::vector<const SortedSample*> ordered;
  std::vector<std::int64_t> totalBefore;
  std::vector<std::int64_t> givenBefore;   // at or below the given median
  std::vector<double> givenSquaresBefore;  // their u^2 / n, as RangeMedians has them
  std::optional<RangeMedians> medians;
};

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "foundation/double_double.h"
#include "kit/order/wide_integer.h"
#include "kit/summaries/histogram.h"

/// How often each of k samples took each of the mid-ranks 1, 1.5, ..., k, in sums of weights. A
/// rank comes as twice itself less 2, its step.
class RankCounts {
 public:
  RankCounts() = default;
  /// Throws std::bad_alloc.
  explicit RankCounts(std::size_t sampleCount)
      : sampleCount(sampleCount),
        rankCount(2 * sampleCount - 1),
        dense(sampleCount <= kMostDense ? sampleCount * rankCount : 0),
        sparse(sampleCount <= kMostDense ? 0 : sampleCount) {}

  /// Some ranks of a sample, of which the i-th weighs weightAt(i). Throws std::bad_alloc, with many
  /// samples.
  template <typename WeightAt>
  void Add(std::size_t sample, const std::int32_t* steps, std::size_t count, WeightAt weightAt) {
    if (!dense.empty()) {
      std::int64_t* counts = dense.data() + sample * rankCount;
      for (std::size_t i = 0; i < count; ++i) counts[steps[i]] += weightAt(i);
    } else {
      for (std::size_t i = 0; i < count; ++i) sparse[sample][steps[i]] += weightAt(i);
    }
  }

  /// The counts of a sample ascending by rank, which stands as the value.
  [[nodiscard]] std::vector<HistogramBin> CountsOf(std::size_t sample) const {
    std::vector<HistogramBin> counts;
    ForEachCount(sample, [&counts](std::int64_t step, std::int64_t count) {
      counts.push_back({count, static_cast<double>(step) * 0.5 + 1.0});
    });
    return counts;
  }
  /// Sum of a sample's ranks, each times its weight.
  [[nodiscard]] double RankSum(std::size_t sample) const {
    WideInteger twice = 0;
    ForEachCount(sample, [&twice](std::int64_t step, std::int64_t count) {
      twice += static_cast<WideInteger>(count) * (step + 2);
    });
    return static_cast<double>(twice) * 0.5;
  }
  /// Sum of t^3 - t over the groups of t tied values of a record, each times the record's weight,
  /// where every record gave a rank to every sample: so much the squares of the ranks about their
  /// mean, times 12, fall short of k^3 - k in a record.
  [[nodiscard]] DoubleDouble TieSum() const {
    const auto k = static_cast<std::int64_t>(sampleCount);
    WideInteger sum = 0;
    for (std::size_t sample = 0; sample < sampleCount; ++sample) {
      ForEachCount(sample, [&](std::int64_t step, std::int64_t count) {
        const std::int64_t fromMean = step + 1 - k;  // twice
        // k^3 - k is k times (k - 1) (k + 1).
        sum += static_cast<WideInteger>(count) * ((k - 1) * (k + 1) - 3 * fromMean * fromMean);
      });
    }
    const auto high = static_cast<double>(sum);
    return {high, static_cast<double>(sum - static_cast<WideInteger>(high))};
  }

 private:
  /// Up to so many samples every count has a place of its own: 16 megabytes at the most.
  static constexpr std::size_t kMostDense = 1000;

  template <typename Take>
  void ForEachCount(std::size_t sample, Take take) const {
    if (dense.empty()) {
      for (const auto& [step, count] : sparse[sample]) take(std::int64_t{step}, count);
      return;
    }
    for (std::size_t step = 0; step < rankCount; ++step) {
      take(static_cast<std::int64_t>(step), dense[sample * rankCount + step]);
    }
  }

  std::size_t sampleCount = 0;
  std::size_t rankCount = 0;
  std::vector<std::int64_t> dense;
  std::vector<std::map<std::int32_t, std::int64_t>> sparse;
};

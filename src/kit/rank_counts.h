#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <vector>

#include "kit/univariate.h"

/// How often each of k samples took each of the mid-ranks 1, 1.5, ..., k, in sums of weights.
class RankCounts {
 public:
  RankCounts() = default;
  /// Throws std::bad_alloc.
  explicit RankCounts(std::size_t sampleCount)
      : rankCount(2 * sampleCount - 1),
        dense(sampleCount <= kMostDense ? sampleCount * rankCount : 0),
        sparse(sampleCount <= kMostDense ? 0 : sampleCount) {}

  /// Throws std::bad_alloc, with many samples.
  void Add(std::size_t sample, double rank, std::int64_t weight) {
    const auto step = static_cast<std::size_t>(2.0 * rank - 2.0);
    if (!dense.empty()) {
      dense[sample * rankCount + step] += weight;
    } else {
      sparse[sample][step] += weight;
    }
  }

  /// The counts of a sample ascending by rank, which stands as the value.
  [[nodiscard]] std::vector<HistogramBin> CountsOf(std::size_t sample) const {
    std::vector<HistogramBin> counts;
    if (dense.empty()) {
      for (const auto& [step, count] : sparse[sample]) counts.push_back({count, RankAt(step)});
      return counts;
    }
    for (std::size_t step = 0; step < rankCount; ++step) {
      counts.push_back({dense[sample * rankCount + step], RankAt(step)});
    }
    return counts;
  }

 private:
  /// Up to so many samples every count has a place of its own: 16 megabytes at the most.
  static constexpr std::size_t kMostDense = 1000;

  [[nodiscard]] static double RankAt(std::size_t step) noexcept {
    return static_cast<double>(step) * 0.5 + 1.0;
  }

  std::size_t rankCount = 0;
  std::vector<std::int64_t> dense;
  std::vector<std::map<std::size_t, std::int64_t>> sparse;
};

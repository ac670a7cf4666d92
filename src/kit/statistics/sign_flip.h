#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "kit/statistics/exact_tails.h"

/// Units that count alike in a sum.
struct UnitRun {
  std::int64_t size = 0;   ///< what one of them adds, not below 0
  std::int64_t count = 0;  ///< how many they are
};

/// Distribution of a sum to which each of n units adds its size with probability 1/2 and else
/// nothing: of signed ranks given their ties (docs/statistics/wilcoxon_pairs.md), of the changes of
/// a score (docs/statistics/marginal_homogeneity.md).
///
/// Sums of halves only: relative error below 2e-13 for n up to 1000, where the smallest probability
/// is 1e-301. Takes n times the sum of all sizes in half-additions, and memory for that sum.
/// B. Streitberg, J. Roehmel, Statistical Software Newsletter 12 (1986).
class SignFlipDistribution {
 public:
  /// At most 1000 units. Throws std::bad_alloc.
  explicit SignFlipDistribution(std::span<const UnitRun> runs);
  /// The ranks 1, 2, ..., n. Throws std::bad_alloc.
  [[nodiscard]] static SignFlipDistribution OfRanks(std::int64_t n);
  /// Twice the mid-ranks of groups of so many tied units, ascending. Throws std::bad_alloc.
  [[nodiscard]] static SignFlipDistribution OfTwiceMidRanks(std::span<const std::int64_t> tied);

  /// P(S <= sum).
  [[nodiscard]] double UpTo(std::int64_t sum) const;
  /// P(S = sum).
  [[nodiscard]] double At(std::int64_t sum) const;
  [[nodiscard]] ExactTails TailsOf(std::int64_t sum) const;
  /// The sum of all sizes.
  [[nodiscard]] std::int64_t Largest() const noexcept { return largest * step; }

 private:
  /// Up to so many units every outcome is listed: sizes may be large then.
  static constexpr std::int64_t kMostListed = 16;

  void List(std::span<const UnitRun> runs);
  void Convolve(std::span<const UnitRun> runs);
  [[nodiscard]] double LowerTail(std::int64_t steps) const;

  std::int64_t step = 1;               // every sum is a multiple of it
  std::int64_t largest = 0;            // in steps, as all sums below
  std::vector<std::int64_t> outcomes;  // ascending; empty where they are not listed
  std::vector<double> probabilities;   // of the sums up to the middle, where they are not listed
};

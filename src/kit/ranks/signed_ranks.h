#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/order/growing_array.h"
#include "kit/order/radix_sort.h"

/// Ranks of differences by their size, with the sums of the ranks by sign.
///
/// The rank of a difference is the mid-rank of its size among all that were added. A weight
/// counts as that many differences for the ranks (without its fraction) and multiplies the rank in
/// the sums. A difference of 0 counts as positive.
class SignedRanks {
 public:
  /// Throws std::bad_alloc.
  void Add(double difference, double weight);
  /// Adds those of `count` differences that are above or below 0, all of weight 1. Throws
  /// std::bad_alloc.
  void AddUnits(const double* units, std::size_t count);
  /// Ranks all that was added and keeps the sums alone. Throws std::bad_alloc.
  void Rank();

  [[nodiscard]] double PositiveRankSum() const noexcept { return positiveRankSum; }
  [[nodiscard]] double NegativeRankSum() const noexcept { return negativeRankSum; }
  /// Sum of t^3 - t over the runs of tied sizes, t being their weight.
  [[nodiscard]] double TieSum() const noexcept { return tieSum; }

  /// The same with weights that lose their fraction in the sums as well: units.
  struct Units {
    /// Up to so many, their ties are kept.
    static constexpr std::int64_t kMostWithTies = 500;

    [[nodiscard]] std::int64_t Count() const noexcept { return positives + negatives; }

    std::int64_t positives = 0;
    std::int64_t negatives = 0;
    double positiveRankSum = 0.0;
    double tieSum = 0.0;             ///< as TieSum
    std::vector<std::int64_t> ties;  ///< units of each run of tied sizes, ascending by size
  };
  [[nodiscard]] const Units& InUnits() const noexcept { return units; }

 private:
  [[nodiscard]] static double SizeOf(PlainKey difference) noexcept {
    return std::bit_cast<double>(difference.key >> 1);
  }
  struct Entry {
    double size;
    double weight;
    bool isNegative;
  };

  void RankUnits();
  void ListTiesOfUnits();
  void RankWeighted();
  /// The entries by size, equal ones as they came.
  template <typename EntryAt>
  void RankRuns(EntryAt entryAt);

  /// The bits of each size, moved up by one, with the sign as the lowest: so they are sorted where
  /// they stand.
  GrowingArray<PlainKey> differences;
  GrowingArray<double> weights;  // empty as long as every weight is 1
  double positiveRankSum = 0.0;
  double negativeRankSum = 0.0;
  double tieSum = 0.0;
  Units units;
};

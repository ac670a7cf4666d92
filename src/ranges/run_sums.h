#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "foundation/double_double.h"
#include "kit/order/wide_integer.h"
#include "ranges/pair_sums.h"
#include "ranges/units.h"

/// What runs of ties come to, one after the other, in whole numbers: ranks count from 1 at the
/// first of these runs, so that sums of neighbouring stretches of a sorted sample can be joined.
///
/// Twice a mid-rank is a whole number. Up to kMostUnits units no sum passes 128 bits.
class RunSums {
 public:
  static constexpr std::int64_t kMostUnits = std::int64_t{1} << 40;

  struct Group {
    std::int64_t count = 0;        ///< units
    WideInteger twiceRankSum = 0;  ///< sum of twice the mid-ranks

    friend bool operator==(const Group&, const Group&) = default;
  };

  /// Groups are numbered from 0, in their order. Pairs of them are summed where they are wanted.
  explicit RunSums(std::size_t groupCount, bool wantsPairs = false)
      : groups(groupCount), runWeights(groupCount) {
    if (wantsPairs) pairs.emplace(groupCount);
  }

  /// Takes the next run: all its cells.
  void AddRun(std::span<const ValueCell> run);
  /// Takes cells whose runs have begun with them: neither a value before nor one behind ties.
  void AddCluster(std::span<const ValueCell> cells);
  /// Takes the runs that follow, none of which ties with these.
  void Append(const RunSums& next);

  [[nodiscard]] const std::vector<Group>& Groups() const noexcept { return groups; }
  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// Sums over the runs of t units of t (t - 1) and of t^2 (t - 1).
  [[nodiscard]] WideInteger TiedPairs() const noexcept { return tied.pairs; }
  [[nodiscard]] WideInteger TiedTriples() const noexcept { return tied.triples; }
  /// Twice the pairs of units of different groups in which the one of the later group is the
  /// larger one, equal ones counting a half.
  [[nodiscard]] WideInteger TwiceOrderedPairs() const noexcept { return twiceOrderedPairs; }

  /// Null where they were not wanted.
  [[nodiscard]] const PairSums* Pairs() const noexcept { return pairs ? &*pairs : nullptr; }

  /// The same sums where group i is called places[i], ascending, among `groupCount`.
  [[nodiscard]] RunSums Regrouped(std::span<const std::size_t> places,
                                  std::size_t groupCount) const;

  /// Shows every sum to `see`, which may change it: how sums are written and read.
  template <typename See>
  void Visit(See& see) {
    see(count);
    see(tied.pairs);
    see(tied.triples);
    see(twiceOrderedPairs);
    for (Group& group : groups) {
      see(group.count);
      see(group.twiceRankSum);
    }
    if (pairs) pairs->Visit(see);
  }

 private:
  void AddUnits(std::size_t group, std::int64_t weight, std::int64_t twiceRank);
  void AddOrderedPairs(std::size_t group, std::int64_t weight);

  std::vector<Group> groups;
  std::int64_t count = 0;
  TiedUnits tied;
  WideInteger twiceOrderedPairs = 0;
  std::optional<PairSums> pairs;
  std::vector<std::int64_t> runWeights;  // of the run in hand, by group; else 0
};

/// A whole number of up to 106 bits as the doubles that sums of ties are given in.
[[nodiscard]] inline DoubleDouble ToDoubles(WideInteger number) noexcept {
  const auto high = static_cast<double>(number);
  return {high, static_cast<double>(number - static_cast<WideInteger>(high))};
}
/// Half of a whole number, to the nearest double.
[[nodiscard]] inline double HalfOf(WideInteger number) noexcept {
  return static_cast<double>(number) * 0.5;
}

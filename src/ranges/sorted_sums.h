#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "ranges/bytes.h"
#include "ranges/run_sums.h"

/// Sums of one stretch of a sorted sample, wherever it was cut: those of neighbouring stretches
/// join to what the whole would have given, to the last digit.
///
/// Ties are chained (kit/ranks/ties.h), so that where a run begins may depend on values before the
/// stretch. Values that are apart by the tolerance or more begin a run whatever stands before: all
/// between the first and the last such gap is summed, and what lies outside kept as cells.
class SortedSums {
 public:
  explicit SortedSums(std::size_t groupCount, bool wantsPairs = false)
      : inner(groupCount, wantsPairs), openWeights(groupCount) {}

  /// Takes units of the next value; false, and nothing done, for one below the one before or not a
  /// number.
  [[nodiscard]] bool Take(double value, std::size_t group, std::int64_t weight);
  /// Takes the stretch that follows, of the same groups; false, and nothing done, where it begins
  /// below the end of this one.
  [[nodiscard]] bool Append(const SortedSums& next);

  [[nodiscard]] std::size_t GroupCount() const noexcept { return inner.Groups().size(); }
  /// Units so far.
  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// The sums of the whole, once there is nothing before and nothing behind.
  [[nodiscard]] RunSums Total() const;

  [[nodiscard]] SortedSums Regrouped(std::span<const std::size_t> places,
                                     std::size_t groupCount) const;

  [[nodiscard]] bool HasPairs() const noexcept { return inner.Pairs() != nullptr; }

  /// Writes the sums, without the names of their groups.
  void Write(ByteWriter& write) const;
  /// Reads what was written of as many groups and with or without pairs; false for what can't be
  /// such: too short, weights below 1, values that do not ascend, sums that contradict each other.
  [[nodiscard]] bool Read(ByteReader& read);

 private:
  [[nodiscard]] std::vector<ValueCell>& Open() noexcept { return isApart ? tail : head; }
  /// The cells of the value in hand join those that wait for a gap.
  void EndValue();
  void EndCluster();
  void AppendCells(std::span<const ValueCell> cells);
  [[nodiscard]] SortedSums Ended() const;
  /// Counts the units of sums that were read; false where they contradict each other.
  [[nodiscard]] bool CountSoundUnits();

  std::vector<ValueCell> head;  // up to the first gap
  bool isApart = false;         // there is a gap
  RunSums inner;                // between the first and the last gap
  std::vector<ValueCell> tail;  // behind the last gap
  std::int64_t count = 0;

  // The value in hand.
  double openValue = 0.0;
  bool hasOpen = false;
  std::vector<std::int64_t> openWeights;  // by group
  std::vector<std::uint32_t> openGroups;  // that have weight, as they came
};

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "kit/groups/group_tally.h"
#include "kit/ranks/ties.h"

/// The mid-ranks of some control units, found in one walk over all units in ascending order, so
/// that no others need to be kept.
class ControlRanks {
 public:
  static constexpr std::size_t kCount = 4;

  ControlRanks() = default;
  /// Which units, counted from 1, in ascending order; from 1 to the sum of the controls' weights.
  explicit ControlRanks(const std::array<std::int64_t, kCount>& units) noexcept : units(units) {}
  void Add(const GroupTally::Units& records) noexcept;
  /// Call it once, after the last units.
  void CloseRun() noexcept;
  [[nodiscard]] double Of(std::size_t place) const noexcept { return ranks[place]; }

 private:
  /// Passes over the first of the records, where none of the units is wanted, up to the start of a
  /// run; how many.
  std::size_t PassOver(const GroupTally::Units& records) noexcept;

  std::array<std::int64_t, kCount> units{};
  std::array<double, kCount> ranks{};
  std::size_t found = 0;   // units that stood in a run up to the open one
  std::size_t ranked = 0;  // those of them whose run is closed
  std::int64_t controls = 0;
  std::int64_t ranksBelow = 0;
  std::int64_t runWeight = 0;
  TieRuns runs;
};

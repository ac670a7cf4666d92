#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/groups/group_tally.h"
#include "kit/ranks/placements.h"
#include "kit/ranks/ties.h"
#include "kit/statistics/tied_units.h"

/// The runs of ties among the units of two groups, which come ascending: what their placements come
/// to and, as long as there are few, the runs themselves.
class TwoGroupRuns {
 public:
  /// As many as the groups of an exact distribution of U can have: 1 and 10000 units.
  static constexpr std::size_t kMostKept = 10001;

  /// Throws std::bad_alloc.
  void Take(const GroupTally::Units& units);
  /// Call it once, after the last units.
  void CloseRun();

  [[nodiscard]] const Placements& GetPlacements() const noexcept { return placements; }
  /// All runs; a part of them where there are more than kMostKept.
  [[nodiscard]] const std::vector<TiedUnits>& Kept() const noexcept { return kept; }

 private:
  /// Takes the units from a place on that tie with none, but for one at the end, which may tie with
  /// what comes; how many it took.
  std::size_t TakeUntied(const GroupTally::Units& units, std::size_t begin);

  TieRuns runs;
  TiedUnits run;
  Placements placements;
  std::vector<TiedUnits> kept;
};

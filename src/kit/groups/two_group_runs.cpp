#include "kit/groups/two_group_runs.h"

void TwoGroupRuns::Take(const GroupTally::Units& units) {
  for (std::size_t i = 0; i < units.count; ++i) {
    if (runs.Begins(units.values[i])) {
      CloseRun();
      if (units.weights == nullptr) i += TakeUntied(units, i);
    }
    (units.groups[i] == 0 ? run.first : run.second) += units.Weight(i);
  }
}

std::size_t TwoGroupRuns::TakeUntied(const GroupTally::Units& units, std::size_t begin) {
  std::size_t end = begin;
  while (end + 1 < units.count && runs.Begins(units.values[end + 1])) ++end;
  // The last one may open a run.
  const std::size_t count = end - begin;
  placements.AddUntied(units.groups + begin, count);
  for (std::size_t i = begin; i < end && kept.size() < kMostKept; ++i) {
    kept.push_back(units.groups[i] == 0 ? TiedUnits{1, 0} : TiedUnits{0, 1});
  }
  return count;
}

void TwoGroupRuns::CloseRun() {
  if (run.Total() == 0) return;
  placements.Add(run);
  if (kept.size() < kMostKept) kept.push_back(run);
  run = {};
}

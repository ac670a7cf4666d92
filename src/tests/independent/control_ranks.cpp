#include "tests/independent/control_ranks.h"

#include <algorithm>

#include "kit/groups/two_groups.h"

void ControlRanks::Add(const GroupTally::Units& records) noexcept {
  for (std::size_t i = PassOver(records); i < records.count; ++i) {
    if (runs.Begins(records.values[i])) {
      CloseRun();
      ranksBelow += runWeight;
      runWeight = 0;
    }
    runWeight += records.Weight(i);
    if (records.groups[i] == TwoGroups::First) controls += records.Weight(i);
    while (found < kCount && controls >= units[found]) ++found;
  }
}

std::size_t ControlRanks::PassOver(const GroupTally::Units& records) noexcept {
  if (records.weights != nullptr || records.shares == nullptr) return 0;
  const bool isAnyHere =
      ranked < found ||
      (found < kCount && controls + records.shares[TwoGroups::First].weight >= units[found]);
  if (isAnyHere) return 0;
  // Neighbours that do not tie part two runs wherever the lower one starts.
  std::size_t start = records.count;
  do {
    if (start < 2) return 0;
    --start;
  } while (Ties(records.values[start - 1], records.values[start]));
  controls += std::count(records.groups, records.groups + start, TwoGroups::First);
  ranksBelow += runWeight + static_cast<std::int64_t>(start);
  runWeight = 0;
  static_cast<void>(runs.Begins(records.values[start]));
  return start;
}

void ControlRanks::CloseRun() noexcept {
  for (; ranked < found; ++ranked) ranks[ranked] = MidRank(ranksBelow, runWeight);
}

#include "ranges/run_sums.h"

#include "kit/ranks/ties.h"

void RunSums::AddUnits(std::size_t group, std::int64_t weight, std::int64_t twiceRank) {
  groups[group].count += weight;
  groups[group].twiceRankSum += static_cast<WideInteger>(twiceRank) * weight;
}

/// Units above all that came before and below none.
void RunSums::AddOrderedPairs(std::size_t group, std::int64_t weight) {
  std::int64_t earlier = 0;
  for (std::size_t i = 0; i < group; ++i) earlier += groups[i].count;
  twiceOrderedPairs += static_cast<WideInteger>(2 * earlier) * weight;
}

void RunSums::AddRun(std::span<const ValueCell> run) {
  std::int64_t weight = 0;
  for (const ValueCell& cell : run) weight += cell.weight;
  const std::int64_t twiceRank = TwiceMidRank(count, weight);
  for (const ValueCell& cell : run) AddOrderedPairs(cell.group, cell.weight);
  if (run.size() > 1) {
    for (const ValueCell& cell : run) runWeights[cell.group] += cell.weight;
    for (const ValueCell& cell : run) {
      // Each pair of tied units of two groups once, from the later group's side.
      std::int64_t tied = 0;
      for (std::size_t i = 0; i < cell.group; ++i) tied += runWeights[i];
      twiceOrderedPairs += static_cast<WideInteger>(tied) * cell.weight;
    }
    for (const ValueCell& cell : run) runWeights[cell.group] = 0;
  }
  for (const ValueCell& cell : run) AddUnits(cell.group, cell.weight, twiceRank);
  tied.Add(weight);
  if (pairs) pairs->AddRun(run);
  count += weight;
}

void RunSums::AddCluster(std::span<const ValueCell> cells) {
  std::size_t end = 0;
  for (std::size_t begin = 0; begin < cells.size(); begin = end) {
    end = EndOfRun(begin, cells.size(), [cells](std::size_t i) { return cells[i].value; });
    AddRun(cells.subspan(begin, end - begin));
  }
}

void RunSums::Append(const RunSums& next) {
  WideInteger earlier = 0;
  for (std::size_t i = 0; i < groups.size(); ++i) {
    twiceOrderedPairs += 2 * earlier * next.groups[i].count;
    earlier += groups[i].count;
  }
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i].twiceRankSum +=
        next.groups[i].twiceRankSum + static_cast<WideInteger>(2 * count) * next.groups[i].count;
    groups[i].count += next.groups[i].count;
  }
  count += next.count;
  tied += next.tied;
  if (pairs && next.pairs) pairs->Append(*next.pairs);
  twiceOrderedPairs += next.twiceOrderedPairs;
}

RunSums RunSums::Regrouped(std::span<const std::size_t> places, std::size_t groupCount) const {
  RunSums sums(groupCount);
  sums.count = count;
  sums.tied = tied;
  if (pairs) sums.pairs = pairs->Regrouped(places, groupCount);
  sums.twiceOrderedPairs = twiceOrderedPairs;
  for (std::size_t i = 0; i < places.size(); ++i) sums.groups[places[i]] = groups[i];
  return sums;
}

#include "ranges/pair_sums.h"

#include <algorithm>

void PairSums::GatherRun(std::span<const ValueCell> run) {
  inRun.clear();
  for (const ValueCell& cell : run) inRun.push_back({cell.group, cell.weight});
  std::ranges::sort(inRun, {}, &GroupWeight::group);
  std::size_t size = 0;
  for (const GroupWeight& each : inRun) {
    if (size > 0 && inRun[size - 1].group == each.group) {
      inRun[size - 1].weight += each.weight;
    } else {
      inRun[size++] = each;
    }
  }
  inRun.resize(size);
}

void PairSums::AddRun(std::span<const ValueCell> run) {
  GatherRun(run);
  for (const auto& [group, weight] : inRun) {
    groups[group].tied.Add(weight);
    for (std::size_t i = 0; i < group; ++i) {
      pairs[PlaceOf(i, group)].twiceOrdered +=
          static_cast<WideInteger>(2 * groups[i].count) * weight;
    }
  }
  for (std::size_t j = 1; j < inRun.size(); ++j) {
    for (std::size_t i = 0; i < j; ++i) {
      const WideInteger product = static_cast<WideInteger>(inRun[i].weight) * inRun[j].weight;
      pairs[PlaceOf(inRun[i].group, inRun[j].group)].Add(
          {product, product, product * (inRun[i].weight + inRun[j].weight)});
    }
  }
  for (const auto& [group, weight] : inRun) groups[group].count += weight;
}

void PairSums::Append(const PairSums& next) {
  for (std::size_t later = 1; later < groups.size(); ++later) {
    for (std::size_t earlier = 0; earlier < later; ++earlier) {
      Pair& pair = pairs[PlaceOf(earlier, later)];
      pair.Add(next.pairs[PlaceOf(earlier, later)]);
      pair.twiceOrdered +=
          static_cast<WideInteger>(2 * groups[earlier].count) * next.groups[later].count;
    }
  }
  for (std::size_t i = 0; i < groups.size(); ++i) {
    groups[i].count += next.groups[i].count;
    groups[i].tied += next.groups[i].tied;
  }
}

// t (t - 1) and t^2 (t - 1) of t = a + b are those of a and of b, and what follows.
TiedUnits PairSums::TiedOf(std::size_t earlier, std::size_t later) const {
  const Pair& pair = pairs[PlaceOf(earlier, later)];
  TiedUnits tied{2 * pair.products, 3 * pair.cubic - 2 * pair.products};
  tied += groups[earlier].tied;
  tied += groups[later].tied;
  return tied;
}

PairSums PairSums::Regrouped(std::span<const std::size_t> places, std::size_t groupCount) const {
  PairSums sums(groupCount);
  for (std::size_t later = 0; later < places.size(); ++later) {
    sums.groups[places[later]] = groups[later];
    for (std::size_t earlier = 0; earlier < later; ++earlier) {
      sums.pairs[PlaceOf(places[earlier], places[later])] = pairs[PlaceOf(earlier, later)];
    }
  }
  return sums;
}

bool PairSums::CanBeOf(WideInteger n) const {
  const auto isSum = [](WideInteger sum, WideInteger most) { return 0 <= sum && sum <= most; };
  const auto isGroup = [&](const Group& group) {
    return isSum(group.count, n) && isSum(group.tied.pairs, n * n) &&
           isSum(group.tied.triples, n * n * n);
  };
  const auto isPair = [&](const Pair& pair) {
    return isSum(pair.twiceOrdered, 2 * n * n) && isSum(pair.products, n * n) &&
           isSum(pair.cubic, n * n * n);
  };
  return std::ranges::all_of(groups, isGroup) && std::ranges::all_of(pairs, isPair);
}

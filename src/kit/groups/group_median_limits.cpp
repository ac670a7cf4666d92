#include "kit/groups/group_median_limits.h"

GroupMedianLimits::GroupMedianLimits(const GroupTally& tally, double confidenceLevel)
    : tally(&tally), walks(tally.Groups().size()) {
  for (std::size_t place = 0; place < walks.size(); ++place) {
    const std::int64_t count = tally.CountOf(tally.Groups()[place]);
    if (const auto ranks = MedianLimits(count, confidenceLevel)) {
      walks[place].limits = Limits{*ranks};
    }
  }
}

void GroupMedianLimits::Take(const GroupTally::Units& units) {
  if (PassOver(units)) return;
  for (std::size_t i = 0; i < units.count; ++i) {
    const std::size_t place = tally->PlaceOf(units.groups[i]);
    if (place != GroupTally::kNoPlace) walks[place].Take(units.values[i], units.Weight(i));
  }
}

void GroupMedianLimits::WantRanks(WantedPlaces& wanted) const {
  for (std::size_t place = 0; place < walks.size(); ++place) {
    const auto& limits = walks[place].limits;
    if (!limits) continue;
    auto& ranks = wanted.groups[static_cast<std::size_t>(tally->Groups()[place])].ranks;
    ranks.insert(ranks.end(), {limits->ranks.lower, limits->ranks.upper});
  }
}

bool GroupMedianLimits::PassOver(const GroupTally::Units& units) {
  if (units.shares == nullptr) return false;
  const auto shareOf = [&](std::size_t place) {
    return units.shares[static_cast<std::size_t>(tally->Groups()[place])].weight;
  };
  for (std::size_t place = 0; place < walks.size(); ++place) {
    if (walks[place].HasEndAmong(shareOf(place))) return false;
  }
  for (std::size_t place = 0; place < walks.size(); ++place) walks[place].units += shareOf(place);
  return true;
}

void GroupMedianLimits::Walk::Take(double x, std::int64_t weight) noexcept {
  if (limits) {
    const std::int64_t after = units + weight;
    const auto isHere = [&](std::int64_t rank) { return units < rank && rank <= after; };
    if (isHere(limits->ranks.lower)) limits->lower = x;
    if (isHere(limits->ranks.upper)) limits->upper = x;
  }
  units += weight;
}

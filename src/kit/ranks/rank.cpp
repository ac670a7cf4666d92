#include "kit/ranks/rank.h"

#include <array>
#include <cmath>

void NPARRank::Reset() { *this = NPARRank(keep); }

std::size_t NPARRank::FindPlace(double groupKey) {
  const auto [found, isNew] = placeOfKey.try_emplace(groupKey, groups.size());
  const std::size_t place = found->second;
  if (isNew) groups.emplace_back();
  if (groupKey >= 0.0 && groupKey < kSmallKeys) {
    const auto slot = static_cast<std::size_t>(groupKey);
    if (static_cast<double>(slot) == groupKey) {
      if (placeOfSmallKey.size() <= slot) placeOfSmallKey.resize(slot + 1, kNoPlace);
      placeOfSmallKey[slot] = place;
    }
  }
  return place;
}

bool NPARRank::TakeApart(const PlaceSums& sums) {
  if (ranksBelow < 0) return false;
  const auto first = static_cast<double>(ranksBelow + 2);
  std::array<double, kKeysAtOnce> rankSums{};
  for (std::size_t key = 0; key < kKeysAtOnce; ++key) {
    if (sums[key].count == 0) continue;
    const double before = GroupEntry(static_cast<double>(key)).rankSum;
    rankSums[key] = before + (static_cast<double>(sums[key].count) * first +
                              static_cast<double>(sums[key].sum));
    const bool isExact =
        before >= 0.0 && rankSums[key] <= kMostExactSum && before * 2.0 == std::floor(before * 2.0);
    if (!isExact) return false;
  }
  for (std::size_t key = 0; key < kKeysAtOnce; ++key) {
    if (sums[key].count > 0) GroupEntry(static_cast<double>(key)).rankSum = rankSums[key];
  }
  return true;
}

void NPARRank::NoteTie() {
  const double t = static_cast<double>(runWeight);
  tieSum += t * t * t - t;
  if (keep.tiedValues) tiedValues[runValue] = runWeight;
}

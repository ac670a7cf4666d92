#include "kit/ranks/rank.h"

void NPARRank::Reset() { *this = NPARRank(); }

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

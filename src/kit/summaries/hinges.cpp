#include "kit/summaries/hinges.h"

#include <algorithm>

HingeWalk::HingeWalk(double totalWeight) noexcept {
  // Of the outer hinges, from either end; the weight is whole, and the fraction one half or none.
  const double depth = static_cast<double>(TruncateToInt64((totalWeight + 3.0) * 0.5)) * 0.5;
  hinges[0].position = depth;
  hinges[1].position = (totalWeight + 1.0) * 0.5;
  hinges[2].position = (totalWeight + 1.0) - depth;
}

void HingeWalk::SettleHinges(double x, double weight) noexcept {
  nextHinge = std::numeric_limits<double>::max();
  const double before = cumulativeWeight;
  const bool isFirst = previousValue == QDMV::gMissingValue;
  for (Hinge& hinge : hinges) {
    if (hinge.value != QDMV::gMissingValue) continue;
    const double fraction = hinge.position - before;
    if (isFirst || !(before > hinge.position || before + weight > hinge.position)) {
      nextHinge = std::min(nextHinge, hinge.position);
    } else if (fraction > 0.0) {
      hinge.value = fraction >= 1.0 ? x : (1.0 - fraction) * previousValue + fraction * x;
    } else {
      hinge.value = previousValue;  // whatever follows, an infinity too
    }
  }
  cumulativeWeight += weight;
  previousValue = x;
}

bool HingeWalk::PassOver(const Stretch& values) noexcept {
  const double reached = cumulativeWeight + static_cast<double>(values.weight);
  if (!(reached <= nextHinge)) return false;
  // The walk knows the least value already, and the greatest may be the last; of zeros the first
  // stays, with its sign.
  const bool isRegular = extremes.minimum != QDMV::gMissingValue &&
                         extremes.minimum <= values.lowest &&
                         extremes.maximum != QDMV::gMissingValue &&
                         extremes.maximum <= values.last && values.last != 0.0;
  if (!isRegular) return false;
  cumulativeWeight = reached;
  previousValue = values.last;
  extremes.maximum = values.last;
  return true;
}

void HingeWalk::WantRanks(std::vector<std::int64_t>& ranks) const {
  for (const Hinge& hinge : hinges) {
    const std::int64_t below = TruncateToInt64(hinge.position);
    ranks.insert(ranks.end(), {below, below + 1});
  }
}

void HingeWalk::FinishHinges() noexcept {
  for (Hinge& hinge : hinges) {
    if (hinge.value == QDMV::gMissingValue) hinge.value = previousValue;
  }
}

#include "kit/summaries/quartiles.h"

#include <cstddef>

namespace {

/// At half that position, counted from 1.
double AtHalfOf(const WeightedValues& values, std::int64_t twicePosition) {
  const double below = UnitAt(values, twicePosition / 2);
  if (twicePosition % 2 == 0) return below;
  const double above = UnitAt(values, twicePosition / 2 + 1);
  return below == above ? below : below * 0.5 + above * 0.5;
}

}  // namespace

double UnitAt(const WeightedValues& values, std::int64_t rank) {
  std::size_t low = 0;
  std::size_t high = values.Size() - 1;
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (values.WeightBelow(middle + 1) < rank) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  return values.Value(low);
}

Quartiles QuartilesOf(const WeightedValues& values) {
  const std::int64_t n = values.TotalWeight();
  const std::int64_t twiceDepth = (n + 1) / 2 + 1;
  return {AtHalfOf(values, twiceDepth), AtHalfOf(values, n + 1),
          AtHalfOf(values, 2 * (n + 1) - twiceDepth)};
}

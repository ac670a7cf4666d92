#include "tests/independent/jonckheere_comparisons.h"

#include <algorithm>
#include <utility>

#include "arithmetic/elementary.h"
#include "kit/statistics/normal.h"

namespace {

std::size_t PairIndex(std::size_t earlier, std::size_t later) noexcept {
  return later * (later - 1) / 2 + earlier;
}

}  // namespace

JonckheereComparisons::JonckheereComparisons(ComparisonKind kind, std::vector<double> sizes,
                                             double overallZ)
    : sizes(std::move(sizes)), overallZ(overallZ) {
  const std::size_t groupCount = this->sizes.size();
  if (kind == ComparisonKind::Pairwise) {
    pairs.resize(PairIndex(0, groupCount));
  } else {
    ranges = RangeCounts(groupCount);
  }
}

void JonckheereComparisons::Add(std::int64_t weight, std::size_t position) {
  if (pairs.empty()) {
    ranges.Add(runs.First(), weight, position);
    return;
  }
  for (std::size_t earlier = 0; earlier < position; ++earlier) {
    pairs[PairIndex(earlier, position)].Add(runs.First(), weight, true);
  }
  for (std::size_t later = position + 1; later < sizes.size(); ++later) {
    pairs[PairIndex(position, later)].Add(runs.First(), weight, false);
  }
}

PairFigures JonckheereComparisons::PairOf(std::size_t earlier, std::size_t later) {
  JonckheerePair& pair = pairs[PairIndex(earlier, later)];
  pair.CloseRun();
  const NormalFigures figures = Standardize(pair.Sums(), {sizes[earlier], sizes[later]});
  return {pair.Sums().statistic, figures.standardError, figures.z, OneTailedSig(figures.z)};
}

void JonckheereComparisons::StartRanges() {
  ranges.Finish();
  sizesBefore.assign(1, {});
  for (const double size : sizes) sizesBefore.push_back(sizesBefore.back().With(size));
}

std::optional<RangeFigures> JonckheereComparisons::RangeOf(const SampleRange& range, double level) {
  const double statistic = ranges.OrderedPairs(range);
  if (IsSurelyApart(range, statistic, level)) return std::nullopt;
  const auto first = sizes.begin() + static_cast<std::ptrdiff_t>(range.first);
  const std::vector<double> within(first, first + static_cast<std::ptrdiff_t>(range.Size()));
  return RangeFigures{statistic,
                      OneTailedSig(Standardize({statistic, ranges.Ties(range)}, within).z)};
}

// No ties make the variance larger, and a tail beyond z is at most exp(-z^2 / 2) / 2.
bool JonckheereComparisons::IsSurelyApart(const SampleRange& range, double statistic,
                                          double level) const {
  const SizeSums& all = sizesBefore[range.last + 1];
  const SizeSums& earlier = sizesBefore[range.first];
  const double n = all.sum - earlier.sum;
  const double deviation = statistic - (n * n - (all.squares - earlier.squares)) / 4.0;
  const double variance = (n * n * (2.0 * n + 3.0) - (all.cubic - earlier.cubic)) / 72.0;
  const double enough = variance * -2.0 * arithmetic::Log(2.0 * level);
  return (deviation < 0.0) == (overallZ < 0.0) &&
         deviation * deviation > std::max(enough, variance);
}

#include "tests/independent/median_comparisons.h"

#include "kit/statistics/chi_square.h"
#include "kit/statistics/two_row_table.h"

namespace {

/// With fewer groups their table of medians costs more than it saves.
constexpr std::size_t kFewestForTable = 64;
/// What the sums of squares of the first groups may be wrong by, as a part of the groups' weight:
/// far more than a few roundings for each group.
constexpr double kRoundingMargin = 1e-11;

RangeFigures FiguresAt(double cut, std::span<const SortedSample* const> groups) {
  TwoRowTable table;
  for (const SortedSample* group : groups) table.Add(group->CountUpTo(cut), group->Total());
  const auto [x, sig] = table.ChiSquare();
  return {x, sig};
}

}  // namespace

double MedianComparisons::MedianOfGroup(std::size_t group) const {
  const SortedSample* const sample = &samples[group];
  return MedianOf({&sample, 1});
}

RangeFigures MedianComparisons::FiguresOf(Samples groups) const {
  return FiguresAt(givenMedian ? *givenMedian : MedianOf(groups), groups);
}

RangeFigures MedianComparisons::PairOf(std::size_t first, std::size_t second) const {
  const SortedSample* const pair[] = {&samples[first], &samples[second]};
  return FiguresOf(pair);
}

void MedianComparisons::StartRanges(const std::vector<std::size_t>& groups) {
  totalBefore.assign(1, 0);
  givenBefore.assign(1, 0);
  givenSquaresBefore.assign(1, 0.0);
  for (const std::size_t group : groups) {
    const SortedSample* const sample = &samples[group];
    ordered.push_back(sample);
    totalBefore.push_back(totalBefore.back() + sample->Total());
    const std::int64_t upTo = givenMedian ? sample->CountUpTo(*givenMedian) : 0;
    const auto square = static_cast<double>(upTo) * static_cast<double>(upTo);
    givenBefore.push_back(givenBefore.back() + upTo);
    givenSquaresBefore.push_back(givenSquaresBefore.back() +
                                 square / static_cast<double>(sample->Total()));
  }
  if (!givenMedian && ordered.size() >= kFewestForTable) medians.emplace(ordered);
}

RangeMedians::Halves MedianComparisons::Halve(const SampleRange& range) {
  if (!givenMedian) return medians->Halve(range);
  return {*givenMedian, givenBefore[range.last + 1] - givenBefore[range.first],
          givenSquaresBefore[range.last + 1] - givenSquaresBefore[range.first]};
}

std::optional<RangeFigures> MedianComparisons::RangeOf(const SampleRange& range, double level) {
  const Samples groups = Samples(ordered).subspan(range.first, range.Size());
  if (!givenMedian && !medians) return FiguresOf(groups);
  const RangeMedians::Halves halves = Halve(range);
  if (IsSurelyApart(range, halves, level)) return std::nullopt;
  return FiguresAt(halves.median, groups);
}

// With u of n units of a group, and a share p of the range's N, at or below the cut, X is the sum
// of (u - n p)^2 / n over p (1 - p), and that sum is the sum of u^2 / n less N p^2.
bool MedianComparisons::IsSurelyApart(const SampleRange& range, const RangeMedians::Halves& halves,
                                      double level) const {
  const auto upTo = static_cast<double>(halves.upTo);
  const double lowerShare = upTo / static_cast<double>(TotalOf(range));
  const double rounding = kRoundingMargin * static_cast<double>(totalBefore[range.last + 1]);
  const double enough = SurelySignificantChiSquare(level, range.Size());
  return halves.squares - upTo * lowerShare - rounding > enough * lowerShare * (1.0 - lowerShare);
}

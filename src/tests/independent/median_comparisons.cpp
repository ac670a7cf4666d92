#include "tests/independent/median_comparisons.h"

#include "kit/statistics/chi_square.h"
#include "kit/statistics/two_row_table.h"

namespace {

/// With fewer groups their table of medians costs more than it saves.
constexpr std::size_t kFewestForTable = 64;

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
  for (const std::size_t group : groups) {
    const SortedSample* const sample = &samples[group];
    ordered.push_back(sample);
    totalBefore.push_back(totalBefore.back() + sample->Total());
    givenBefore.push_back(givenBefore.back() + (givenMedian ? sample->CountUpTo(*givenMedian) : 0));
  }
  if (!givenMedian && ordered.size() >= kFewestForTable) medians.emplace(ordered);
}

std::optional<RangeFigures> MedianComparisons::RangeOf(const SampleRange& range, double level) {
  const Samples groups = Samples(ordered).subspan(range.first, range.Size());
  if (!givenMedian && !medians) return FiguresOf(groups);
  const RangeMedians::Halves halves =
      givenMedian ? RangeMedians::Halves{*givenMedian,
                                         givenBefore[range.last + 1] - givenBefore[range.first]}
                  : medians->Halve(range);
  if (IsSurelyApart(range, halves, level)) return std::nullopt;
  return FiguresAt(halves.median, groups);
}

// X is a sum of two positive terms for each group, which are alike but for the expected count.
bool MedianComparisons::IsSurelyApart(const SampleRange& range, const RangeMedians::Halves& halves,
                                      double level) const {
  const double lowerShare = static_cast<double>(halves.upTo) / static_cast<double>(TotalOf(range));
  const double scale = lowerShare * (1.0 - lowerShare);
  const double enough = SurelySignificantChiSquare(level, range.Size());
  return TermsPass(range, enough * scale, [&](std::size_t place) {
    const auto size = static_cast<double>(ordered[place]->Total());
    const double deviation =
        static_cast<double>(ordered[place]->CountUpTo(halves.median)) - size * lowerShare;
    return deviation * deviation / size;
  });
}

#include "kit/statistics/mann_whitney_exact.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

#include "kit/statistics/combinations.h"

namespace {

/// target[i] += factor source[i].
void AddMultiple(double* __restrict target, const double* __restrict source, std::size_t count,
                 double factor) {
  for (std::size_t i = 0; i < count; ++i) target[i] += factor * source[i];
}

/// A run of ties: its units, and the rank of each in steps from that of the lowest run.
struct RankedRun {
  std::int64_t units;
  std::int64_t rank;
};

/// In how many ways do j of the units of some runs, the marked ones, have the rank sum s? With j
/// marked units s reaches from the ranks of the lowest j to those of the highest, and only these
/// sums are kept. Where j units are marked, all others are not: the ways of more than half of the
/// units are those of the rest, from the other end.
class RankSumCounts {
 public:
  struct Row {
    std::int64_t least = 0;      // sum of the ranks of the lowest j
    std::vector<double> counts;  // by the sum less that; empty where j is not possible
  };

  /// The runs ascend; at most so many units are marked, and at most so many, not fewer, are not.
  RankSumCounts(std::span<const RankedRun> runs, std::int64_t mostMarked, std::int64_t mostUnmarked)
      : mostUnmarked(mostUnmarked) {
    std::int64_t all = 0;
    std::int64_t rankSum = 0;
    for (const RankedRun& run : runs) {
      all += run.units;
      rankSum += run.units * run.rank;
    }
    mostCounted = std::min(mostMarked, all / 2);
    rows.push_back({0, {1.0}});
    for (const RankedRun& run : runs) Add(run);
    for (std::int64_t j = mostCounted + 1; j <= std::min(mostMarked, all); ++j) {
      rows.push_back(Mirrored(Of(all - j), rankSum));
    }
  }

  /// Empty where that many are not possible.
  [[nodiscard]] const Row& Of(std::int64_t marked) const {
    static const Row kNone;
    const bool isKept = marked >= 0 && marked < static_cast<std::int64_t>(rows.size());
    return isKept ? rows[static_cast<std::size_t>(marked)] : kNone;
  }
  [[nodiscard]] std::int64_t Rows() const noexcept {
    return static_cast<std::int64_t>(rows.size());
  }

 private:
  void Add(const RankedRun& run) {
    const std::int64_t after = units + run.units;
    const std::int64_t last = std::min(after, mostCounted);
    for (auto j = static_cast<std::int64_t>(rows.size()); j <= last; ++j) {
      rows.push_back({rows.back().least + run.rank, {}});
    }
    // Descending, so that the rows below are still those without the run.
    for (std::int64_t j = last; j >= 0; --j) {
      Row& row = rows[static_cast<std::size_t>(j)];
      if (after - j > mostUnmarked) {
        row.counts = {};
      } else {
        AddRun(run, j, row);
      }
    }
    units = after;
  }

  void AddRun(const RankedRun& run, std::int64_t j, Row& row) {
    double ways = 1.0;  // C(t, i)
    for (std::int64_t i = 1; i <= std::min(run.units, j); ++i) {
      ways = ways * static_cast<double>(run.units - i + 1) / static_cast<double>(i);
      const Row& below = rows[static_cast<std::size_t>(j - i)];
      if (below.counts.empty()) continue;
      const auto shift = static_cast<std::size_t>(below.least + i * run.rank - row.least);
      const std::size_t end = shift + below.counts.size();
      if (row.counts.size() < end) row.counts.resize(end);
      AddMultiple(row.counts.data() + shift, below.counts.data(), below.counts.size(), ways);
    }
  }

  static Row Mirrored(const Row& others, std::int64_t rankSum) {
    const auto span = static_cast<std::int64_t>(others.counts.size()) - 1;
    return {rankSum - others.least - span, {others.counts.rbegin(), others.counts.rend()}};
  }

  std::int64_t mostCounted = 0;  // marked units whose ways are counted one run after another
  std::int64_t mostUnmarked;
  std::int64_t units = 0;
  std::vector<Row> rows;  // by marked units
};

/// Numbers of ways with the rank sum of the marked units at or below a place, at or above it, and
/// on it.
struct Ways {
  double below = 0.0;
  double above = 0.0;
  double at = 0.0;
};

/// Both halves of all units.
class JoinedRankSums {
 public:
  JoinedRankSums(std::span<const RankedRun> runs, std::int64_t marked, std::int64_t unmarked)
      : JoinedRankSums(runs, MiddleOf(runs, (marked + unmarked) / 2), marked, unmarked) {}

  [[nodiscard]] Ways At(std::int64_t sum) const {
    Ways ways;
    for (std::int64_t j = 0; j < lower.Rows(); ++j) {
      const RankSumCounts::Row& low = lower.Of(j);
      const RankSumCounts::Row& high = upper.Of(marked - j);
      if (low.counts.empty() || high.counts.empty()) continue;
      Join(low.counts, high.counts, sum - low.least - high.least, ways);
    }
    return ways;
  }

 private:
  JoinedRankSums(std::span<const RankedRun> runs, std::size_t middle, std::int64_t marked,
                 std::int64_t unmarked)
      : marked(marked),
        lower(runs.first(middle), marked, unmarked),
        upper(runs.subspan(middle), marked, unmarked) {}

  /// How many of the runs have about so many units.
  static std::size_t MiddleOf(std::span<const RankedRun> runs, std::int64_t half) {
    std::size_t place = 0;
    std::int64_t units = 0;
    while (units + runs[place].units / 2 < half) units += runs[place++].units;
    return place;
  }

  /// Adds the pairs of a lower and an upper place whose sum is at, below or above the given one.
  static void Join(const std::vector<double>& low, const std::vector<double>& high,
                   std::int64_t sum, Ways& ways) {
    std::vector<double> upTo(high.size());
    std::vector<double> from(high.size());
    std::partial_sum(high.begin(), high.end(), upTo.begin());
    std::partial_sum(high.rbegin(), high.rend(), from.rbegin());
    const auto last = static_cast<std::int64_t>(high.size()) - 1;
    for (std::size_t i = 0; i < low.size(); ++i) {
      const std::int64_t place = sum - static_cast<std::int64_t>(i);
      if (place >= 0) ways.below += low[i] * upTo[static_cast<std::size_t>(std::min(place, last))];
      if (place > last) continue;
      ways.above += low[i] * from[static_cast<std::size_t>(std::max<std::int64_t>(place, 0))];
      if (place >= 0) ways.at += low[i] * high[static_cast<std::size_t>(place)];
    }
  }

  std::int64_t marked;
  RankSumCounts lower;
  RankSumCounts upper;
};

/// The largest step of which all ranks are multiples, and the ranks in it; 1 where there is one run
/// only. Without ties the step is a whole rank, twice the half that two tied units need.
std::int64_t MeasureInSteps(std::vector<RankedRun>& runs) {
  const std::int64_t lowest = runs.front().rank;
  std::int64_t step = 0;
  for (RankedRun& run : runs) {
    run.rank -= lowest;
    step = std::gcd(step, run.rank);
  }
  step = std::max<std::int64_t>(step, 1);
  for (RankedRun& run : runs) run.rank /= step;
  return step;
}

}  // namespace

MannWhitneyExact ConditionalMannWhitney(std::span<const TiedUnits> runs) {
  TiedUnits all;
  for (const TiedUnits& run : runs) {
    all.first += run.first;
    all.second += run.second;
  }
  // The units of the smaller group are marked; w2 is the sum of their doubled ranks.
  const bool marksFirst = all.first <= all.second;
  const std::int64_t marked = marksFirst ? all.first : all.second;
  const std::int64_t mean2 = marked * (all.Total() + 1);
  std::vector<RankedRun> ranked;
  std::int64_t w2 = 0;
  std::int64_t below = 0;
  for (const TiedUnits& run : runs) {
    if (run.Total() == 0) continue;
    ranked.push_back({run.Total(), 2 * below + run.Total() + 1});
    w2 += (marksFirst ? run.first : run.second) * ranked.back().rank;
    below += run.Total();
  }
  const std::int64_t origin = marked * ranked.front().rank;
  const std::int64_t step = MeasureInSteps(ranked);
  const JoinedRankSums sums(ranked, marked, all.Total() - marked);

  const double total = Combinations(all.Total(), marked);
  const auto share = [total](double ways) { return CutToOne(ways / total); };
  const Ways here = sums.At((w2 - origin) / step);
  // U counts the pairs that group 2 wins: it is large where the ranks of group 1 are small.
  MannWhitneyExact exact;
  exact.sigs.less = share(marksFirst ? here.above : here.below);
  exact.sigs.greater = share(marksFirst ? here.below : here.above);
  exact.point = share(here.at);
  if (w2 == mean2) return exact;
  // Sums that are as far on the other side, or farther.
  const std::int64_t mirrored = 2 * mean2 - w2 - origin;
  const bool isLow = w2 < mean2;
  const Ways there = isLow           ? sums.At((mirrored + step - 1) / step)
                     : mirrored >= 0 ? sums.At(mirrored / step)
                                     : Ways{};
  exact.sigs.twoSided = share(isLow ? here.below + there.above : here.above + there.below);
  return exact;
}

std::vector<double> MannWhitneyProbabilities(std::int64_t n1, std::int64_t n2) {
  const std::int64_t marked = std::min(n1, n2);
  std::vector<RankedRun> runs;
  for (std::int64_t rank = 0; rank < n1 + n2; ++rank) runs.push_back({1, rank});
  const RankSumCounts all(runs, marked, std::max(n1, n2));
  std::vector<double> probabilities = all.Of(marked).counts;
  const double total = Combinations(n1 + n2, marked);
  for (double& p : probabilities) p /= total;
  return probabilities;
}

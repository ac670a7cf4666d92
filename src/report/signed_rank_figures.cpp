#include "report/signed_rank_figures.h"

#include <cmath>
#include <numeric>

#include "kit/ranks/walsh_interval.h"
#include "kit/statistics/sign_flip.h"
#include "kit/statistics/signed_rank.h"
#include "report/extended_tables.h"

namespace {

void AddConditional(ExtendedFigures& figures, const SignedRanks::Units& units) {
  // Weights below 0 may take away from n what stands in a run of ties.
  const std::int64_t n = std::accumulate(units.ties.begin(), units.ties.end(), std::int64_t{0});
  if (n < 1 || n != units.Count() || n > SignedRanks::Units::kMostWithTies) return;
  const auto distribution = SignFlipDistribution::OfTwiceMidRanks(units.ties);
  const std::int64_t twiceSum = std::llround(2.0 * units.positiveRankSum);
  AddConditionalFigures(figures, distribution.TailsOf(twiceSum));
  figures.Add("ConditionalExactPointProbability", distribution.At(twiceSum));
}

}  // namespace

void AddSignedRankFigures(ExtendedFigures& figures, const SignedRanks::Units& units,
                          std::int64_t zeros) {
  const auto n = static_cast<double>(units.Count());
  const SignedRankMoments moments(n, units.tieSum);
  AddNormalFigures(figures, units.positiveRankSum - moments.mean, moments.standardError);
  AddConditional(figures, units);
  if (units.Count() < 1) return;
  const PrattFigures pratt =
      PrattSignedRank(units.positiveRankSum, static_cast<double>(units.positives), n,
                      static_cast<double>(zeros), units.tieSum);
  figures.Add("PrattTestStatistic", pratt.statistic);
  figures.Add("PrattStandardTestStatistic", pratt.figures.z);
  figures.Add("PrattAsymptoticSig2Tailed", pratt.figures.sig);
  figures.Add("RankBiserial", RankBiserial(units.positiveRankSum, n));
}

void AddPseudoMedian(ExtendedFigures& figures, const WeightedValues& values,
                     double confidenceLevel) {
  figures.Add("PseudoMedian", WalshAverages(values).Median());
  const std::int64_t n = values.TotalWeight();
  if (!WalshInterval::Takes(n)) return;
  const auto interval =
      FindWalshInterval(values, SignFlipDistribution::OfRanks(n), confidenceLevel);
  if (!interval) return;
  figures.Add("PseudoMedianLower", interval->lower);
  figures.Add("PseudoMedianUpper", interval->upper);
  figures.Add("PseudoMedianAttainedLevel", interval->attainedLevel);
}

#include "ranges/rank_figures.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "catalogue/cards/kruskal_wallis.h"
#include "catalogue/cards/ks_one_sample.h"
#include "catalogue/cards/ks_two_sample.h"
#include "catalogue/cards/mann_whitney.h"
#include "catalogue/run.h"
#include "kit/fits/kolmogorov.h"
#include "kit/statistics/jonckheere.h"
#include "kit/statistics/kolmogorov_smirnov.h"
#include "kit/statistics/kruskal_wallis.h"
#include "kit/statistics/mann_whitney.h"
#include "kit/statistics/signed_rank.h"

namespace {

constexpr std::size_t kFewestGroups = 2;

RankFigures Failed(std::int32_t code) {
  RankFigures figures;
  figures.messages.push_back({QDStatus(code), MessageKind::Error, {}, {}});
  return figures;
}

DoubleDouble TieSum(const RunSums& sums) {
  return ToDoubles(sums.TiedPairs() + sums.TiedTriples());
}

double SizeOf(const RunSums& sums, std::int32_t group) {
  return static_cast<double>(sums.Groups()[static_cast<std::size_t>(group)].count);
}

std::vector<ComparedSample> GroupsWithUnits(const RunSums& sums) {
  std::vector<ComparedSample> groups;
  for (std::size_t i = 0; i < sums.Groups().size(); ++i) {
    const RunSums::Group& group = sums.Groups()[i];
    if (group.count == 0) continue;
    groups.push_back({static_cast<std::int32_t>(i),
                      HalfOf(group.twiceRankSum) / static_cast<double>(group.count)});
  }
  return groups;
}

/// Compares the groups in their order, or tells why they are not compared.
template <typename Compare>
void ComparePairs(RankFigures& figures, MultipleComparison comparison, double level,
                  std::size_t adjustedFor, Compare compare) {
  comparison.Want(ComparisonKind::Pairwise);
  const std::vector<ComparedSample>& samples = figures.compared;
  if (const auto reason = comparison.ReasonAgainst(level, figures.decidingSig, samples.size())) {
    figures.messages.push_back(*reason);
    return;
  }
  comparison.RunPairwise(samples, adjustedFor, [&](std::int32_t i, std::int32_t j) {
    return compare(samples[static_cast<std::size_t>(i)], samples[static_cast<std::size_t>(j)]);
  });
  figures.pairs = comparison.GetPairs();
}

/// Of a pair of ordered groups, of which `first` is to have the lower values.
PairFigures JonckheerePair(const RunSums& sums, const ComparedSample& first,
                           const ComparedSample& second, double overallZ) {
  const auto a = static_cast<std::size_t>(first.index);
  const auto b = static_cast<std::size_t>(second.index);
  const auto [earlier, later] = std::minmax(a, b);
  WideInteger twice = sums.Pairs()->TwiceOrdered(earlier, later);
  if (b < a) {
    twice = static_cast<WideInteger>(2 * sums.Groups()[a].count) * sums.Groups()[b].count - twice;
  }
  const TiedUnits tied = sums.Pairs()->TiedOf(earlier, later);
  const double sizes[] = {SizeOf(sums, first.index), SizeOf(sums, second.index)};
  const NormalFigures normal =
      JonckheereTerpstra(HalfOf(twice), ToDoubles(tied.pairs), ToDoubles(tied.triples), sizes);
  return {HalfOf(twice), normal.standardError, normal.z, JonckheereSigToward(overallZ, normal.z)};
}

}  // namespace

RankFigures MannWhitneyFigures(const RunSums& sums) {
  namespace card = catalogue::mann_whitney;
  if (sums.Count() == 0) return Failed(catalogue::run::kNoData);
  const RunSums::Group& first = sums.Groups().front();
  const RunSums::Group& second = sums.Groups().back();
  if (first.count < 1 || second.count < 1) return Failed(card::kTwoGroupCodes.groupWithoutData);
  const auto n1 = static_cast<double>(first.count);
  const auto n2 = static_cast<double>(second.count);
  const double u = MannWhitneyU(n1, n2, HalfOf(first.twiceRankSum));
  const NormalFigures normal = MannWhitneyApproximation(u, n1, n2, TieSum(sums));
  RankFigures figures;
  figures.groups = GroupsWithUnits(sums);
  figures.decidingSig = normal.sig;
  figures.statistics = {
      {"TotalN", static_cast<double>(sums.Count())}, {"MannWhitneyU", u},
      {"WilcoxonW", HalfOf(second.twiceRankSum)},    {"TestStatistic", u},
      {"StandardError", normal.standardError},       {"StandardTestStatistic", normal.z},
      {"AsymptoticSig2Tailed", normal.sig}};
  if (ExactMannWhitneyDecides(n1, n2)) {
    figures.decidingSig = ExactMannWhitneyP(first.count, second.count, u);
    figures.statistics.emplace_back("ExactSig2Tailed", figures.decidingSig);
  }
  return figures;
}

RankFigures KruskalWallisFigures(const RunSums& sums, bool wantsPairs, double level) {
  namespace card = catalogue::kruskal_wallis;
  RankFigures figures;
  figures.groups = GroupsWithUnits(sums);
  if (figures.groups.size() < kFewestGroups) return Failed(card::kGroupsCodes.tooFewGroups);
  std::vector<RankedGroup> ranked;
  for (const ComparedSample& group : figures.groups) {
    const auto& of = sums.Groups()[static_cast<std::size_t>(group.index)];
    ranked.push_back({HalfOf(of.twiceRankSum), static_cast<double>(of.count)});
  }
  const ChiSquareFigures overall = KruskalWallis(ranked, TieSum(sums));
  figures.decidingSig = overall.sig;
  figures.statistics = {{"TestStatistic", overall.statistic},
                        {"DegreeOfFreedom", static_cast<double>(ranked.size() - 1)},
                        {"AsymptoticSig2Tailed", overall.sig}};
  figures.messages.push_back({QDStatus(card::kAsymptotic), MessageKind::Help, {}, {}});
  if (!wantsPairs) return figures;
  figures.compared = figures.groups;
  // Groups without units take no part, and yet they count in the adjustment.
  ComparePairs(figures, MultipleComparison(card::kGroupsCodes.comparison), level,
               sums.Groups().size(), [&](const ComparedSample& a, const ComparedSample& b) {
                 return NormalPair(
                     a.measure - b.measure,
                     DunnStandardError(SizeOf(sums, a.index), SizeOf(sums, b.index),
                                       static_cast<double>(sums.Count()), TieSum(sums)));
               });
  return figures;
}

RankFigures JonckheereFigures(const RunSums& sums, bool descends, double level) {
  namespace card = catalogue::jonckheere_terpstra;
  RankFigures figures;
  figures.groups = GroupsWithUnits(sums);
  if (figures.groups.size() < kFewestGroups) return Failed(card::kTooFewGroups);
  std::vector<double> sizes;
  WideInteger before = 0;
  WideInteger pairs = 0;
  for (const ComparedSample& group : figures.groups) {
    const std::int64_t size = sums.Groups()[static_cast<std::size_t>(group.index)].count;
    pairs += before * size;
    before += size;
    sizes.push_back(static_cast<double>(size));
  }
  if (descends) std::ranges::reverse(sizes);
  const WideInteger twice =
      descends ? 2 * pairs - sums.TwiceOrderedPairs() : sums.TwiceOrderedPairs();
  const double statistic = HalfOf(twice);
  const NormalFigures normal = JonckheereTerpstra(statistic, ToDoubles(sums.TiedPairs()),
                                                  ToDoubles(sums.TiedTriples()), sizes);
  figures.decidingSig = normal.sig;
  figures.statistics = {{"TestStatistic", statistic},
                        {"StandardError", normal.standardError},
                        {"StandardTestStatistic", normal.z},
                        {"AsymptoticSig2Tailed", normal.sig}};
  if (sums.Pairs() == nullptr) return figures;
  figures.compared = figures.groups;
  if (descends) std::ranges::reverse(figures.compared);
  ComparePairs(figures, MultipleComparison(card::kComparisonCodes, {.countsPairsOfGroups = true}),
               level, figures.compared.size(),
               [&](const ComparedSample& first, const ComparedSample& second) {
                 return JonckheerePair(sums, first, second, normal.z);
               });
  return figures;
}

RankFigures SmirnovFigures(SmirnovExtremes extremes) {
  namespace card = catalogue::ks_two_sample;
  const auto [n1, n2] = extremes.Sizes();
  if (n1 < 1 || n2 < 1 || !extremes.Finish()) return Failed(card::kEmptyGroup);
  const double absolute = std::max(extremes.Positive(), -extremes.Negative());
  const double z = SmirnovStatistic(static_cast<double>(n1), static_cast<double>(n2), absolute);
  RankFigures figures;
  if (!KolmogorovSmirnovSig(z, figures.decidingSig)) return Failed(card::kExponentialFailed);
  figures.extremes = {
      {"Absolute", absolute}, {"Positive", extremes.Positive()}, {"Negative", extremes.Negative()}};
  figures.statistics = {{"TestStatistic", z}, {"AsymptoticSig2Tailed", figures.decidingSig}};
  return figures;
}

RankFigures FitFigures(const FittedDistribution& wanted, const FittedSums& sums,
                       const ExtremeDifferences& differences) {
  namespace card = catalogue::ks_one_sample;
  if (sums.NoCount()) return Failed(card::kNoPoisson);
  const std::optional<FittedDistribution> fitted = sums.Fit(wanted);
  if (!fitted) return Failed(wanted.CodeWithoutValues());
  const double z = KolmogorovStatistic(sums.Count(), differences);
  RankFigures figures;
  if (const auto code = fitted->CodeAgainst()) {
    figures = Failed(*code);
  } else if (!KolmogorovSmirnovSig(z, figures.decidingSig)) {
    figures = Failed(card::kExponentialFailed);
  } else {
    figures.extremes = {{"Absolute", std::max(differences.Absolute(), 0.0)},
                        {"Positive", differences.Positive()},
                        {"Negative", differences.Negative()}};
    figures.statistics = {{"TotalN", static_cast<double>(sums.Count() + sums.Excluded())},
                          {"TestStatistic", z},
                          {"AsymptoticSig2Tailed", figures.decidingSig}};
    ExtendKolmogorov(figures.extended, *fitted, sums.Count(), differences);
  }
  const bool isLarge = fitted->IsNormalForPoisson();
  if (isLarge)
    figures.messages.push_back({QDStatus(card::kLargePoissonMean), MessageKind::Help, {}, {}});
  if (sums.Excluded() > 0) {
    figures.messages.push_back({QDStatus(fitted->CodeOfExcluded()),
                                MessageKind::Warning,
                                {std::to_string(sums.Excluded())},
                                {}});
  }
  return figures;
}

RankFigures SignedRankFigures(const SignedRankSums& ranked, bool isOfPairs) {
  const RunSums& sums = ranked.sums;
  const std::int64_t all = sums.Count() + ranked.zeros;
  if (all == 0) return Failed(catalogue::run::kNoData);
  const double positiveRankSum = HalfOf(sums.Groups()[ranked.positive].twiceRankSum);
  const NormalFigures normal =
      WilcoxonSignedRank(positiveRankSum, static_cast<double>(sums.Count()), TieSum(sums).high);
  RankFigures figures;
  figures.decidingSig = normal.sig;
  figures.statistics = {{"TotalN", static_cast<double>(isOfPairs ? all : sums.Count())},
                        {"TestStatistic", positiveRankSum},
                        {"StandardError", normal.standardError},
                        {"StandardTestStatistic", normal.z},
                        {"AsymptoticSig2Tailed", normal.sig}};
  return figures;
}

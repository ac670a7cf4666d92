#include "catalogue/cards/hodges_lehmann_pairs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "catalogue/run.h"
#include "kit/order/interruption.h"
#include "kit/order/order_statistics.h"
#include "kit/ranks/rank.h"
#include "kit/ranks/walsh_interval.h"
#include "kit/statistics/interval_ranks.h"
#include "kit/statistics/order_statistic_limits.h"
#include "kit/statistics/sign_flip.h"
#include "kit/statistics/signed_rank.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "tests/related/continuous_fields.h"
#include "tests/related/paired_test.h"

namespace card = catalogue::hodges_lehmann_pairs;

namespace {

/// Sum of t^3 - t over the runs of tied sizes |d|. In ascending order they are the negative values,
/// the last one first, merged with the others.
double TieSumOfSizes(const WeightedValues& values) {
  NPARRank ranks;
  std::size_t above = 0;
  while (above < values.Size() && values.Value(above) < 0.0) ++above;
  std::size_t below = above;
  SparseCheck check;
  for (std::size_t left = values.Size(); left > 0; --left) {
    check.Step();
    // Not-a-numbers are the last of the others, and of all.
    const bool isAboveNext =
        below == 0 || (above < values.Size() && values.Value(above) <= -values.Value(below - 1));
    const std::size_t place = isAboveNext ? above++ : --below;
    static_cast<void>(ranks.AddValue(std::abs(values.Value(place)),
                                     static_cast<double>(values.Weight(place)), 0.0));
  }
  ranks.CloseRun();
  return ranks.TieSum().high;
}

/// That of the limits between two order statistics among all Walsh averages, without ties. A rank
/// outside them is that of the first or of the last one.
double AttainedLevel(const IntervalRanks& limits, const SignFlipDistribution& signedRanks) {
  const std::int64_t count = signedRanks.Largest();
  const auto rankOf = [count](WideInteger rank) {
    return static_cast<std::int64_t>(std::clamp<WideInteger>(rank, 1, count));
  };
  const std::int64_t first = rankOf(ToWideInteger(limits.below) + 1);
  const std::int64_t last = rankOf(ToWideInteger(limits.last));
  return 1.0 - signedRanks.UpTo(first - 1) - signedRanks.UpTo(count - last);
}

/// Hodges-Lehmann estimate of the median of the paired differences d = second - first, with its
/// distribution-free interval.
///
/// Formulas, limits, sources: docs/statistics/hodges_lehmann_pairs.md.
///
/// One pass; the Walsh averages are not listed.
class NPARHodgesLehmannPairs final : public NPARPairedTest {
 public:
  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = QDMV::gMissingValue,
         .condition = {"R_HodgesLehman_2",  // hosts read it so
                       {IndexText(differences.First()), IndexText(differences.Second())}}},
        [this](XMLElement& algorithm) {
          AddFigures(algorithm, "StatisticsResult", {{"Estimate", estimate}});
          AddFigures(algorithm, "Asymptotic", {{"Lower", lower}, {"Upper", upper}});
        });
  }

 protected:
  /// Error 222409: "variableIndex" does not hold two positions.
  void Prepare(const SettingsReader& settings) override {
    PreparePair(settings, card::kFieldsCodes.wrongCount);
  }

  /// A record whose weight is below 1 has no averages.
  void Take(RecordBatch& batch) override {
    const double* d = TakePair(batch);
    weight.UseTruncated(batch, [&](auto weightAt) {
      differences.Count(d, batch.Size(), weightAt);
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        if (weightAt(i) >= 1) values.Add(d[i], weightAt(i));
      }
    });
  }

  /// Error 220003: the weights sum to 0.
  void Compute() override {
    if (differences.TotalN() == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    values.Sort();
    const std::int64_t units = values.TotalWeight();
    if (wantsExtended && WalshInterval::Takes(units)) {
      signedRanks = SignFlipDistribution::OfRanks(units);
      exact = FindWalshInterval(values, *signedRanks, confidenceLevel);
    }
    // Nothing raises minus infinity.
    const bool isRaised = differences.TieCount() > 0 && std::isfinite(differences.Minimum());
    const double shift = isRaised ? 1.0 - differences.Minimum() : 0.0;
    if (shift != 0.0) values.Shift(shift);
    const SignedRankMoments moments(static_cast<double>(differences.TotalN()),
                                    TieSumOfSizes(values));
    const IntervalRanks limits(moments.mean, moments.standardError, confidenceLevel);
    const WalshAverages averages(values);
    estimate = averages.Median() - shift;
    lower = averages.Select(ToWideInteger(limits.below) + 1) - shift;
    upper = averages.Select(ToWideInteger(limits.last)) - shift;
    if (signedRanks) attainedLevel = AttainedLevel(limits, *signedRanks);
    values = WeightedValues();
  }

  void Extend(ExtendedFigures& figures) override {
    if (signedRanks) {
      const bool isAttainable = IsLevelAttainable(
          confidenceLevel, [this](std::int64_t count) { return signedRanks->UpTo(count); });
      figures.Add("AttainedLevel", attainedLevel);
      figures.Add("LevelIsAttainable", isAttainable ? 1 : 0);
    }
    if (exact) {
      figures.Add("ExactLower", exact->lower);
      figures.Add("ExactUpper", exact->upper);
      figures.Add("ExactAttainedLevel", exact->attainedLevel);
    }
    AddFields(figures);
  }

 private:
  WeightedValues values;  // d of each record
  double estimate = 0.0;
  double lower = 0.0;
  double upper = 0.0;
  std::optional<SignFlipDistribution> signedRanks;  // for extended figures of few units
  std::optional<WalshInterval> exact;
  double attainedLevel = 0.0;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  LookUpContinuousFields(construction, card::kFieldsCodes, FieldCount::Two);
  return construction.Make<NPARHodgesLehmannPairs>();
}

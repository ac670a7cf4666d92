#include "catalogue/cards/sign.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>

#include "catalogue/run.h"
#include "kit/statistics/binomial.h"
#include "kit/statistics/exact_binomial.h"
#include "kit/statistics/normal.h"
#include "kit/statistics/order_statistic_limits.h"
#include "kit/statistics/proportion_interval.h"
#include "kit/summaries/quartiles.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/difference_table.h"
#include "report/elements.h"
#include "tests/related/paired_test.h"

namespace card = catalogue::sign;

namespace {

/// Sign test: is the median of the paired differences d = second - first zero?
///
/// Formulas, limits, sources: docs/statistics/sign.md.
///
/// The exact value decides where there is one. Pass 0 yields every figure; pass 1 only the
/// histogram of d, whose range pass 0 found.
class NPARSign final : public NPARPairedTest {
 public:
  /// The largest n with an exact p.
  static constexpr std::int64_t kExactLimit = 25;

  using NPARPairedTest::NPARPairedTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = exactSig.value_or(approximation.sig),
         .condition = {"R_Sign_2",
                       {IndexText(differences.First()), IndexText(differences.Second())}}},
        [this](XMLElement& algorithm) {
          AddDifferenceTable(algorithm, differences);
          AddNormalStatistics(
              algorithm,
              {{"TotalN", differences.TotalN()}, {"TestStatistic", differences.PositiveCount()}},
              approximation, exactSig);
        });
  }

 protected:
  /// Error 220918: "variableIndex" does not hold two different positions.
  void Prepare(const SettingsReader& settings) override {
    ExpectPasses(2);
    PreparePair(settings, card::kNoPair);
    if (std::min(differences.First(), differences.Second()) < 0 ||
        differences.First() == differences.Second()) {
      Fail(card::kNoPair);
    }
  }

  void Take(RecordBatch& batch) override { TakeDifferences(batch); }

  /// Error 220003: the weights sum to 0. Help message 220916: the exact p is given.
  void Compute() override {
    if (differences.TotalN() == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    const std::int64_t n = differences.PositiveCount() + differences.NegativeCount();
    if (n == 0) return;
    if (n <= kExactLimit) {
      Help(card::kExactGiven);
      const auto tails = TailsOfCount(differences.PositiveCount(), n, 0.5);
      if (tails) exactSig = std::min(1.0, 2.0 * std::min(tails->lower, tails->upper));
    }
    approximation = BinomialApproximation(differences.PositiveCount(), n, 0.5);
  }

  void Extend(ExtendedFigures& figures) override {
    const std::int64_t above = differences.PositiveCount();
    const std::int64_t n = above + differences.NegativeCount();
    if (n >= 1) {
      if (const auto tails = ExactBinomialTails(above, n, 0.5)) {
        figures.Add("ExactSig2Tailed", tails->twoSided);
        figures.Add("ExactSig1TailedLess", tails->less);
        figures.Add("ExactSig1TailedGreater", tails->greater);
      }
      const auto count = static_cast<double>(n);
      const NormalFigures uncorrected =
          StandardizedFigures(static_cast<double>(above) - count * 0.5, std::sqrt(count) * 0.5);
      figures.Add("UncorrectedStandardTestStatistic", uncorrected.z);
      figures.Add("UncorrectedAsymptoticSig2Tailed", uncorrected.sig);
      const ProportionInterval wilson = WilsonInterval(above, n, confidenceLevel);
      figures.Add("PositiveShare", static_cast<double>(above) / static_cast<double>(n));
      figures.Add("PositiveShareLower", wilson.lower);
      figures.Add("PositiveShareUpper", wilson.upper);
    }
    AddMedian(figures);
    AddFields(figures);
  }

 private:
  void AddMedian(ExtendedFigures& figures) {
    const WeightedValues& values = SortDifferences();
    if (values.Size() == 0) return;
    figures.Add("MedianDifference", QuartilesOf(values).median);
    const std::int64_t n = values.TotalWeight();
    const auto limits = n < 2 ? std::nullopt : MedianLimits(n, confidenceLevel);
    if (!limits) return;
    figures.Add("MedianDifferenceLower", UnitAt(values, limits->lower));
    figures.Add("MedianDifferenceUpper", UnitAt(values, limits->upper));
    figures.Add("MedianDifferenceAttainedLevel", limits->attainedLevel);
  }

  NormalFigures approximation;  // as it stands where no difference is above or below 0
  std::optional<double> exactSig;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const std::vector<std::int32_t> variables = construction.LookUpList(
      card::kNoVariableName, card::kUnknownVariable,
      [&](std::int32_t index) { construction.RequireContinuous(index, card::kNotContinuous); });
  if (variables.size() > 2) construction.Fail(card::kTooManyVariables);
  if (variables.size() < 2) construction.Fail(card::kNoPair);
  construction.Put("variableIndex", variables);
  if (construction.IsOK()) {
    // Hosts expect the summaries of the list's first two variables, whichever pair is tested.
    planner.RegisterSortedVariable(0);
    planner.RegisterSortedVariable(1);
  }
  return construction.Make<NPARSign>();
}

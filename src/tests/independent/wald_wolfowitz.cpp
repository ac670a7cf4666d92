#include "catalogue/cards/wald_wolfowitz.h"

#include <cstdint>
#include <optional>

#include "kit/ranks/merged_runs.h"
#include "kit/statistics/runs.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"
#include "tests/independent/two_group_test.h"

namespace card = catalogue::wald_wolfowitz;

namespace {

/// Wald-Wolfowitz runs test: do two groups come from one population? Few runs in the merged
/// ascending values speak against it.
///
/// Formulas, limits, sources: docs/statistics/wald_wolfowitz.md.
///
/// Ties between the groups leave the number of runs open: the figures are given for the smallest
/// and for the largest possible one, and the largest decides.
class NPARWaldWolfRuns final : public NPARTwoGroupTest {
 public:
  /// The largest N with an exact p.
  static constexpr std::int64_t kExactLimit = 30;

  explicit NPARWaldWolfRuns(QDSettings* settings)
      : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = maximum.Sig(),
         .condition = TwoGroupCondition("WaldWolfowitz", groups)},
        [this](XMLElement& algorithm) {
          AddTwoGroupTables(algorithm, groups, *tally, {counts[0], {}}, {counts[1], {}});
          XMLElement* statistics =
              AddFigures(algorithm, "StatisticsResult",
                         {{"TotalN", TotalCount()}, {"InterGroupTies", runs.InterGroupTies()}});
          WriteFigures(*statistics, "MinimumRuns", minimum);
          WriteFigures(*statistics, "MaximumRuns", maximum);
        });
  }

 protected:
  /// Warning 220616 with the number of blocks of values that both groups have.
  void TakeUnits(const GroupTally::Units& units) override {
    for (std::size_t i = 0; i < units.count; ++i) {
      runs.Add(units.values[i], units.GroupOf(i), units.Weight(i));
    }
  }

  void ComputeFigures() override {
    runs.Finish();
    approximation =
        RunsApproximation(static_cast<double>(counts[0]), static_cast<double>(counts[1]));
    minimum = FiguresOf(runs.Minimum());
    maximum = FiguresOf(runs.Maximum());
    if (runs.InterGroupTies() > 0) {
      Warn(card::kTiesBetweenGroups, {IntegerText(runs.InterGroupTies())});
    }
  }

  void Extend(ExtendedFigures& figures) override {
    const auto fewest = ExactRunsTails(counts[0], counts[1], minimum.runs);
    const auto most = ExactRunsTails(counts[0], counts[1], maximum.runs);
    if (fewest && most && !tally->HasNegativeWeight()) {
      figures.Add("MinimumRunsExactSig1Tailed", fewest->less);
      figures.Add("MinimumRunsExactSig2Tailed", fewest->twoSided);
      figures.Add("MaximumRunsExactSig1Tailed", most->less);
      figures.Add("MaximumRunsExactSig2Tailed", most->twoSided);
    }
    figures.Add(TwoGroupsTable(*tally));
  }

 private:
  struct Figures {
    std::int64_t runs = 0;
    double standardTestStatistic = 0.0;
    double asymptoticSig = 0.0;
    std::optional<double> exactSig;
    [[nodiscard]] double Sig() const { return exactSig.value_or(asymptoticSig); }
  };

  [[nodiscard]] Figures FiguresOf(std::int64_t runCount) const {
    Figures figures;
    figures.runs = runCount;
    figures.standardTestStatistic = approximation.FiguresOf(runCount).z;
    figures.asymptoticSig = QDDistFun::CdfStdNorm(figures.standardTestStatistic);
    if (TotalCount() <= kExactLimit)
      figures.exactSig = RunsLowerTail(counts[0], counts[1], runCount);
    return figures;
  }

  void WriteFigures(XMLElement& statistics, const char* name, const Figures& figures) const {
    AddFigures(statistics, name,
               {{"TestStatistic", figures.runs},
                {"StandardError", approximation.standardError},
                {"StandardTestStatistic", figures.standardTestStatistic},
                {"AsymptoticSig1Tailed", figures.asymptoticSig},
                {"ExactSig1Tailed", figures.exactSig}});
  }

  MergedRuns runs;
  RunsApproximation approximation;
  Figures minimum;
  Figures maximum;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  return AddTwoGroupTest<NPARWaldWolfRuns>(construction, variables);
}

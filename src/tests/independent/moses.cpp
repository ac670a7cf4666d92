#include "catalogue/cards/moses.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "kit/ranks/rank.h"
#include "kit/statistics/moses.h"
#include "planning/two_group_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "report/two_group_tables.h"
#include "tests/independent/control_ranks.h"
#include "tests/independent/two_group_test.h"

namespace card = catalogue::moses;

namespace {

/// Moses test of extreme reactions: does the experimental group, group 2, react toward both
/// extremes, so that the control group, group 1, spans few ranks?
///
/// Formulas, limits, sources: docs/statistics/moses.md.
///
/// Pass 0 ranks and counts the groups, pass 1 finds the ranks at the ends of the two spans, of
/// which the trimmed one decides.
class NPARMoses final : public NPARTwoGroupTest {
 public:
  explicit NPARMoses(QDSettings* settings)
      : NPARTwoGroupTest(settings, card::kTwoGroupCodes, Passes::WithHistograms) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(*this,
                          {.card = card::kCard,
                           .decidingSig = trimmed.sig,
                           .condition = TwoGroupCondition("Moses", groups)},
                          [this](XMLElement& algorithm) {
                            AddTwoGroupTables(algorithm, groups, *tally, {counts[0], meanRanks[0]},
                                              {counts[1], meanRanks[1]});
                            AddFigures(algorithm, "StatisticsResult",
                                       {{"TotalN", TotalCount()},
                                        {"NumberOfOutliers", outliers},
                                        {"ObservedControlSpan", observed.length},
                                        {"ExactSig1TailedObserved", observed.sig},
                                        {"TestStatistic", trimmed.length},
                                        {"ExactSig1Tailed", trimmed.sig}});
                          });
  }

 protected:
  void Prepare(const SettingsReader& settings) override {
    std::int32_t given = 0;
    if (settings.Find("NumberOfOutliers", given)) givenOutliers = given;
    NPARTwoGroupTest::Prepare(settings);
  }

  /// Error 220516: the trimming leaves no control unit.
  void TakeUnits(const GroupTally::Units& units) override { units.AddTo(ranks); }

  void ComputeFigures() override {
    ranks.CloseRun();
    for (std::size_t group = 0; group < counts.size(); ++group) {
      const double rankSum = ranks.GroupEntry(static_cast<double>(group)).rankSum;
      meanRanks[group] = rankSum / static_cast<double>(counts[group]);
    }
    const std::int64_t control = counts[TwoGroups::First];
    outliers = givenOutliers ? *givenOutliers : std::max<std::int64_t>(1, control / 20);
    if (control - 2 * outliers < 1) {
      Fail(card::kBadOutliers);
      return;
    }
    ends = ControlRanks({1, outliers + 1, control - outliers, control});
  }

  void TakeUnitsAgain(const GroupTally::Units& units) override { ends.Add(units); }

  void Finish() override {
    ends.CloseRun();
    observed = SpanOf(0, ends.Of(0), ends.Of(3));
    trimmed = SpanOf(outliers, ends.Of(1), ends.Of(2));
  }

  void Extend(ExtendedFigures& figures) override { figures.Add(TwoGroupsTable(*tally, meanRanks)); }

 private:
  struct Span {
    std::int64_t length = 0;
    double sig = 0.0;
  };

  [[nodiscard]] Span SpanOf(std::int64_t trimmedUnits, double first, double last) const {
    const std::int64_t length = TruncateToInt64(std::floor(last - first + 1.0 + 0.5));
    return {length, MosesSpanTail(counts[TwoGroups::First], counts[TwoGroups::Second], trimmedUnits,
                                  length)};
  }

  NPARRank ranks;
  ControlRanks ends;  // of the whole span and, inside it, of the trimmed one
  std::array<double, 2> meanRanks{0.0, 0.0};
  std::optional<std::int32_t> givenOutliers;
  std::int64_t outliers = 0;
  Span observed;
  Span trimmed;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  const auto variables = ResolveTwoGroups(construction, card::kTwoGroupCodes);
  if (construction.ReadFlag("userSpecifyNumberOfOutliers")) {
    std::int32_t outliers = -1;
    static_cast<void>(construction.Read("NumberOfOutliers", outliers));
    if (outliers < 0) construction.Fail(card::kBadOutliers);
    construction.Put("NumberOfOutliers", outliers);
  }
  return AddTwoGroupTest<NPARMoses>(construction, variables);
}

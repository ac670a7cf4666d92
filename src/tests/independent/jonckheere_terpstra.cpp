#include "tests/independent/jonckheere_terpstra.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>

#include "catalogue/cards/jonckheere_terpstra.h"
#include "planning/group_construction.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kUnknownVariable = 222203;  // a name is no variable's
constexpr std::int32_t kTooFewGroups = 222210;     // fewer than two groups with data
constexpr std::int32_t kNoVariable = 222215;       // no test variable is named
constexpr std::int32_t kNoGroup = 222216;          // no group variable is named
constexpr std::int32_t kNotCategorical = 222217;   // the group variable
constexpr std::int32_t kNotContinuous = 222218;    // the test variable
constexpr ComparisonCodes kComparisonCodes{.tooFewPairwise = 222211,
                                           .tooFewStepwise = 222212,
                                           .notSignificantPairwise = 222213,
                                           .notSignificantStepwise = 222214};

constexpr std::int32_t kPasses = 3;

/// The codes of all categories, ascending: as listed for an ordinal variable, else by value.
std::vector<double> AscendingCodes(TestConstruction& construction, std::int32_t group) {
  const QDCategoryList& categories = *construction.CategoriesOf(group);
  std::vector<std::int32_t> codes(static_cast<std::size_t>(categories.Size()));
  std::iota(codes.begin(), codes.end(), 0);
  if (!construction.Planner().GetVarInfo().IsOrdinal(group)) {
    const bool isNumeric = construction.KindOf(group) == VariableKind::NumericCategory;
    std::stable_sort(codes.begin(), codes.end(), [&](std::int32_t a, std::int32_t b) {
      return isNumeric ? categories.GetNumber(a) < categories.GetNumber(b)
                       : categories.GetText(a) < categories.GetText(b);
    });
  }
  return {codes.begin(), codes.end()};
}

}  // namespace

NPARJonckTer::NPARJonckTer(QDSettings* settings)
    : NPARColumnTest(settings), comparison(kComparisonCodes) {}

void NPARJonckTer::ReadSettings() {
  std::vector<std::int32_t> order;
  std::string hypothesis;
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("userSpecifyGroupRange", hasGroupRange));
  if (!settings->GetSettingValByName("groupOrder", order) && sharedData != nullptr) {
    const std::int32_t count = sharedData->GetCategoryCount(samples.GroupVariable());
    order.resize(static_cast<std::size_t>(std::max(0, count)));
    std::iota(order.begin(), order.end(), 0);
  }
  if (settings->GetSettingValByName("orderOfHypotheses", hypothesis) &&
      hypothesis == "orderLargestToSmallest") {
    std::reverse(order.begin(), order.end());
  }
  const auto isOn = [this](const char* key) {
    double value = 0.0;
    return settings->GetSettingValByName(key, value) && value == 1.0;
  };
  if (isOn("pairWise")) comparison.Want(ComparisonKind::Pairwise);
  if (isOn("stepWise")) comparison.Want(ComparisonKind::Stepwise);

  samples.Start(static_cast<std::int32_t>(order.size()), sharedTallies);
  positionOfCode.resize(order.size());
  for (std::size_t position = 0; position < order.size(); ++position) {
    positionOfCode[static_cast<std::size_t>(order[position])] = position;
  }
  overallCounts = JonckheereCounts(order.size());
  passesLeft = kPasses;
}

QDStatus NPARJonckTer::BeginPass() {
  if (samples.PassesDone() == 0) {
    samples.Read(*settings);
    if (status.IsOK()) ReadSettings();
  }
  return status;
}

QDStatus NPARJonckTer::ProcessBatch(RecordBatch& batch) {
  if (status.IsError()) return status;
  const GroupSamples::Units& units = samples.Take(batch);
  if (samples.PassesDone() == 0) {
    for (std::size_t i = 0; i < units.count; ++i) {
      overallCounts.Add(units.values[i], units.Weight(i), PositionOf(units.codes[i]));
    }
    if (comparison.IsPending()) units.AddTo(overallRanks);
  } else if (comparison.IsPending()) {
    for (std::size_t i = 0; i < units.count; ++i) {
      if (samples.PlaceOf(units.codes[i]) == GroupSamples::kNoPlace) continue;
      Compare(units.values[i], units.Weight(i), PositionOf(units.codes[i]));
    }
  }
  return status;
}

void NPARJonckTer::Compare(double x, std::int64_t weight, std::size_t position) {
  if (comparison.WantsStepwise()) {
    ranges.Add(x, weight, position);
    return;
  }
  for (std::size_t earlier = 0; earlier < position; ++earlier) {
    pairs[PairIndex(earlier, position)].Add(x, weight, true);
  }
  for (std::size_t later = position + 1; later < orderedCodes.size(); ++later) {
    pairs[PairIndex(position, later)].Add(x, weight, false);
  }
}

bool NPARJonckTer::NeedsAnotherPass() {
  return !status.IsError() && samples.PassesDone() < kPasses;
}

QDStatus NPARJonckTer::EndPass() {
  if (status.IsError()) return status;
  const bool isOverall = samples.PassesDone() == 0;
  samples.EndPass();
  if (isOverall) {
    EndOverall();
  } else if (comparison.IsPending()) {
    if (comparison.WantsPairwise()) EndPairwise();
    if (comparison.WantsStepwise()) EndStepwise();
  }
  passesLeft = kPasses - samples.PassesDone();
  return status;
}

void NPARJonckTer::EndOverall() {
  orderedCodes = samples.Codes();
  std::sort(orderedCodes.begin(), orderedCodes.end(), [this](std::int32_t a, std::int32_t b) {
    return positionOfCode[static_cast<std::size_t>(a)] <
           positionOfCode[static_cast<std::size_t>(b)];
  });
  if (orderedCodes.size() < 2) {
    ReportStatus(QDStatus(kTooFewGroups), MessageKind::Error);
    return;
  }
  std::vector<double> sizes;
  for (std::size_t position = 0; position < orderedCodes.size(); ++position) {
    positionOfCode[static_cast<std::size_t>(orderedCodes[position])] = position;
    sizes.push_back(SizeAt(position));
  }
  overallCounts.CloseRun();
  overall = StandardizeJonckheere(overallCounts.Sums(), sizes);
  twoTailedSig = 2.0 * QDDistFun::SfStdNorm(std::fabs(overall.standardTestStatistic));
  if (!comparison.PassGate(*this, sigLevel, twoTailedSig, orderedCodes.size())) return;
  overallRanks.CloseRun();
  if (comparison.WantsPairwise()) {
    pairs.resize(PairIndex(0, orderedCodes.size()));
  } else {
    ranges = RangeCounts(orderedCodes.size());
  }
}

std::vector<ComparedSample> NPARJonckTer::OrderedSamples() {
  std::vector<ComparedSample> list;
  for (const std::int32_t code : orderedCodes) {
    list.push_back(
        {code, overallRanks.GroupEntry(code).rankSum / static_cast<double>(samples.CountOf(code))});
  }
  return list;
}

double NPARJonckTer::OneTailedSig(double z) const {
  const bool wasBelow = overall.standardTestStatistic < 0.0;
  const double size = std::fabs(z);
  return (z < 0.0) == wasBelow ? QDDistFun::SfStdNorm(size) : QDDistFun::CdfStdNorm(size);
}

void NPARJonckTer::EndPairwise() {
  const std::size_t groupCount = orderedCodes.size();
  comparison.RunPairwise(OrderedSamples(), groupCount, [this](std::int32_t i, std::int32_t j) {
    const auto earlier = static_cast<std::size_t>(i);
    const auto later = static_cast<std::size_t>(j);
    JonckheerePair& pair = pairs[PairIndex(earlier, later)];
    pair.CloseRun();
    const JonckheereFigures figures =
        StandardizeJonckheere(pair.Sums(), {SizeAt(earlier), SizeAt(later)});
    return PairFigures{figures.statistic, figures.standardError, figures.standardTestStatistic,
                       OneTailedSig(figures.standardTestStatistic)};
  });
  pairs = {};
}

void NPARJonckTer::EndStepwise() {
  ranges.Finish();
  comparison.StartStepwise(OrderedSamples(), sigLevel);
  while (!comparison.IsDone()) {
    comparison.EndStepwisePass(*this, [this](std::size_t i) {
      const SampleRange& range = comparison.GetWorkList()[i];
      std::vector<double> sizes;
      sizes.reserve(range.Size());
      for (std::size_t p = range.first; p <= range.last; ++p) sizes.push_back(SizeAt(p));
      const JonckheereFigures figures =
          StandardizeJonckheere({ranges.OrderedPairs(range), ranges.Ties(range)}, sizes);
      return RangeFigures{figures.statistic, OneTailedSig(figures.standardTestStatistic)};
    });
  }
  ranges = RangeCounts(0);
}

void NPARJonckTer::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  samples.AppendRequired(positions);
}

XMLElement* NPARJonckTer::WriteResults() {
  auto algorithm = CreateAlgorithm("IJonckheereTerpstra", "hypothesis_test", "Independent_Samples",
                                   DecisionWord(status, sigLevel, twoTailedSig));
  AddCondition(*algorithm,
               hasGroupRange ? "CategoryListsAreSpecified_I_JonckheereTerpstra_2 "  // with a blank
                             : "DefaultAllDistinctValuesUsed_I_JonckheereTerpstra_2",
               {IndexText(samples.TestVariable()), IndexText(samples.GroupVariable())});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TestStatistic", overall.statistic);
  AddAttributeRow(*statistics, "StandardError", overall.standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", overall.standardTestStatistic);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", twoTailedSig);
  AddBoxPlotInfo(*algorithm, samples, static_cast<std::int64_t>(samples.Codes().size()));
  WriteComparison(*algorithm, comparison);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::jonckheere_terpstra::kCard>(
    TestConstruction& construction) {
  const auto variables = construction.LookUpTestAndGroup(
      {kNoVariable, kNoGroup, kUnknownVariable, kNotContinuous, kNotCategorical});
  if (construction.IsOK()) {
    construction.PutTestAndGroup(variables);
    construction.Put("groupOrder", AscendingCodes(construction, variables.group));
    construction.Put("orderOfHypotheses",
                     construction.ReadText("orderOfHypotheses", "orderSmallestToLargest"));
    construction.Put("userSpecifyGroupRange", false);  // all groups take part
    const std::string word = construction.ReadText("typeOfMultipleComparison", "none");
    construction.Put("pairWise", word == "pairWise");
    construction.Put("stepWise", word == "stepWise");
  }
  return AddGroupTest<NPARJonckTer>(construction, variables);
}

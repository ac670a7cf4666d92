#include "tests/independent/kruskal_wallis.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <string>
#include <utility>

#include "catalogue/cards/kruskal_wallis.h"
#include "planning/group_construction.h"
#include "report/box_plot_table.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kNoComparisonWord = 222101;  // "typeOfMultipleComparison" is absent
constexpr std::int32_t kNoVariable = 222103;        // a name is absent or no variable's
constexpr std::int32_t kNotContinuous = 222109;     // the test variable
constexpr std::int32_t kNotCategorical = 222110;    // the group variable
constexpr std::int32_t kAsymptotic = 222111;        // help: asymptotic and corrected for ties
constexpr std::int32_t kTooFewGroups = 222112;      // fewer than two groups with data
constexpr std::int32_t kTooFewCategories = 222115;  // of the group variable
constexpr ComparisonCodes kComparisonCodes{222118, 222116, 222119, 222117};

constexpr StepwisePolicy kJudgedOnPlainSig{false, false};
constexpr std::int32_t kPasses = 3;

struct RankedGroup {
  double rankSum;
  double count;
};

/// H and its significance; `tieSum` is T of the groups' ranks.
RangeFigures ComputeH(const std::vector<RankedGroup>& groups, double tieSum) {
  double n = 0.0;
  double sum = 0.0;
  for (auto group = groups.rbegin(); group != groups.rend(); ++group) {
    n += group->count;
    sum += group->rankSum * group->rankSum / group->count;
  }
  const double uncorrected = 12.0 * sum / ((n + 1.0) * n) - (3.0 * n + 3.0);
  const double correction = 1.0 - tieSum / (n * n * n - n);
  // Equal mean ranks give 0 but for rounding.
  const double h = correction == 0.0 ? 0.0 : std::max(0.0, uncorrected / correction);
  return {h, QDDistFun::SfChi(h, static_cast<double>(groups.size()) - 1.0)};
}

}  // namespace

NPARKruskalWOneWay::NPARKruskalWOneWay(QDSettings* settings)
    : NPARColumnTest(settings), comparison(kComparisonCodes, kJudgedOnPlainSig) {}

QDStatus NPARKruskalWOneWay::BeginPass() {
  if (samples.PassesDone() == 0) {
    samples.Read(*settings);
    if (status.IsError()) return status;
    passesLeft = kPasses;
    std::int32_t categoryCount = 0;
    std::string word = "none";
    static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
    static_cast<void>(settings->GetSettingValByName("numberOfCategories", categoryCount));
    static_cast<void>(settings->GetSettingValByName("typeOfMultipleComparison", word));
    samples.Start(categoryCount, sharedTallies);
    comparison.Want(ComparisonFromWord(word));
  }
  if (status.IsOK() && samples.PassesDone() == 2 && comparison.WantsStepwise()) OrderGroups();
  return status;
}

QDStatus NPARKruskalWOneWay::ProcessBatch(RecordBatch& batch) {
  if (status.IsError()) return status;
  const GroupSamples::Units& units = samples.Take(batch);
  if (samples.PassesDone() == 0) {
    units.AddTo(overallRanks);
  } else if (samples.PassesDone() == 2 && comparison.IsPending()) {
    for (std::size_t i = 0; i < units.count; ++i) {
      const std::size_t place = samples.PlaceOf(units.codes[i]);
      if (place == GroupSamples::kNoPlace) continue;
      ranges.Add(units.values[i], units.Weight(i), positionOfPlace[place]);
    }
  }
  return status;
}

bool NPARKruskalWOneWay::NeedsAnotherPass() {
  return !status.IsError() && samples.PassesDone() < kPasses;
}

QDStatus NPARKruskalWOneWay::EndPass() {
  if (status.IsError()) return status;
  samples.EndPass();
  if (samples.PassesDone() == 1) EndOverall();
  if (samples.PassesDone() == kPasses && comparison.IsPending()) RunStepwise();
  passesLeft = status.IsError() ? 0 : kPasses - samples.PassesDone();
  return status;
}

void NPARKruskalWOneWay::EndOverall() {
  if (samples.Codes().size() < 2) {
    ReportStatus(QDStatus(kTooFewGroups), MessageKind::Error);
    return;
  }
  overallRanks.CloseRun();
  std::vector<RankedGroup> groups;
  for (const std::int32_t code : samples.Codes()) {
    groups.push_back(
        {overallRanks.GroupEntry(code).rankSum, static_cast<double>(samples.CountOf(code))});
    meanRanks.push_back(groups.back().rankSum / groups.back().count);
  }
  overall = ComputeH(groups, overallRanks.TieSum());
  ReportStatus(QDStatus(kAsymptotic), MessageKind::Help);
  if (comparison.PassGate(*this, sigLevel, overall.sig, groups.size()) &&
      comparison.WantsPairwise()) {
    RunPairwise();
  }
}

void NPARKruskalWOneWay::RunPairwise() {
  const double n = static_cast<double>(samples.TotalWeight());
  const double variance = (n + 1.0) * n / 12.0 - overallRanks.TieSum() / (12.0 * (n - 1.0));
  std::vector<ComparedSample> list;
  for (std::size_t place = 0; place < meanRanks.size(); ++place) {
    list.push_back({samples.Codes()[place], meanRanks[place]});
  }
  // Categories without data take no part, and yet they count in the adjustment.
  const auto adjustedFor = static_cast<std::size_t>(samples.CategoryCount());
  comparison.RunPairwise(std::move(list), adjustedFor, [&](std::int32_t i, std::int32_t j) {
    const auto a = static_cast<std::size_t>(i);
    const auto b = static_cast<std::size_t>(j);
    const double scale = 1.0 / samples.CountAt(b) + 1.0 / samples.CountAt(a);
    return NormalPair(meanRanks[a] - meanRanks[b], std::sqrt(scale * variance));
  });
}

void NPARKruskalWOneWay::OrderGroups() {
  orderedPlaces.resize(meanRanks.size());
  std::iota(orderedPlaces.begin(), orderedPlaces.end(), std::size_t{0});
  const auto key = [this](std::size_t place) {
    return std::pair(meanRanks[place], samples.BoxPlots()[place].Summary().GetMedian());
  };
  std::stable_sort(orderedPlaces.begin(), orderedPlaces.end(),
                   [&key](std::size_t a, std::size_t b) { return key(a) < key(b); });
  positionOfPlace.resize(orderedPlaces.size());
  for (std::size_t position = 0; position < orderedPlaces.size(); ++position) {
    positionOfPlace[orderedPlaces[position]] = position;
  }
  ranges = RangeCounts(orderedPlaces.size());
}

void NPARKruskalWOneWay::RunStepwise() {
  ranges.Finish();
  std::vector<ComparedSample> ordered;
  for (const std::size_t place : orderedPlaces) {
    ordered.push_back({samples.Codes()[place], meanRanks[place]});
  }
  comparison.StartStepwise(std::move(ordered), sigLevel);
  while (!comparison.IsDone()) {
    comparison.EndStepwisePass(
        *this, [this](std::size_t i) { return ComputeRange(comparison.GetWorkList()[i]); });
  }
  ranges = RangeCounts(0);
}

RangeFigures NPARKruskalWOneWay::ComputeRange(const SampleRange& range) {
  const std::vector<double> rankSums = ranges.RankSums(range);
  std::vector<RankedGroup> groups;
  groups.reserve(rankSums.size());
  for (std::size_t i = 0; i < rankSums.size(); ++i) {
    groups.push_back({rankSums[i], samples.CountAt(orderedPlaces[range.first + i])});
  }
  return ComputeH(groups, ranges.Ties(range).Cubic());
}

void NPARKruskalWOneWay::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  samples.AppendRequired(positions);
}

XMLElement* NPARKruskalWOneWay::WriteResults() {
  auto algorithm = CreateAlgorithm("IKruskalWallis", "hypothesis_test", "Independent_Samples",
                                   DecisionWord(status, sigLevel, overall.sig));
  AddCondition(*algorithm, "DefaultAllDistinctValuesUsed_I_KruskalWallis_2",
               {IndexText(samples.TestVariable()), IndexText(samples.GroupVariable())});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TestStatistic", overall.testStatistic);
  AddAttributeRow(*statistics, "DegreeOfFreedom", samples.Codes().size() - 1);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", overall.sig);
  AddBoxPlotInfo(*algorithm, samples, samples.CategoryCount(), meanRanks);
  WriteComparison(*algorithm, comparison);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::kruskal_wallis::kCard>(
    TestConstruction& construction) {
  const auto variables = construction.LookUpTestAndGroup(
      {kNoVariable, kNoVariable, kNoVariable, kNotContinuous, kNotCategorical, false});
  construction.PutTestAndGroup(variables);
  if (!construction.Copy("typeOfMultipleComparison")) construction.Fail(kNoComparisonWord);
  if (construction.IsOK() && construction.CategoriesOf(variables.group)->Size() < 2) {
    construction.Fail(kTooFewCategories);
  }
  return AddGroupTest<NPARKruskalWOneWay>(construction, variables);
}

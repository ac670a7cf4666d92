#include "tests/related/cochran_q.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "catalogue/cards/cochran_q.h"
#include "kit/statistics/cochran_q.h"
#include "planning/test_construction.h"
#include "report/comparison_tables.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr SuccessCategories::Codes kSplitCodes{.noSharedData = 221206,
                                               .notTwoCategories = 221209,
                                               .tooManyValues = 221213,
                                               .noGivenSplit = 221210};
constexpr ComparisonCodes kComparisonCodes{.tooFewPairwise = 221219,
                                           .tooFewStepwise = 221217,
                                           .notSignificantPairwise = 221220,
                                           .notSignificantStepwise = 221218};
constexpr std::int32_t kNoSuccess = 220003;        // no success in the whole data
constexpr std::int32_t kUnknownVariable = 221203;  // parameter: the name
constexpr std::int32_t kNoSplit = 221210;          // no given value, or no variance at all
constexpr std::int32_t kTooFewVariables = 221214;  // fewer than two fields
constexpr std::int32_t kNoVariableName = 221215;   // the entry names no fields
constexpr std::int32_t kUnfitVariable = 221216;    // not categorical, or of another kind; the index

/// Sum of w R (k - R) over the records, exact until it is rounded.
double WithinRecords(const std::vector<std::int64_t>& counts, WideInteger sumRSquared) {
  const WideInteger sum = std::accumulate(counts.begin(), counts.end(), WideInteger{0});
  return static_cast<double>(static_cast<WideInteger>(counts.size()) * sum - sumRSquared);
}

}  // namespace

NPARCochransQ::NPARCochransQ(QDSettings* settings, const QDVarList* variables)
    : NPARRecordTest(settings), categories(variables, kSplitCodes), comparison(kComparisonCodes) {}

void NPARCochransQ::ReadSettings() {
  static_cast<void>(settings->GetSettingValByName("variableIndex", tested));
  static_cast<void>(settings->GetSettingValByName("userSpecifyGroupList", userSpecifyGroupList));
  if (userSpecifyGroupList) {
    static_cast<void>(settings->GetSettingValByName("successCategoryListNum", successNumbers));
    static_cast<void>(settings->GetSettingValByName("successCategoryListStr", successTexts));
  }
  weight = RecordWeight(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  const auto isOn = [this](const char* key) {
    double value = 0.0;
    return settings->GetSettingValByName(key, value) && value == 1.0;
  };
  if (isOn("pairWise")) comparison.Want(ComparisonKind::Pairwise);
  if (isOn("stepWise")) comparison.Want(ComparisonKind::Stepwise);
  categories.SetVariables(tested);
}

QDStatus NPARCochransQ::BeginPass() {
  if (stage == Stage::Overall) {
    ReadSettings();
    if (status.IsError()) return status;
    std::int32_t code = tested.size() < 2 ? kTooFewVariables : 0;
    if (sharedData == nullptr) code = kSplitCodes.noSharedData;
    if (code == 0) {
      code = userSpecifyGroupList ? categories.TakeGiven(sharedData, successNumbers, successTexts)
                                  : categories.CheckCategories(sharedData);
    }
    if (code != 0) {
      ReportStatus(QDStatus(code), MessageKind::Error);
      return status;
    }
    passesLeft = comparison.WantsStepwise() ? static_cast<std::int32_t>(tested.size()) - 1 : 1;
    successCounts.assign(tested.size(), 0);
    return status;
  }
  if (status.IsError()) return status;
  if (stage == Stage::StepDownAhead) StartStepDown();
  rangeSumRSquared.assign(comparison.GetWorkList().size(), 0);
  return status;
}

void NPARCochransQ::StartStepDown() {
  std::vector<ComparedSample> samples;
  for (const std::int32_t variable : tested) {
    samples.push_back(
        {variable, static_cast<double>(CountOf(variable)) / static_cast<double>(totalN)});
  }
  OrderByMeasure(samples);
  comparison.StartStepwise(std::move(samples), sigLevel);
  stage = Stage::StepDown;
}

std::int64_t NPARCochransQ::CountOf(std::int32_t variable) const {
  if (static_cast<std::size_t>(variable) < successCounts.size()) {
    return successCounts[static_cast<std::size_t>(variable)];
  }
  const auto place = std::find(tested.begin(), tested.end(), variable) - tested.begin();
  return successCounts[static_cast<std::size_t>(place)];
}

QDStatus NPARCochransQ::ProcessRecord(const Record& record) {
  if (status.IsError()) return status;
  const std::int64_t w = weight.Truncated(record);
  if (stage == Stage::Overall) {
    categories.LearnFrom(record);
    std::int64_t successes = 0;
    for (std::size_t i = 0; i < tested.size(); ++i) {
      if (!categories.IsSuccess(i, record[tested[i]])) continue;
      successCounts[i] += w;
      ++successes;
    }
    totalN += w;
    sumR += successes * w;
    sumRSquared += WideInteger{successes * successes} * w;
    return status;
  }
  // The success of an ordered sample is looked up at its ordered place: hosts know the results so.
  const std::vector<ComparedSample>& samples = comparison.GetSamples();
  const std::vector<SampleRange>& ranges = comparison.GetWorkList();
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    std::int64_t successes = 0;
    for (std::size_t place = ranges[i].first; place <= ranges[i].last; ++place) {
      if (categories.IsSuccess(place, record[samples[place].index])) ++successes;
    }
    rangeSumRSquared[i] += WideInteger{successes * successes} * w;
  }
  return status;
}

RangeFigures NPARCochransQ::ComputeQ(const std::vector<std::int64_t>& counts,
                                     WideInteger sumRSquared) {
  const auto [q, sig] = CochranQ(counts, WithinRecords(counts, sumRSquared));
  return {q, sig};
}

QDStatus NPARCochransQ::EndPass() {
  if (status.IsError()) return status;
  --passesLeft;
  if (stage == Stage::Overall) {
    EndOverall();
  } else if (stage == Stage::StepDown) {
    comparison.EndStepwisePass(*this, [this](std::size_t i) {
      const SampleRange& range = comparison.GetWorkList()[i];
      std::vector<std::int64_t> counts;
      for (std::size_t place = range.first; place <= range.last; ++place) {
        counts.push_back(CountOf(comparison.GetSamples()[place].index));
      }
      return ComputeQ(counts, rangeSumRSquared[i]);
    });
    if (comparison.IsDone()) stage = Stage::Done;
  }
  return status;
}

void NPARCochransQ::EndOverall() {
  if (sumR == 0) {
    ReportStatus(QDStatus(kNoSuccess), MessageKind::Error);
    return;
  }
  const bool anyFailure = std::any_of(successCounts.begin(), successCounts.end(),
                                      [this](std::int64_t count) { return count != totalN; });
  const bool anySuccess = std::any_of(successCounts.begin(), successCounts.end(),
                                      [](std::int64_t count) { return count > 0; });
  if (!anySuccess || !anyFailure) {
    ReportStatus(QDStatus(kNoSplit), MessageKind::Error);
    return;
  }
  overall = ComputeQ(successCounts, sumRSquared);
  if (comparison.PassGate(*this, sigLevel, overall.sig, tested.size()) &&
      comparison.WantsPairwise()) {
    ComparePairs();
  }
  stage = comparison.WantsStepwise() ? Stage::StepDownAhead : Stage::Done;
}

void NPARCochransQ::ComparePairs() {
  const auto n = static_cast<double>(totalN);
  const auto k = static_cast<double>(tested.size());
  const double standardError =
      CochranPairStandardError(WithinRecords(successCounts, sumRSquared), n, k);
  std::vector<ComparedSample> samples;
  for (std::size_t i = 0; i < tested.size(); ++i) {
    samples.push_back({tested[i], static_cast<double>(successCounts[i])});
  }
  comparison.RunPairwise(std::move(samples), tested.size(), [&](std::int32_t i, std::int32_t j) {
    const std::int64_t difference =
        successCounts[static_cast<std::size_t>(i)] - successCounts[static_cast<std::size_t>(j)];
    return NormalPair(static_cast<double>(difference) / n, standardError);
  });
}

bool NPARCochransQ::NeedsAnotherPass() {
  const bool needs = status.IsOK() && comparison.IsPending();
  if (status.IsError() || needs) passesLeft = 0;
  return needs;
}

void NPARCochransQ::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.insert(positions.end(), tested.begin(), tested.end());
}

XMLElement* NPARCochransQ::WriteResults() {
  auto algorithm = CreateAlgorithm("RCochransQ", "hypothesis_test", "Related_Samples",
                                   DecisionWord(status, sigLevel, overall.sig));
  AddCondition(*algorithm,
               userSpecifyGroupList ? "CategoryListsAreSpecified_R_CochransQ_1"
                                    : "DefaultAllDistinctValuesUsed_R_CochransQ_1",
               {JoinIntegers(tested)});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* shares = AddStructuredTable(*algorithm, "TwoClassComparison");
  XMLElement* content = AddSimpleTable(*shares, "Content", JoinIntegers(tested), "0;1");
  for (const std::int64_t count : successCounts) {
    const std::int64_t percent =
        TruncateToInt64(static_cast<double>(count) * 100.0 / static_cast<double>(totalN));
    AddRow(*content, JoinIntegers(std::vector<std::int64_t>{percent, 100 - percent}));
  }
  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", totalN);
  AddAttributeRow(*statistics, "TestStatistic", overall.testStatistic);
  AddAttributeRow(*statistics, "DegreeOfFreedom", static_cast<std::int64_t>(tested.size()) - 1);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", overall.sig);
  WriteComparison(*algorithm, comparison);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::cochran_q::kCard>(
    TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  VariableKind kind = VariableKind::None;
  const std::vector<std::int32_t> tested =
      construction.LookUpList(kNoVariableName, kUnknownVariable, [&](std::int32_t index) {
        const VariableKind found = construction.KindOf(index);
        if (kind == VariableKind::None) kind = found;
        if (!TestConstruction::IsCategorical(found) || found != kind) {
          construction.FailOver(kUnfitVariable, IntegerText(index));
        }
      });
  if (construction.IsOK() && tested.size() < 2) construction.Fail(kTooFewVariables);
  const bool isGiven =
      construction.IsOK() && construction.ReadText("classFormation") == "givenCategoryList";
  if (isGiven) {
    std::vector<double> numbers;
    std::vector<std::string> texts;
    if (kind == VariableKind::NumericCategory) {
      static_cast<void>(construction.Read("successCategoryList", numbers));
      if (!numbers.empty()) construction.Put("successCategoryListNum", numbers);
    } else {
      static_cast<void>(construction.Read("successCategoryList", texts));
      if (!texts.empty()) construction.Put("successCategoryListStr", texts);
    }
    if (numbers.empty() && texts.empty()) construction.Fail(kNoSplit);
  }
  const std::string comparison = construction.ReadText("typeOfMultipleComparison", "none");
  construction.Put("pairWise", comparison == "pairWise");
  construction.Put("stepWise", comparison == "stepWise");
  construction.Put("variableIndex", tested);
  construction.Put("userSpecifyGroupList", isGiven);
  if (construction.IsOK()) {
    for (const std::int32_t index : tested) {
      planner.RegisterStatistic(index, Statistic::Frequencies);
    }
  }
  return construction.Make<NPARCochransQ>(&construction.Planner().GetVariables());
}

#include "tests/one_sample/wilcoxon.h"

#include <vector>

#include "catalogue/cards/wilcoxon.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kNoData = 220003;           // the weights sum to 0
constexpr std::int32_t kNoTestValue = 220801;      // a test value is announced and absent
constexpr std::int32_t kUnknownVariable = 220803;  // parameter: the name
constexpr std::int32_t kNoVariableName = 220812;   // the entry names no field
constexpr std::int32_t kNotContinuous = 220815;    // parameter: the field's index

}  // namespace

void NPARWilcoxonSR::SetSharedData(UnivariateResults* data) {
  if (data != nullptr) sharedData = data;
}

QDStatus NPARWilcoxonSR::BeginPass() {
  passesLeft = 1;
  static_cast<void>(settings->GetSettingValByName("variableIndex", variableIndex));
  bool userSpecifyTestValue = false;
  static_cast<void>(settings->GetSettingValByName("userSpecifyTestValue", userSpecifyTestValue));
  observedMedian =
      sharedData == nullptr ? QDMV::gMissingValue : sharedData->GetMedian(variableIndex);
  if (!userSpecifyTestValue) {
    testValue = observedMedian;
  } else if (!settings->GetSettingValByName("testValue", testValue)) {
    ReportStatus(QDStatus(kNoTestValue), MessageKind::Error);
  }
  if (status.IsError()) {
    passesLeft = 0;
    return status;
  }
  settingsRead = true;
  weight = RecordWeight(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  if (sharedData != nullptr) {
    distribution.SetRange(sharedData->GetMinimum(variableIndex),
                          sharedData->GetMaximum(variableIndex));
  }
  return status;
}

QDStatus NPARWilcoxonSR::ProcessRecord(const Record& record) {
  const double w = weight.Plain(record);
  const std::int64_t whole = weight.Truncated(record);
  const double x = record[variableIndex];
  distribution.AddValueOrZero(x, whole);
  const double d = x - testValue;
  if (d != 0.0) {
    ranks.Add(d, w);
    effectiveN += w;
  } else {
    zeroDifferences += whole;
  }
  totalWeight += w;
  return status;
}

QDStatus NPARWilcoxonSR::EndPass() {
  passesLeft = 0;
  if (status.IsError()) return status;
  if (totalWeight == 0.0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  distribution.AddZeroBin();
  ranks.Rank();
  testStatistic = ranks.PositiveRankSum();
  figures = WilcoxonSignedRank(testStatistic, effectiveN, ranks.TieSum());
  return status;
}

void NPARWilcoxonSR::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.push_back(variableIndex);
}

XMLElement* NPARWilcoxonSR::WriteResults() {
  auto algorithm = CreateAlgorithm("OWilcoxonSignedRanks", "hypothesis_test", "One_Sample",
                                   DecisionWord(status, sigLevel, figures.sig));
  AddCondition(*algorithm, "O_WilcoxonSignedRanks_2",
               {settingsRead ? IntegerText(variableIndex) : kMissingText,
                settingsRead ? NumberText(testValue) : kMissingText});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* values = AddStructuredTable(*algorithm, "ContinuousDistribution");
  AddAttributeRow(*values, "HypotheticalMedian", testValue);
  AddAttributeRow(*values, "ObservedMedian", observedMedian);
  std::vector<HistogramBin> bins;
  bins.reserve(distribution.GetBins().size() + 1);
  bins.push_back({zeroDifferences, 0.0});
  bins.insert(bins.end(), distribution.GetBins().begin(), distribution.GetBins().end());
  AddIntervalTable(*values, bins);

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", effectiveN);
  AddAttributeRow(*statistics, "TestStatistic", testStatistic);
  AddAttributeRow(*statistics, "StandardError", figures.standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", figures.z);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", figures.sig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::wilcoxon::kCard>(
    TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const std::int32_t index =
      construction.LookUpVariable("variableName", kNoVariableName, kUnknownVariable);
  construction.RequireContinuous(index, kNotContinuous);
  const bool userSpecifies = construction.ReadFlag("userSpecifyTestValue");
  construction.Put("variableIndex", index);
  construction.Put("userSpecifyTestValue", userSpecifies);
  if (userSpecifies && !construction.Copy("testValue") && construction.IsOK()) {
    construction.Fail(kNoTestValue);
  }
  if (construction.IsOK()) {
    planner.RegisterSortedVariable(index);
    planner.RegisterStatistic(index, Statistic::Median);
  }
  return construction.Make<NPARWilcoxonSR>();
}

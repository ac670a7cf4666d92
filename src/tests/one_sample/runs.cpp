#include "tests/one_sample/runs.h"

#include <algorithm>

#include "catalogue/cards/runs.h"
#include "kit/groups/category_selection.h"
#include "kit/statistics/runs.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kBadEntry = 220101;         // no field or formation, or an unknown word
constexpr std::int32_t kUnknownVariable = 220103;  // parameter: the name
constexpr std::int32_t kBadCategoryList = 220109;  // absent, empty, or leaves a group empty
constexpr std::int32_t kNoCutPoint = 220110;       // no cut point value
constexpr std::int32_t kNotTwoGroups = 220111;     // not exactly two categories
constexpr std::int32_t kEmptyGroup = 220112;       // a group is empty at the end

void ReadCutPoint(TestConstruction& construction, const std::string& name, std::int32_t index,
                  const std::string& formation) {
  construction.Put("dataCutPoint", formation);
  if (formation == "cutPointMedian") {
    construction.Planner().RegisterStatistic(index, Statistic::Median);
  } else if (formation == "cutPointMean") {
    construction.Planner().RegisterStatistic(index, Statistic::Mean);
  } else if (formation == "cutPointValue") {
    double value = 0.0;
    if (construction.Read("cutPointValue", value)) {
      construction.Put("givenCutPoint", value);
    } else {
      construction.Fail(kNoCutPoint, name);
    }
  } else {
    construction.Fail(kBadEntry, name);
  }
}

void ReadCategories(TestConstruction& construction, const IQDVariable& variable,
                    const std::string& formation) {
  const QDCategoryList& categories = *variable.GetCategories();
  const std::string& name = variable.GetName();
  construction.Put("classFormation", formation);
  if (formation == "getFromData") {
    if (categories.Size() != 2) construction.Fail(kNotTwoGroups, name);
    return;
  }
  std::vector<std::string> texts;
  if (formation != "givenCategoryList") {
    construction.Fail(kBadEntry, name);
    return;
  }
  static_cast<void>(construction.Read("givenCategoryList", texts));
  const CategorySelection selection = SelectCategories(variable, texts);
  const std::vector<double> group1 = selection.KnownCodes();
  if (group1.empty() || selection.otherCodes.empty()) {
    construction.Fail(kBadCategoryList, name);
    return;
  }
  construction.Put("originalGroup1List", texts);
  construction.Put("originalGroup2List", selection.otherTexts);
  construction.Put("givenCategoryList", group1);
  construction.Put("group2List", selection.otherCodes);
  construction.Put("GivenCategoryListInvalid", selection.unknownTexts);
}

void ReadEntry(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const std::int32_t index =
      construction.LookUpVariable("variableName", kBadEntry, kUnknownVariable);
  if (index < 0) return;
  const std::string& name = planner.GetVariables().GetVarAt(index)->GetName();
  const VariableKind kind = construction.KindOf(index);
  construction.Put("variableIndex", index);
  construction.Put("measureLevel", static_cast<double>(kind));
  if (kind == VariableKind::Continuous) planner.RegisterSortedVariable(index);
  if (TestConstruction::IsCategorical(kind)) {
    planner.RegisterStatistic(index, Statistic::Frequencies);
  }
  std::string formation;
  if (!construction.Read("catVarClassFormation", formation) &&
      !construction.Read("contVarClassFormation", formation)) {
    construction.Fail(kBadEntry, name);
    return;
  }
  if (kind == VariableKind::Continuous) {
    ReadCutPoint(construction, name, index, formation);
  } else if (TestConstruction::IsCategorical(kind)) {
    ReadCategories(construction, *planner.GetVariables().GetVarAt(index), formation);
  } else {
    construction.Fail(kBadEntry, name);
  }
}

}  // namespace

QDStatus NPARRuns::BeginPass() {
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("variableIndex", variableIndex));
  std::int32_t level = 0;
  static_cast<void>(settings->GetSettingValByName("measureLevel", level));
  isContinuous = level == static_cast<std::int32_t>(VariableKind::Continuous);
  std::string word;
  const bool hasWord = settings->GetSettingValByName("dataCutPoint", word);
  if (isContinuous) {
    if (word == "cutPointMedian" && sharedData != nullptr) {
      cutPoint = sharedData->GetMedian(variableIndex);
    } else if (word == "cutPointMean" && sharedData != nullptr) {
      cutPoint = sharedData->GetMean(variableIndex);
    } else if (!settings->GetSettingValByName("givenCutPoint", cutPoint)) {
      ReportStatus(QDStatus(kNoCutPoint), MessageKind::Error);
    }
  } else if (!hasWord) {
    static_cast<void>(settings->GetSettingValByName("givenCategoryList", group1Values));
  } else if (word == "mode" && sharedData != nullptr) {
    cutPoint = static_cast<double>(sharedData->GetLargestFrequency(variableIndex));
  }
  static_cast<void>(settings->GetSettingValByName("group2List", group2Values));
  static_cast<void>(settings->GetSettingValByName("GivenCategoryListInvalid", invalidCategories));
  if (status.IsError()) return status;
  weight = RecordWeight(*settings);
  passesLeft = 1;
  return status;
}

bool NPARRuns::IsBelow(double x) const {
  if (isContinuous) return x < cutPoint;
  return std::find(group1Values.begin(), group1Values.end(), x) != group1Values.end();
}

QDStatus NPARRuns::ProcessRecord(const Record& record) {
  const double x = record[variableIndex];
  if (cutPoint == QDMV::gMissingValue) {
    // The groups of the data: the first value is the first group, the first other one the second.
    if (group1Values.empty()) group1Values.push_back(x);
    if (x != group1Values.front() && group2Values.empty()) group2Values.push_back(x);
  }
  const Group group = IsBelow(x) ? Group::Below : Group::AtOrAbove;
  (group == Group::Below ? countBelow : countAtOrAbove) += weight.Truncated(record);
  if (group != lastGroup) ++runCount;
  lastGroup = group;
  return status;
}

QDStatus NPARRuns::EndPass() {
  if (status.IsError()) return status;
  passesLeft = 0;
  if (countAtOrAbove < 1 || countBelow < 1) {
    ReportStatus(QDStatus(kEmptyGroup), MessageKind::Error);
    return status;
  }
  const RunsApproximation approximation(static_cast<double>(countAtOrAbove),
                                        static_cast<double>(countBelow));
  mean = approximation.mean;
  figures = approximation.FiguresOf(runCount);
  return status;
}

void NPARRuns::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.push_back(variableIndex);
}

XMLElement* NPARRuns::WriteResults() {
  auto algorithm = CreateAlgorithm("ORuns", "hypothesis_test", "One_Sample",
                                   DecisionWord(status, sigLevel, figures.sig));
  const std::string index = IntegerText(variableIndex);
  if (cutPoint != QDMV::gMissingValue) {
    AddCondition(*algorithm, "ACutPointIsSpecified_O_Runs_2", {index, NumberText(cutPoint)});
  } else {
    std::vector<double> group1 = group1Values;
    group1.insert(group1.end(), invalidCategories.size(), -1.0);
    AddCondition(*algorithm,
                 group1Values.empty() ? "ABinaryTestVariableIsSpecified_O_Runs_3"
                                      : "CategoryListsAreSpecified_O_Runs_3",
                 {index, JoinNumbers(group1), JoinNumbers(group2Values)});
  }
  AddUnknownValues(*algorithm, invalidCategories);
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* parameters = AddStructuredTable(*algorithm, "RunsParameters");
  AddAttributeRow(*parameters, "Mean", mean);
  AddAttributeRow(*parameters, "StdDev", figures.standardError);
  AddAttributeRow(*parameters, "ObservedRunNumber", runCount);
  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", countAtOrAbove + countBelow);
  AddAttributeRow(*statistics, "TestStatistic", runCount);
  AddAttributeRow(*statistics, "StandardError", figures.standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", figures.z);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", figures.sig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::runs::kCard>(TestConstruction& construction) {
  ReadEntry(construction);
  return construction.Make<NPARRuns>();
}

#include "tests/one_sample/chi_square.h"

#include <map>

#include "catalogue/cards/chi_square.h"
#include "kit/groups/category_selection.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"

namespace {

constexpr std::int32_t kNoData = 220003;            // the weights sum to 0
constexpr std::int32_t kSettingAbsent = 220201;     // a needed setting is absent
constexpr std::int32_t kNoVariableName = 220203;    // the entry names no field
constexpr std::int32_t kUnfitVariable = 220204;     // no such field, or not categorical
constexpr std::int32_t kTooFewCategories = 220209;  // fewer than two, in the field or in the list
constexpr std::int32_t kExpectedCounts = 220211;    // help: how small the expected counts are
constexpr std::int32_t kBadExpectedValues =
    220212;  // incomplete, not above 0, or of another number

/// The given categories and their expected values, as the entry lists them.
struct GivenProportions {
  std::vector<std::string> texts;
  std::vector<double> codes;
  std::vector<double> values;
};

void ReadGivenProportions(TestConstruction& construction, const IQDVariable& variable) {
  std::vector<QDSettings> list;
  if (!construction.Read("custom", list)) {
    construction.Fail(kSettingAbsent, variable.GetName());
    return;
  }
  if (list.empty()) construction.Fail(kBadExpectedValues, variable.GetName());
  const bool isNumeric = variable.GetType() == VariableKind::NumericCategory;
  GivenProportions given;
  double sum = 0.0;
  for (const QDSettings& item : list) {
    std::string text;
    double number = 0.0;
    double value = 0.0;
    const bool hasCategory = item.GetSettingValByName("categoryValue", text) &&
                             (!isNumeric || item.GetSettingValByName("categoryValue", number));
    const bool hasValue = item.GetSettingValByName("expectedValue", value) && value > 0.0;
    if (!hasCategory || !hasValue) {
      construction.Fail(kBadExpectedValues, variable.GetName());
      return;
    }
    given.codes.push_back(CategoryCodeOf(variable, text));
    given.texts.push_back(text);
    given.values.push_back(value);
    sum += value;
  }
  if (given.values.size() < 2) construction.Fail(kTooFewCategories, variable.GetName());
  if (!construction.IsOK()) return;
  for (double& value : given.values) value /= sum;
  construction.Put("expectedValue", given.values);
  construction.Put("givenCategoryList", given.codes);
  construction.Put("originalGivenCategoryList", given.texts);
}

void ReadEntry(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  std::string name;
  if (!construction.Read("variableName", name)) {
    construction.Fail(kNoVariableName);
    return;
  }
  const std::int32_t index = planner.GetVariables().FindVariable(name);
  construction.Put("variableIndex", index);
  const VariableKind kind = construction.KindOf(index);
  if (!TestConstruction::IsCategorical(kind)) {
    construction.Fail(kUnfitVariable, name);
    return;
  }
  const IQDVariable& variable = *planner.GetVariables().GetVarAt(index);
  if (variable.GetCategoryCount() < 2) {
    construction.Fail(kTooFewCategories, name);
    return;
  }
  planner.RegisterStatistic(index, Statistic::Frequencies);
  construction.Put("measureLevel", static_cast<double>(kind));

  std::string formation;
  if (!construction.Read("classFormation", formation)) {
    construction.Fail(kSettingAbsent, name);
    return;
  }
  // Hosts write either word for a list of their own.
  if (formation == "custom") formation = "givenExpectedValue";
  construction.Put("classFormation", formation);
  if (formation == "givenExpectedValue") ReadGivenProportions(construction, variable);
}

}  // namespace

QDStatus NPARChiSquare::BeginPass() {
  std::int32_t level = 0;
  const bool hasVariable = settings->GetSettingValByName("variableIndex", variableIndex);
  if (!hasVariable) ReportStatus(QDStatus(kSettingAbsent), MessageKind::Error);
  if (status.IsOK()) static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  if (hasVariable && !settings->GetSettingValByName("measureLevel", level)) {
    ReportStatus(QDStatus(kSettingAbsent), MessageKind::Error);
  }
  if (status.IsError()) return status;

  std::string formation = "getFromData";
  static_cast<void>(settings->GetSettingValByName("classFormation", formation));
  std::vector<double> codes;
  if (formation == "getFromData") {
    userProbabilities = false;
    const std::int32_t count =
        sharedData == nullptr ? 0 : sharedData->GetCategoryCount(variableIndex);
    for (std::int32_t code = 0; code < count; ++code) codes.push_back(code);
  } else {
    static_cast<void>(settings->GetSettingValByName("originalGivenCategoryList", givenTexts));
    static_cast<void>(settings->GetSettingValByName("givenCategoryList", codes));
  }
  BuildCategories(codes);
  if (status.IsOK()) passesLeft = 1;
  return status;
}

void NPARChiSquare::BuildCategories(const std::vector<double>& codes) {
  std::vector<double> proportions;
  if (!settings->GetSettingValByName("expectedValue", proportions)) {
    proportions.assign(codes.size(), 1.0 / static_cast<double>(codes.size()));
  } else if (proportions.size() != codes.size()) {
    ReportStatus(QDStatus(kBadExpectedValues), MessageKind::Error);
    return;
  }
  std::map<std::int32_t, std::int64_t> frequencies;
  if (sharedData != nullptr) {
    static_cast<void>(sharedData->GetFrequencies(variableIndex, frequencies));
  }
  categories.reserve(codes.size());
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::int32_t code = TruncateToInt32(codes[i]);
    const auto found = frequencies.find(code);
    categories.push_back({code, found == frequencies.end() ? 0 : found->second, proportions[i]});
  }
}

QDStatus NPARChiSquare::EndPass() {
  if (status.IsError()) return status;
  std::vector<std::int64_t> observed;
  std::vector<double> proportions;
  for (const Category& category : categories) {
    observed.push_back(category.observed);
    proportions.push_back(category.proportion);
    totalN += category.observed;
  }
  if (totalN == 0) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  const auto [chiSquare, expected] = ChiSquareGoodnessOfFit(observed, proportions);
  figures = chiSquare;
  AddMessage({QDStatus(kExpectedCounts),
              MessageKind::Help,
              {IntegerText(expected.lowCells), NumberText(expected.LowPercentage()),
               NumberText(expected.smallest)},
              {}});
  passesLeft = 0;
  return status;
}

void NPARChiSquare::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.push_back(variableIndex);
}

XMLElement* NPARChiSquare::WriteResults() {
  auto algorithm = CreateAlgorithm("OChiSquare", "hypothesis_test", "One_Sample",
                                   DecisionWord(status, sigLevel, figures.sig));
  AddCondition(*algorithm,
               userProbabilities ? "UserSpecifiesProbabilities_O_ChiSquare_1"
                                 : "DefaultEqualProbabilities_O_ChiSquare_1",
               {IntegerText(variableIndex)});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  std::vector<std::int32_t> codes;
  std::vector<std::string> unknownTexts;
  for (std::size_t i = 0; i < categories.size(); ++i) {
    codes.push_back(categories[i].code);
    if (categories[i].code == -1 && i < givenTexts.size()) unknownTexts.push_back(givenTexts[i]);
  }
  XMLElement* comparison = AddStructuredTable(*algorithm, "TwoClassComparison");
  XMLElement* content = AddSimpleTable(*comparison, "Content", JoinIntegers(codes), "0;1");
  for (const Category& category : categories) {
    AddRow(*content, IntegerText(category.observed) + ';' +
                         NumberText(static_cast<double>(totalN) * category.proportion));
  }
  AddUnknownValues(*algorithm, unknownTexts);

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", totalN);
  AddAttributeRow(*statistics, "TestStatistic", figures.statistic);
  AddAttributeRow(*statistics, "DegreeOfFreedom", static_cast<std::int64_t>(categories.size()) - 1);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", figures.sig);
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::chi_square::kCard>(
    TestConstruction& construction) {
  ReadEntry(construction);
  return construction.Make<NPARChiSquare>();
}

#include "tests/related/mcnemar.h"

#include <algorithm>
#include <cmath>

#include "catalogue/cards/mcnemar.h"
#include "kit/groups/category_selection.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/related/category_pair.h"

namespace {

constexpr CategoryPairCodes kPairCodes{
    .noVariableName = 221603, .notTwoVariables = 221614, .unfitVariable = 221613};
constexpr SuccessCategories::Codes kSplitCodes{.noSharedData = 221606,
                                               .notTwoCategories = 221609,
                                               .tooManyValues = 221610,
                                               .noGivenSplit = 221611};
constexpr std::int32_t kDistributionFailed = 221605;  // the binomial function failed
constexpr std::int32_t kNoGivenValue = 221611;        // no success value is given
constexpr std::int32_t kExactGiven = 221612;          // help: the exact value is given

}  // namespace

NPARMcNemar::NPARMcNemar(QDSettings* settings, const QDVarList* variables)
    : NPARRecordTest(settings), categories(variables, kSplitCodes) {}

void NPARMcNemar::ReadSettings() {
  weight = RecordWeight(*settings);
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  static_cast<void>(settings->GetSettingValByName("variablePairFirstIndex", first));
  static_cast<void>(settings->GetSettingValByName("variablePairSecondIndex", second));
  categories.SetVariables({first, second});
  static_cast<void>(settings->GetSettingValByName("userSpecifyGroupList", userSpecifyGroupList));
  if (!userSpecifyGroupList) return;
  static_cast<void>(settings->GetSettingValByName("successCategoryListNum", successNumbers));
  static_cast<void>(settings->GetSettingValByName("successCategoryListStr", successTexts));
  static_cast<void>(
      settings->GetSettingValByName("UserSpecifiedSuccessfulListOriginal", givenTexts));
  static_cast<void>(settings->GetSettingValByName("UserSpecifiedSuccListVar0", givenSuccesses[0]));
  static_cast<void>(settings->GetSettingValByName("UserSpecifiedSuccListVar1", givenSuccesses[1]));
  // The failures of both fields are read from the first one's key: hosts read the document so.
  for (std::vector<double>& failures : givenFailures) {
    static_cast<void>(settings->GetSettingValByName("UserSpecifiedFailListVar0", failures));
  }
}

QDStatus NPARMcNemar::BeginPass() {
  ReadSettings();
  if (status.IsError()) return status;
  const std::int32_t code = userSpecifyGroupList
                                ? categories.TakeGiven(sharedData, successNumbers, successTexts)
                                : categories.CheckCategories(sharedData);
  if (code != 0) {
    ReportStatus(QDStatus(code), MessageKind::Error);
  } else {
    passesLeft = 1;
  }
  return status;
}

QDStatus NPARMcNemar::ProcessRecord(const Record& record) {
  if (status.IsError()) return status;
  categories.LearnFrom(record);
  const std::int64_t w = weight.Truncated(record);
  const bool firstSucceeds = categories.IsSuccess(0, record[first]);
  const bool secondSucceeds = categories.IsSuccess(1, record[second]);
  if (firstSucceeds) {
    (secondSucceeds ? bothSuccess : successFail) += w;
  } else {
    (secondSucceeds ? failSuccess : bothFail) += w;
  }
  return status;
}

QDStatus NPARMcNemar::EndPass() {
  if (status.IsError()) return status;
  figures = McNemar(failSuccess, successFail);
  if (failSuccess + successFail <= kExactLimit) {
    ReportStatus(QDStatus(kExactGiven), MessageKind::Help);
    exactSig = McNemarExactSig(failSuccess, successFail);
    if (!exactSig) {
      ReportStatus(QDStatus(kDistributionFailed), MessageKind::Error);
      return status;
    }
  }
  passesLeft = 0;
  return status;
}

void NPARMcNemar::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.insert(positions.end(), {first, second});
}

void NPARMcNemar::WriteSide(XMLElement& parent, std::size_t place) const {
  const bool isRow = place == 0;
  AddAttributeRow(parent, isRow ? "RowNames" : "ColumnNames",
                  static_cast<std::int64_t>(isRow ? first : second));
  const std::vector<double> successes =
      userSpecifyGroupList ? givenSuccesses[place] : categories.CategoriesOf(place, true);
  AddAttributeRow(parent, isRow ? "RowSuccessList" : "ColumnSuccessList", JoinNumbers(successes));
  std::vector<std::string> unknown;
  for (std::size_t i = 0; userSpecifyGroupList && i < successes.size(); ++i) {
    if (successes[i] == -1.0 && i < givenTexts.size()) unknown.push_back(givenTexts[i]);
  }
  AddUnknownValues(parent, unknown,
                   isRow ? "RowValsNotInTheCategoreis" : "ColValsNotInTheCategoreis");
  AddAttributeRow(parent, isRow ? "RowFailList" : "ColumnFailList",
                  JoinNumbers(userSpecifyGroupList ? givenFailures[place]
                                                   : categories.CategoriesOf(place, false)));
}

XMLElement* NPARMcNemar::WriteResults() {
  auto algorithm = CreateAlgorithm("RMcNemar", "hypothesis_test", "Related_Samples",
                                   DecisionWord(status, sigLevel, figures.sig));
  AddCondition(*algorithm,
               userSpecifyGroupList ? "CategoryListsAreSpecified_R_McNemar_2"
                                    : "AllDistinctValuesUsed_R_McNemar_2",
               {IndexText(first), IndexText(second)});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", bothSuccess + successFail + failSuccess + bothFail);
  AddAttributeRow(*statistics, "TestStatistic", figures.statistic);
  AddAttributeRow(*statistics, "DegreeOfFreedom", std::int64_t{1});
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", figures.sig);
  if (exactSig) AddAttributeRow(*statistics, "ExactSig2Tailed", *exactSig);

  XMLElement* comparison = AddStructuredTable(*algorithm, "CategoryFieldsComparison");
  WriteSide(*comparison, 0);
  WriteSide(*comparison, 1);
  XMLElement* content = AddSimpleTable(*comparison, "Content", "", "");
  AddRow(*content, JoinIntegers(std::vector<std::int64_t>{bothSuccess, successFail}));
  AddRow(*content, JoinIntegers(std::vector<std::int64_t>{failSuccess, bothFail}));
  return algorithm.release();
}

namespace {

/// Adds the given success values and, for each field of the pair, what they select.
void ReadGivenValues(TestConstruction& construction, const CategoryPair& pair) {
  std::vector<std::string> texts;
  std::vector<double> numbers;
  static_cast<void>(construction.Read("categoriesList", texts));
  const bool isNumeric = construction.KindOf(pair.first) == VariableKind::NumericCategory;
  if (isNumeric) static_cast<void>(construction.Read("categoriesList", numbers));
  if (isNumeric ? numbers.empty() : texts.empty()) {
    construction.Fail(kNoGivenValue);
    return;
  }
  if (isNumeric) {
    construction.Put("successCategoryListNum", numbers);
  } else {
    construction.Put("successCategoryListStr", texts);
  }
  construction.Put("UserSpecifiedSuccessfulListOriginal", texts);
  const QDVarList& variables = construction.Planner().GetVariables();
  const CategorySelection firstSide = SelectCategories(*variables.GetVarAt(pair.first), texts);
  const CategorySelection secondSide = SelectCategories(*variables.GetVarAt(pair.second), texts);
  construction.Put("UserSpecifiedSuccListVar0", firstSide.codes);
  construction.Put("UserSpecifiedSuccListVar1", secondSide.codes);
  construction.Put("UserSpecifiedFailListVar0", firstSide.otherCodes);
  construction.Put("UserSpecifiedFailListVar1", secondSide.otherCodes);
}

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::mcnemar::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const CategoryPair pair = ReadCategoryPair(construction, kPairCodes);
  if (construction.IsOK() && construction.KindOf(pair.first) != construction.KindOf(pair.second)) {
    construction.Fail(kPairCodes.unfitVariable);
  }
  if (construction.IsOK()) {
    planner.RegisterStatistic(pair.first, Statistic::Frequencies);
    planner.RegisterStatistic(pair.second, Statistic::Frequencies);
    const bool isGiven = construction.ReadText("classFormation") == "givenCategoryList";
    if (isGiven) ReadGivenValues(construction, pair);
    construction.Put("userSpecifyGroupList", isGiven);
  }
  return construction.Make<NPARMcNemar>(&construction.Planner().GetVariables());
}

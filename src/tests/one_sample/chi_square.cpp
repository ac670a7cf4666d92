#include "catalogue/cards/chi_square.h"

#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "catalogue/run.h"
#include "kit/contract/test.h"
#include "kit/groups/category_selection.h"
#include "kit/statistics/chi_square.h"
#include "kit/statistics/goodness_of_fit.h"
#include "planning/test_construction.h"
#include "report/algorithm_element.h"
#include "report/elements.h"

namespace card = catalogue::chi_square;

namespace {

/// The given categories and their expected values, as the entry lists them.
struct GivenProportions {
  std::vector<std::string> texts;
  std::vector<double> codes;
  std::vector<double> values;
};

void ReadGivenProportions(TestConstruction& construction, const IQDVariable& variable) {
  std::vector<QDSettings> list;
  if (!construction.Read(card::kCustom.key, list)) {
    construction.Fail(card::kSettingAbsent, variable.GetName());
    return;
  }
  if (list.empty()) construction.Fail(card::kBadExpectedValues, variable.GetName());
  const bool isNumeric = variable.GetType() == VariableKind::NumericCategory;
  GivenProportions given;
  double sum = 0.0;
  for (const QDSettings& item : list) {
    std::string text;
    double number = 0.0;
    double value = 0.0;
    const bool hasCategory = item.GetSettingValByName(card::kCategoryValue.key, text) &&
                             (!isNumeric || variable.TextToNumber(text, number));
    const bool hasValue = item.GetSettingValByName(card::kExpectedValue.key, value) && value > 0.0;
    if (!hasCategory || !hasValue) {
      construction.Fail(card::kBadExpectedValues, variable.GetName());
      return;
    }
    given.codes.push_back(CategoryCodeOf(variable, text));
    given.texts.push_back(text);
    given.values.push_back(value);
    sum += value;
  }
  if (given.values.size() < 2) construction.Fail(card::kTooFewCategories, variable.GetName());
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
    construction.Fail(card::kNoVariableName);
    return;
  }
  const std::int32_t index = planner.GetVariables().FindVariable(name);
  construction.Put("variableIndex", index);
  const VariableKind kind = construction.KindOf(index);
  if (!TestConstruction::IsCategorical(kind)) {
    construction.Fail(card::kUnfitVariable, name);
    return;
  }
  const IQDVariable& variable = *planner.GetVariables().GetVarAt(index);
  if (variable.GetCategoryCount() < 2) {
    construction.Fail(card::kTooFewCategories, name);
    return;
  }
  planner.RegisterStatistic(index, Statistic::Frequencies);
  construction.Put("measureLevel", static_cast<double>(kind));

  std::string formation;
  if (!construction.Read(card::kFormation.key, formation)) {
    construction.Fail(card::kSettingAbsent, name);
    return;
  }
  // Hosts write either word for a list of their own.
  if (formation == "custom") formation = "givenExpectedValue";
  construction.Put("classFormation", formation);
  if (formation == "givenExpectedValue") ReadGivenProportions(construction, variable);
}

/// One-sample chi-square test: do the category frequencies of one field fit given proportions?
///
/// Formulas, limits, sources: docs/statistics/chi_square.md.
///
/// The frequencies come from the shared summaries; the one pass counts nothing.
class NPARChiSquare final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = chiSquare.sig,
         .condition = {userProbabilities ? "UserSpecifiesProbabilities_O_ChiSquare_1"
                                         : "DefaultEqualProbabilities_O_ChiSquare_1",
                       {IntegerText(variableIndex)}}},
        [this](XMLElement& algorithm) {
          std::vector<std::int32_t> codes;
          std::vector<std::string> unknownTexts;
          for (std::size_t i = 0; i < categories.size(); ++i) {
            codes.push_back(categories[i].code);
            if (codes[i] == -1 && i < givenTexts.size()) unknownTexts.push_back(givenTexts[i]);
          }
          XMLElement* comparison = AddStructuredTable(algorithm, "TwoClassComparison");
          XMLElement* content = AddSimpleTable(*comparison, "Content", JoinIntegers(codes), "0;1");
          for (const Category& category : categories) {
            AddRow(*content, IntegerText(category.observed) + ';' +
                                 NumberText(static_cast<double>(totalN) * category.proportion));
          }
          AddUnknownValues(algorithm, unknownTexts);
          AddFigures(algorithm, "StatisticsResult",
                     {{"TotalN", totalN},
                      {"TestStatistic", chiSquare.statistic},
                      {"DegreeOfFreedom", static_cast<std::int64_t>(categories.size()) - 1},
                      {"AsymptoticSig2Tailed", chiSquare.sig}});
        });
  }

  [[nodiscard]] bool TakesCells() const override { return true; }

 protected:
  /// Error 220201: a needed setting is absent; 220212: as many expected values as categories are
  /// wanted.
  void Prepare(const SettingsReader& settings) override {
    std::int32_t level = 0;
    if (!settings.Find("variableIndex", variableIndex) || !settings.Find("measureLevel", level)) {
      Fail(card::kSettingAbsent);
    }
    if (HasFailed()) return;
    Require({variableIndex});

    std::vector<double> codes;
    userProbabilities = settings.Text("classFormation", "getFromData") != "getFromData";
    if (userProbabilities) {
      givenTexts = settings.List<std::string>("originalGivenCategoryList");
      codes = settings.List<double>("givenCategoryList");
    } else if (sharedData != nullptr) {
      const std::int32_t count = sharedData->GetCategoryCount(variableIndex);
      for (std::int32_t code = 0; code < count; ++code) codes.push_back(code);
    }
    const std::vector<double> equal(codes.size(), 1.0 / static_cast<double>(codes.size()));
    const std::vector<double> proportions = settings.Get("expectedValue", equal);
    if (proportions.size() != codes.size()) {
      Fail(card::kBadExpectedValues);
      return;
    }
    std::map<std::int32_t, std::int64_t> frequencies;
    if (sharedData != nullptr) sharedData->GetFrequencies(variableIndex, frequencies);
    categories.reserve(codes.size());
    for (std::size_t i = 0; i < codes.size(); ++i) {
      const std::int32_t code = TruncateToInt32(codes[i]);
      const auto found = frequencies.find(code);
      const std::int64_t sum = found == frequencies.end() ? 0 : found->second;
      categories.push_back({code, WeightOrNone(sum), proportions[i]});
    }
  }

  /// Error 220003: the weights sum to 0. Help message 220211: cells with E below 5, their
  /// percentage, the smallest E.
  void Compute() override {
    for (const Category& category : categories) {
      observed.push_back(category.observed);
      proportions.push_back(category.proportion);
      totalN += category.observed;
    }
    if (totalN == 0) {
      Fail(catalogue::run::kNoData);
      return;
    }
    const auto [figures, expected] = ChiSquareGoodnessOfFit(observed, proportions);
    chiSquare = figures;
    Help(card::kExpectedCounts,
         {IntegerText(expected.lowCells), NumberText(expected.LowPercentage()),
          NumberText(expected.smallest)});
  }

  void Extend(ExtendedFigures& figures) override {
    const std::vector<double> expected = ExpectedOf(observed, proportions);
    const ChiSquareFigures ratio = LikelihoodRatio(observed, expected);
    const auto n = static_cast<double>(totalN);
    figures.Add("LikelihoodRatioStatistic", ratio.statistic);
    figures.Add("LikelihoodRatioSig", ratio.sig);
    figures.Add("CohensW", std::sqrt(chiSquare.statistic / n));
    figures.Add("ExactMultinomialSig", ExactMultinomialSig(observed, expected));
    FigureTable table{
        "Categories", {"Observed", "Expected", "PearsonResidual", "StandardizedResidual"}, {}};
    for (std::size_t i = 0; i < categories.size(); ++i) {
      const double deviation = static_cast<double>(observed[i]) - expected[i];
      table.AddRow(categories[i].code,
                   {observed[i], expected[i], deviation / std::sqrt(expected[i]),
                    deviation / std::sqrt(expected[i] * (1.0 - expected[i] / n))});
    }
    figures.Add(std::move(table));
  }

 private:
  struct Category {
    std::int32_t code;  // -1 for a value that is none of the field
    std::int64_t observed;
    double proportion;
  };

  std::int32_t variableIndex = -1;
  bool userProbabilities = true;
  std::vector<std::string> givenTexts;
  std::vector<Category> categories;
  // By category.
  std::vector<std::int64_t> observed;
  std::vector<double> proportions;
  std::int64_t totalN = 0;
  ChiSquareFigures chiSquare;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  ReadEntry(construction);
  return construction.Make<NPARChiSquare>();
}

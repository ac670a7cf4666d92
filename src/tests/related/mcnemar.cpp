#include "catalogue/cards/mcnemar.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/groups/category_selection.h"
#include "kit/groups/success_categories.h"
#include "kit/statistics/chi_square.h"
#include "kit/statistics/exact_binomial.h"
#include "kit/statistics/mcnemar.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "report/extended_tables.h"
#include "tests/related/category_pair.h"
#include "tests/related/success_values.h"

namespace card = catalogue::mcnemar;

namespace {

/// Puts the given success values and, for each field of the pair, what they select.
void PutGivenValues(TestConstruction& construction, const CategoryPair& pair) {
  const char* const key = card::kCategories.key.c_str();
  const QDVarList& variables = construction.Planner().GetVariables();
  PutSuccessValues(construction, key, *variables.GetVarAt(pair.first), card::kNoGivenValue);
  if (!construction.IsOK()) return;
  std::vector<std::string> texts;
  static_cast<void>(construction.Read(key, texts));
  construction.Put("UserSpecifiedSuccessfulListOriginal", texts);
  const CategorySelection firstSide = SelectCategories(*variables.GetVarAt(pair.first), texts);
  const CategorySelection secondSide = SelectCategories(*variables.GetVarAt(pair.second), texts);
  construction.Put("UserSpecifiedSuccListVar0", firstSide.codes);
  construction.Put("UserSpecifiedSuccListVar1", secondSide.codes);
  construction.Put("UserSpecifiedFailListVar0", firstSide.otherCodes);
  construction.Put("UserSpecifiedFailListVar1", secondSide.otherCodes);
}

/// McNemar test: do two related binary fields have the same proportion of successes?
///
/// Formulas, limits, sources: docs/statistics/mcnemar.md.
///
/// Success is what kit/groups/success_categories.h says. The asymptotic value decides, also beside
/// an exact one. One pass.
class NPARMcNemar final : public NPARTest {
 public:
  /// The largest n with an exact value.
  static constexpr std::int64_t kExactLimit = 25;

  /// Takes the settings over, not the variables.
  NPARMcNemar(QDSettings* settings, const QDVarList* variables)
      : NPARTest(settings),
        categories(variables, {.noSharedData = card::kNoSummaries,
                               .notTwoCategories = card::kNotTwoCategories,
                               .tooManyValues = card::kTooManyValues,
                               .noGivenSplit = card::kNoGivenValue}) {}

  XMLElement* WriteResults() override {
    const char* condition = categories.AreGiven() ? "CategoryListsAreSpecified_R_McNemar_2"
                                                  : "AllDistinctValuesUsed_R_McNemar_2";
    return WriteAlgorithm(
        *this,
        {.card = card::kCard, .decidingSig = figures.sig, .condition = pair.ConditionOf(condition)},
        [this](XMLElement& algorithm) {
          AddFigures(algorithm, "StatisticsResult",
                     {{"TotalN", table[0][0] + table[0][1] + table[1][0] + table[1][1]},
                      {"TestStatistic", figures.statistic},
                      {"DegreeOfFreedom", 1},
                      {"AsymptoticSig2Tailed", figures.sig},
                      {"ExactSig2Tailed", exactSig}});
          XMLElement* comparison = AddStructuredTable(algorithm, "CategoryFieldsComparison");
          WriteSide(*comparison, 0);
          WriteSide(*comparison, 1);
          XMLElement* content = AddSimpleTable(*comparison, "Content", "", "");
          for (const std::size_t row : {1U, 0U}) {
            AddRow(*content, JoinIntegers(std::vector{table[row][1], table[row][0]}));
          }
        });
  }

 protected:
  /// Errors 221606, 221609, 221610, 221611: no split in success and failure.
  void Prepare(const SettingsReader& settings) override {
    pair = CategoryPair(settings);
    categories.Read(settings, {pair.first, pair.second});
    if (HasFailed()) return;
    Require({pair.first, pair.second});
    if (categories.AreGiven()) {
      givenTexts = settings.List<std::string>("UserSpecifiedSuccessfulListOriginal");
      givenSuccesses = {settings.List<double>("UserSpecifiedSuccListVar0"),
                        settings.List<double>("UserSpecifiedSuccListVar1")};
      // The failures of both fields are read from the first one's key: hosts read the document so.
      givenFailures.fill(settings.List<double>("UserSpecifiedFailListVar0"));
    }
    const std::int32_t code = categories.Check(sharedData);
    if (code != 0) Fail(code);
  }

  // Classes that are not given are learnt from the first record.
  [[nodiscard]] bool TakesCells() const override { return categories.AreGiven(); }

  void Take(RecordBatch& batch) override {
    if (batch.Size() == 0) return;
    const std::int32_t* first = batch.TruncatedOf(pair.first);
    const std::int32_t* second = batch.TruncatedOf(pair.second);
    categories.LearnFrom(first[0]);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const std::size_t row = categories.IsSuccess(0, first[i]) ? 1 : 0;
        const std::size_t column = categories.IsSuccess(1, second[i]) ? 1 : 0;
        table[row][column] += weightAt(i);
      }
    });
  }

  /// Help message 221612: the exact value is given. Error 221605: the binomial function failed.
  void Compute() override {
    for (auto& row : table) {
      for (std::int64_t& count : row) count = WeightOrNone(count);
    }
    const std::int64_t b = table[0][1];
    const std::int64_t c = table[1][0];
    figures = McNemar(b, c);
    if (b + c > kExactLimit) return;
    Help(card::kExactGiven);
    exactSig = McNemarExactSig(b, c);
    if (!exactSig) Fail(card::kDistributionFailed);
  }

  void Extend(ExtendedFigures& extended) override {
    const std::int64_t b = table[0][1];
    const std::int64_t c = table[1][0];
    if (b + c >= 1) {
      const ChiSquareFigures uncorrected = UncorrectedMcNemar(b, c);
      extended.Add("UncorrectedTestStatistic", uncorrected.statistic);
      extended.Add("UncorrectedAsymptoticSig2Tailed", uncorrected.sig);
      if (const auto tails = ExactBinomialTails(b, b + c, 0.5)) {
        extended.Add("ExactSig2Tailed", tails->twoSided);
        extended.Add("ExactSig1TailedLess", tails->less);
        extended.Add("ExactSig1TailedGreater", tails->greater);
        extended.Add("MidPSig2Tailed", McNemarMidP(b, c));
      }
      const ChangeOdds odds = OddsOfChange(b, c, confidenceLevel);
      extended.Add("OddsRatio", odds.ratio);
      extended.Add("OddsRatioLower", odds.lower);
      extended.Add("OddsRatioUpper", odds.upper);
    }
    const std::int64_t both = table[1][1];
    extended.Add(SuccessTable(std::array{pair.first, pair.second}, std::array{both + c, both + b},
                              table[0][0] + b + c + both, confidenceLevel));
  }

 private:
  /// "Row..." or "Column...": the categories of one field on either side.
  void WriteSide(XMLElement& parent, std::size_t place) const {
    const bool isRow = place == 0;
    const bool areGiven = categories.AreGiven();
    AddAttributeRow(parent, isRow ? "RowNames" : "ColumnNames", isRow ? pair.first : pair.second);
    const std::vector<double> successes =
        areGiven ? givenSuccesses[place] : categories.CategoriesOf(place, true);
    AddAttributeRow(parent, isRow ? "RowSuccessList" : "ColumnSuccessList", JoinNumbers(successes));
    std::vector<std::string> unknown;
    for (std::size_t i = 0; areGiven && i < successes.size(); ++i) {
      if (successes[i] == -1.0 && i < givenTexts.size()) unknown.push_back(givenTexts[i]);
    }
    AddUnknownValues(parent, unknown,
                     isRow ? "RowValsNotInTheCategoreis" : "ColValsNotInTheCategoreis");
    AddAttributeRow(
        parent, isRow ? "RowFailList" : "ColumnFailList",
        JoinNumbers(areGiven ? givenFailures[place] : categories.CategoriesOf(place, false)));
  }

  CategoryPair pair;
  SuccessCategories categories;
  std::vector<std::string> givenTexts;                // as the user wrote them
  std::array<std::vector<double>, 2> givenSuccesses;  // category codes by field, -1: no category
  std::array<std::vector<double>, 2> givenFailures;
  std::array<std::array<std::int64_t, 2>, 2> table{};  // weights; [1][0]: the first alone succeeds
  ChiSquareFigures figures;
  std::optional<double> exactSig;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const CategoryPair pair =
      LookUpCategoryPair(construction, {.noVariableName = card::kNoVariableName,
                                        .notTwoVariables = card::kNotTwoVariables,
                                        .unfitVariable = card::kUnfitVariable});
  if (construction.IsOK() && construction.KindOf(pair.first) != construction.KindOf(pair.second)) {
    construction.Fail(card::kUnfitVariable);
  }
  if (construction.IsOK()) {
    planner.RegisterStatistic(pair.first, Statistic::Frequencies);
    planner.RegisterStatistic(pair.second, Statistic::Frequencies);
    const bool areGiven = construction.ReadText("classFormation") == "givenCategoryList";
    if (areGiven) PutGivenValues(construction, pair);
    construction.Put("userSpecifyGroupList", areGiven);
  }
  return construction.Make<NPARMcNemar>(&planner.GetVariables());
}

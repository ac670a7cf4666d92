#include "catalogue/cards/marginal_homogeneity.h"

#include <cstdint>
#include <utility>
#include <vector>

#include "catalogue/run.h"
#include "kit/contract/test.h"
#include "kit/groups/category_union.h"
#include "kit/statistics/marginal_homogeneity.h"
#include "kit/statistics/square_table.h"
#include "planning/test_construction.h"
#include "report/elements.h"
#include "tests/related/category_pair.h"

namespace card = catalogue::marginal_homogeneity;

namespace {

/// A larger table is refused before it is asked for: 2^27 cells are 1 GiB.
constexpr std::size_t kMostCells = std::size_t{1} << 27;

/// Stuart and Maxwell's statistic takes time with the cube of the categories.
constexpr std::size_t kMostEliminated = 200;

/// Marginal homogeneity test: do two related ordered categorical fields have the same distribution?
///
/// Formulas, limits, sources: docs/statistics/marginal_homogeneity.md.
///
/// The categories of both fields make one union (kit/groups/category_union.h) with scores: their
/// numbers, or their places for texts. One pass.
class NPARMargHomo final : public NPARTest {
 public:
  /// Takes the settings over. The union must be that of the fields in the settings.
  NPARMargHomo(QDSettings* settings, CategoryUnion categories)
      : NPARTest(settings), categories(std::move(categories)) {}

  XMLElement* WriteResults() override {
    return WriteAlgorithm(
        *this,
        {.card = card::kCard,
         .decidingSig = result.figures.sig,
         .condition = pair.ConditionOf("AllDistinctValuesUsed_R_MarginalHomogeneity_2")},
        [this](XMLElement& algorithm) {
          AddNormalStatistics(algorithm, {{"TotalN", totalN}, {"TestStatistic", result.statistic}},
                              result.figures);
          XMLElement* comparison =
              AddFigures(algorithm, "CategoryFieldsComparison",
                         {{"RowNames", pair.first}, {"ColumnNames", pair.second}});
          const std::string names = JoinTexts(categories.Texts());
          XMLElement* content = AddSimpleTable(*comparison, "Content", names, names);
          for (auto row = crossTable.begin(); row != crossTable.end();) {
            const auto next = row + static_cast<std::ptrdiff_t>(scores.size());
            AddRow(*content, JoinIntegers(std::vector(row, next)));
            row = next;
          }
        });
  }

 protected:
  /// Error 220002: no memory for the cross table.
  void Prepare(const SettingsReader& settings) override {
    pair = CategoryPair(settings);
    if (HasFailed()) return;
    Require({pair.first, pair.second});
    if (!settings.Find("scoreList", scores)) {
      for (std::size_t i = 0; i < categories.Size(); ++i) scores.push_back(categories.Score(i));
    }
    if (scores.size() * scores.size() > kMostCells) {
      Fail(catalogue::run::kNoMemory);
      return;
    }
    crossTable.assign(scores.size() * scores.size(), 0);
  }

  [[nodiscard]] bool TakesCells() const override { return true; }

  void Take(RecordBatch& batch) override {
    const std::int32_t* first = batch.TruncatedOf(pair.first);
    const std::int32_t* second = batch.TruncatedOf(pair.second);
    weight.UseTruncated(batch, [&](auto weightAt) {
      for (std::size_t i = 0; i < batch.Size(); ++i) {
        const auto row = static_cast<std::size_t>(first[i]);
        const auto column = static_cast<std::size_t>(categories.PlaceOfSecond(second[i]));
        if (row >= scores.size() || column >= scores.size()) continue;
        crossTable[row * scores.size() + column] += weightAt(i);
      }
    });
  }

  /// Error 220003: the weights sum to less than 1.
  void Compute() override {
    for (std::int64_t& count : crossTable) {
      count = WeightOrNone(count);
      totalN += count;
    }
    if (totalN < 1) {
      Fail(catalogue::run::kNoData);
      return;
    }
    result = TestMarginalHomogeneity(scores, crossTable);
  }

  void Extend(ExtendedFigures& figures) override {
    if (result.figures.standardError > 0.0) {
      // T sums the scores of the first field: where it is large, the second one lies low.
      const NormalTails tails(result.figures.z);
      figures.Add("AsymptoticSig1TailedLess", tails.greater);
      figures.Add("AsymptoticSig1TailedGreater", tails.less);
    }
    if (const auto exact = ExactMarginalHomogeneity(scores, crossTable)) {
      AddConditionalFigures(figures, *exact);
    }
    if (scores.size() <= kMostEliminated) {
      if (const auto overall = StuartMaxwell(crossTable, scores.size())) {
        figures.Add("StuartMaxwellStatistic", overall->statistic);
        figures.Add("StuartMaxwellDegreeOfFreedom", overall->degreeOfFreedom);
        figures.Add("StuartMaxwellSig", overall->sig);
      }
    }
    if (const auto symmetry = Bowker(crossTable, scores.size())) {
      figures.Add("BowkerStatistic", symmetry->statistic);
      figures.Add("BowkerDegreeOfFreedom", symmetry->degreeOfFreedom);
      figures.Add("BowkerSig", symmetry->sig);
    }
  }

 private:
  CategoryUnion categories;
  CategoryPair pair;
  std::vector<double> scores;
  std::vector<std::int64_t> crossTable;  // row by row
  std::int64_t totalN = 0;
  MarginalHomogeneity result;
};

}  // namespace

template <>
std::unique_ptr<NPARTest> ConstructTest<card::kCard>(TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const CategoryPair pair =
      LookUpCategoryPair(construction, {.noVariableName = card::kNoVariableName,
                                        .notTwoVariables = card::kNotTwoVariables,
                                        .unfitVariable = card::kUnfitVariable});
  CategoryUnion categories;
  if (construction.IsOK()) {
    const QDVarList& variables = planner.GetVariables();
    categories = CategoryUnion(*variables.GetVarAt(pair.first), *variables.GetVarAt(pair.second));
    if (!categories.IsMerged()) construction.Fail(card::kNotMerged);
    if (categories.Size() == 0) construction.Fail(card::kUnfitVariable);
  }
  construction.Put("numberOfCategories", categories.Size());
  if (construction.IsOK()) {
    planner.RegisterStatistic(pair.first, Statistic::Frequencies);
    planner.RegisterStatistic(pair.second, Statistic::Frequencies);
  }
  return construction.Make<NPARMargHomo>(std::move(categories));
}

#include "tests/related/marginal_homogeneity.h"

#include <utility>

#include "catalogue/cards/marginal_homogeneity.h"
#include "report/elements.h"
#include "report/messages.h"
#include "tests/related/category_pair.h"

namespace {

constexpr CategoryPairCodes kPairCodes{
    .noVariableName = 221703, .notTwoVariables = 221711, .unfitVariable = 221710};
constexpr std::int32_t kNoTableMemory = 220002;  // the cross table does not fit
constexpr std::int32_t kNoData = 220003;         // the weights sum to less than 1
constexpr std::int32_t kNotMerged = 221709;      // the fields' categories are of different kinds
constexpr std::int32_t kNoCategory = 221710;     // neither field has a category

/// A larger table is refused before it is asked for: 2^27 cells are 1 GiB.
constexpr std::size_t kMostCells = std::size_t{1} << 27;

}  // namespace

NPARMargHomo::NPARMargHomo(QDSettings* settings, CategoryUnion categories)
    : NPARRecordTest(settings), categories(std::move(categories)) {}

QDStatus NPARMargHomo::BeginPass() {
  weight = RecordWeight(*settings);
  if (settings->GetSettingValByName("variablePairFirstIndex", first)) {
    static_cast<void>(settings->GetSettingValByName("variablePairSecondIndex", second));
  }
  static_cast<void>(settings->GetSettingValByName("sigLevel", sigLevel));
  if (status.IsError()) return status;
  if (!settings->GetSettingValByName("scoreList", scores)) {
    scores.clear();
    for (std::size_t i = 0; i < categories.Size(); ++i) scores.push_back(categories.Score(i));
  }
  if (scores.size() * scores.size() > kMostCells) {
    ReportStatus(QDStatus(kNoTableMemory), MessageKind::Error);
    return status;
  }
  crossTable.assign(scores.size() * scores.size(), 0);
  passesLeft = 1;
  return status;
}

QDStatus NPARMargHomo::ProcessRecord(const Record& record) {
  if (status.IsError()) return status;
  const auto row = static_cast<std::size_t>(TruncateToInt32(record[first]));
  const auto column =
      static_cast<std::size_t>(categories.PlaceOfSecond(TruncateToInt32(record[second])));
  if (row >= scores.size() || column >= scores.size()) return status;
  const std::int64_t w = weight.Truncated(record);
  Cell(row, column) += w;
  totalN += w;
  return status;
}

QDStatus NPARMargHomo::EndPass() {
  if (status.IsError()) return status;
  if (totalN < 1) {
    ReportStatus(QDStatus(kNoData), MessageKind::Error);
    return status;
  }
  result = TestMarginalHomogeneity(scores, crossTable);
  passesLeft = 0;
  return status;
}

void NPARMargHomo::GetRequiredVariables(std::vector<std::int64_t>& positions) {
  positions.insert(positions.end(), {first, second});
}

XMLElement* NPARMargHomo::WriteResults() {
  auto algorithm = CreateAlgorithm("RMarginalHomogeneity", "hypothesis_test", "Related_Samples",
                                   DecisionWord(status, sigLevel, result.figures.sig));
  AddCondition(*algorithm, "AllDistinctValuesUsed_R_MarginalHomogeneity_2",
               {IndexText(first), IndexText(second)});
  WriteMessages(*algorithm, messages);
  if (status.IsError()) return algorithm.release();

  XMLElement* statistics = AddStructuredTable(*algorithm, "StatisticsResult");
  AddAttributeRow(*statistics, "TotalN", totalN);
  AddAttributeRow(*statistics, "TestStatistic", result.statistic);
  AddAttributeRow(*statistics, "StandardError", result.figures.standardError);
  AddAttributeRow(*statistics, "StandardTestStatistic", result.figures.z);
  AddAttributeRow(*statistics, "AsymptoticSig2Tailed", result.figures.sig);

  XMLElement* comparison = AddStructuredTable(*algorithm, "CategoryFieldsComparison");
  AddAttributeRow(*comparison, "RowNames", static_cast<std::int64_t>(first));
  AddAttributeRow(*comparison, "ColumnNames", static_cast<std::int64_t>(second));
  const std::string names = JoinTexts(categories.Texts());
  XMLElement* content = AddSimpleTable(*comparison, "Content", names, names);
  for (std::size_t i = 0; i < scores.size(); ++i) {
    const auto row = crossTable.begin() + static_cast<std::ptrdiff_t>(i * scores.size());
    AddRow(*content, JoinIntegers(std::vector<std::int64_t>(
                         row, row + static_cast<std::ptrdiff_t>(scores.size()))));
  }
  return algorithm.release();
}

template <>
std::unique_ptr<NPARTest> ConstructTest<catalogue::marginal_homogeneity::kCard>(
    TestConstruction& construction) {
  NPARPlanner& planner = construction.Planner();
  const CategoryPair pair = ReadCategoryPair(construction, kPairCodes);
  CategoryUnion categories;
  if (construction.IsOK()) {
    const QDVarList& variables = planner.GetVariables();
    categories = CategoryUnion(*variables.GetVarAt(pair.first), *variables.GetVarAt(pair.second));
    if (!categories.IsMerged()) construction.Fail(kNotMerged);
    if (categories.Size() == 0) construction.Fail(kNoCategory);
  }
  construction.Put("numberOfCategories", categories.Size());
  if (construction.IsOK()) {
    planner.RegisterStatistic(pair.first, Statistic::Frequencies);
    planner.RegisterStatistic(pair.second, Statistic::Frequencies);
  }
  return construction.Make<NPARMargHomo>(std::move(categories));
}

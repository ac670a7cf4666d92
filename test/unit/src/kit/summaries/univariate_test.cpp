#include "kit/summaries/univariate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/filled_bins.h"
#include "support/matchers.h"
#include "support/variables.h"

namespace {

using testing::ElementsAre;
using testing::Pair;
using Rows = std::vector<std::vector<double>>;

constexpr double kMissing = QDMV::gMissingValue;

/// Sorted views over rows in memory.
class SortedRows final : public ISortedData {
 public:
  explicit SortedRows(Rows rows) : rows(std::move(rows)) {}
  BatchSource* GetSortedIterator(std::int32_t variable) override {
    const auto place = static_cast<std::size_t>(variable);
    std::stable_sort(rows.begin(), rows.end(),
                     [place](const auto& a, const auto& b) { return a[place] < b[place]; });
    records = std::make_unique<MemoryRecords>(rows);
    batches = std::make_unique<IteratorBatches>(*records);
    return batches.get();
  }

 private:
  Rows rows;
  std::unique_ptr<MemoryRecords> records;
  std::unique_ptr<IteratorBatches> batches;
};

// Mean 5, sum of squares about it 32 with n = 8; each value by weight in the second form.
TEST(ContinuousSummary, MeanDeviationAndExtremesCountAWeightAsThatManyRecords) {
  const Rows plain = {{2}, {4}, {4}, {9}, {4}, {5}, {5}, {7}};
  const Rows weighted = {{1, 2}, {3.9, 4}, {2, 5}, {0.5, 100}, {1, 7}, {1, 9}};
  for (const auto& [rows, weightIndex] : {std::pair(plain, -1), std::pair(weighted, 0)}) {
    QDContUnivariateVariable summary(weightIndex + 1, weightIndex);
    summary.AddStatistic(1);
    summary.AddStatistic(3);
    for (const auto& row : rows) {
      ASSERT_THAT(summary.ProcessRecord(Record::View(row.data(), static_cast<int>(row.size()))),
                  IsOk());
    }
    ASSERT_THAT(summary.EndPass(), IsOk());
    EXPECT_EQ(summary.GetTotalWeight(), 8);
    EXPECT_THAT(summary.GetMean(), IsCloseTo(5.0));
    EXPECT_THAT(summary.GetStdDev(), IsCloseTo(std::sqrt(32.0 / 7.0)));
    EXPECT_EQ(summary.GetMinimum(), kMissing);  // not asked for
    EXPECT_EQ(summary.GetMaximum(), weightIndex < 0 ? 9.0 : 100.0);
    EXPECT_FALSE(summary.NeedsPass());
  }
}

TEST(ContinuousSummary, OneRecordHasNoDeviation) {
  QDContUnivariateVariable summary(0);
  summary.AddStatistic(0);
  const double value = 3.0;
  ASSERT_THAT(summary.ProcessRecord(Record::View(&value, 1)), IsOk());
  ASSERT_THAT(summary.EndPass(), IsOk());
  EXPECT_EQ(summary.GetStdDev(), 0.0);
  EXPECT_EQ(summary.GetMean(), 3.0);
}

TEST(ContinuousSummary, RefusesWhatOnlyCategoriesHaveAndNumbersThatAreNone) {
  QDContUnivariateVariable continuous(0);
  QDCateUnivariateVariable categorical(0, -1, 2);
  for (const int refused : {-1, 7, 8, 10})
    EXPECT_FALSE(continuous.AddStatistic(refused)) << refused;
  for (const int taken : {0, 1, 2, 3, 4, 5, 6, 9}) EXPECT_TRUE(continuous.AddStatistic(taken));
  for (const int refused : {-1, 0, 1, 2, 3, 5, 6, 10}) {
    EXPECT_FALSE(categorical.AddStatistic(refused)) << refused;
  }
  for (const int taken : {4, 7, 8, 9}) EXPECT_TRUE(categorical.AddStatistic(taken));
}

struct CategoryCase {
  const char* catches;
  std::vector<double> codes;
  std::int64_t largest;
  std::int32_t median;
};

const CategoryCase kCategoryCases[] = {
    {"no record", {}, 0, 0},
    {"half of 3 is 1: reached at once", {0, 1, 2}, 1, 0},
    {"half of 5 is 2: reached at code 1", {0, 1, 2, 2, 2}, 3, 1},
    {"the frequency and not its code", {2, 2, 2, 2}, 4, 2},
};

TEST(CategoricalSummary, MedianCategoryAndLargestFrequency) {
  for (const CategoryCase& row : kCategoryCases) {
    SCOPED_TRACE(row.catches);
    QDCateUnivariateVariable summary(0, -1, 3);
    summary.AddStatistic(9);
    for (const double& code : row.codes) {
      ASSERT_THAT(summary.ProcessRecord(Record::View(&code, 1)), IsOk());
    }
    ASSERT_THAT(summary.EndPass(), IsOk());
    EXPECT_EQ(summary.GetLargestFrequency(), row.largest);
    EXPECT_EQ(summary.GetMedianCategory(), row.median);
    EXPECT_EQ(summary.GetFrequencies().size(), 3u);
  }
}

TEST(CategoricalSummary, CodesThatAreNoCategoryAreCountedButTheMissingOne) {
  QDCateUnivariateVariable summary(0, 1, 2);
  summary.AddStatistic(9);
  for (const auto& row : Rows{{1, 2}, {5, 3}, {5, 4}, {-2, 1}, {QDMV::gMissingCategory, 9}}) {
    ASSERT_THAT(summary.ProcessRecord(Record::View(row.data(), 2)), IsOk());
  }
  ASSERT_THAT(summary.EndPass(), IsOk());
  EXPECT_THAT(summary.GetFrequencies(),
              ElementsAre(Pair(-2, 1), Pair(0, 0), Pair(1, 2), Pair(5, 7)));
  EXPECT_EQ(summary.GetTotalWeight(), 10);
  EXPECT_EQ(summary.GetMedianCategory(), 0) << "no category reaches half of the weight";
}

const Rows kRows = {{1, 0, 2, 5}, {kMissing, 2, 1, 6}, {3, -1, 1, kMissing}, {0, 2, 1, 0}};

/// Summaries over records of x, a group, the weight, y and a variable that no test takes.
struct Summarised {
  explicit Summarised(const Rows& rows = kRows) : records(rows, 3) {}
  void Ask(std::int32_t variable, Statistic statistic) {
    ASSERT_TRUE(summaries.Register(variable, static_cast<std::int32_t>(statistic)));
  }
  const QDVarList variables = VariableListBuilder()
                                  .Continuous("x")
                                  .Nominal("g", {"a", "b", "c"})
                                  .Weight("w")
                                  .Continuous("y")
                                  .Other("z")
                                  .Build();
  MemoryBlocks records;
  IteratorBatches batches{records};
  QDUnivariateSummaries summaries{&batches, &variables};
  const UnivariateResults results{&summaries};
};

TEST(Summaries, LeaveOutMissingValuesOfEachVariableAlone) {
  Summarised run;
  run.Ask(0, Statistic::Distribution);
  run.Ask(0, Statistic::MeanStdDev);
  run.summaries.SetWeightVariable(2);
  run.Ask(1, Statistic::Frequencies);
  ASSERT_THAT(run.summaries.Run(), IsOk());
  EXPECT_EQ(run.results.GetTotalWeight(0), 4);
  EXPECT_THAT(run.results.GetMean(0), IsCloseTo(1.25));
  EXPECT_EQ(run.results.GetMaximum(0), 3.0);
  EXPECT_THAT(Filled(*run.results.GetBins(0)),
              ElementsAre(Pair(2, 1.0), Pair(1, 3.0), Pair(1, 0.0)));
  std::map<std::int32_t, std::int64_t> frequencies = {{77, 1}};
  ASSERT_TRUE(run.results.GetFrequencies(1, frequencies));
  EXPECT_THAT(frequencies, ElementsAre(Pair(0, 2), Pair(1, 0), Pair(2, 2)));
  EXPECT_EQ(run.results.GetTotalWeight(1), 4);
}

TEST(Summaries, AnswerForNoOrAnotherKindOfVariableThatThereIsNone) {
  Summarised run;
  EXPECT_FALSE(run.summaries.Register(4, 1));   // a kind without summary
  EXPECT_FALSE(run.summaries.Register(17, 1));  // no variable
  run.Ask(0, Statistic::MeanStdDev);
  run.Ask(1, Statistic::Frequencies);
  EXPECT_FALSE(run.results.HasVariable(4));
  EXPECT_TRUE(run.results.HasVariable(1));
  EXPECT_EQ(run.results.GetTotalWeight(3), -1);
  EXPECT_EQ(run.results.GetMean(1), kMissing);
  EXPECT_EQ(run.results.GetBins(1), nullptr);
  EXPECT_EQ(run.results.GetMedianCategory(0), -1);
  EXPECT_EQ(run.results.GetLargestFrequency(0), -1);
  EXPECT_EQ(run.results.GetCategoryCount(0), -1);
  EXPECT_EQ(run.results.GetCategoryCount(1), 3);
  std::map<std::int32_t, std::int64_t> frequencies;
  EXPECT_FALSE(run.results.GetFrequencies(0, frequencies));
}

TEST(Summaries, QuartilesNeedSortedDataAndReadIt) {
  Summarised run;
  EXPECT_FALSE(run.summaries.Register(0, static_cast<std::int32_t>(Statistic::Median)));
  SortedRows sorted(kRows);
  run.summaries.SetSortedData(&sorted);
  run.summaries.SetWeightVariable(2);
  run.Ask(0, Statistic::Median);
  ASSERT_THAT(run.summaries.Run(), IsOk());
  EXPECT_EQ(run.results.GetMedian(0), 1.0);  // of the values 0, 1, 1, 3
  EXPECT_EQ(run.results.GetFirstQuartile(0), 0.5);
  EXPECT_EQ(run.results.GetThirdQuartile(0), 2.0);
  EXPECT_EQ(run.results.GetMaximum(0), 3.0);  // seen on the way
}

TEST(Summaries, ASummaryWithoutItsSortedViewFailsTheReading) {
  class NoViews final : public ISortedData {
    BatchSource* GetSortedIterator(std::int32_t) override { return nullptr; }
  } noViews;
  Summarised run;
  run.summaries.SetSortedData(&noViews);
  run.Ask(0, Statistic::Quartiles);
  EXPECT_THAT(run.summaries.Run(), HasCode(220005));
}

TEST(Summaries, ADistributionBehindAFinishedVariableStaysWithoutItsEntryOfZeros) {
  Summarised run;
  run.Ask(0, Statistic::Distribution);
  run.Ask(1, Statistic::Frequencies);
  run.Ask(3, Statistic::Distribution);
  ASSERT_THAT(run.summaries.Run(), IsOk());
  EXPECT_THAT(Filled(*run.results.GetBins(0)),
              ElementsAre(Pair(1, 1.0), Pair(1, 3.0), Pair(1, 0.0)));
  EXPECT_THAT(Filled(*run.results.GetBins(3)), ElementsAre(Pair(1, 5.0), Pair(1, 6.0)));
}

TEST(Summaries, NoRecordLeavesEverythingAsItWasMade) {
  Summarised run(Rows{});
  run.Ask(0, Statistic::Distribution);
  ASSERT_THAT(run.summaries.Run(), IsOk());
  EXPECT_EQ(run.records.Resets(), 1);
  EXPECT_EQ(run.results.GetMinimum(0), kMissing);
  EXPECT_TRUE(run.results.GetBins(0)->empty());
}

}  // namespace

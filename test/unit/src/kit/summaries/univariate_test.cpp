#include "kit/summaries/univariate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

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

/// Bins with a count.
std::vector<std::pair<std::int64_t, double>> Filled(const std::vector<HistogramBin>& bins) {
  std::vector<std::pair<std::int64_t, double>> filled;
  for (const HistogramBin& bin : bins) {
    if (bin.count > 0) filled.emplace_back(bin.count, bin.binMean);
  }
  return filled;
}

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
  QDContUnivariateVariable continuous;
  QDCateUnivariateVariable categorical(0, -1, 2);
  for (const int refused : {-1, 7, 8, 10})
    EXPECT_FALSE(continuous.AddStatistic(refused)) << refused;
  for (const int taken : {0, 1, 2, 3, 4, 5, 6, 9}) EXPECT_TRUE(continuous.AddStatistic(taken));
  for (const int refused : {-1, 0, 1, 2, 3, 5, 6, 10}) {
    EXPECT_FALSE(categorical.AddStatistic(refused)) << refused;
  }
  for (const int taken : {4, 7, 8, 9}) EXPECT_TRUE(categorical.AddStatistic(taken));
}

struct EdgeCase {
  const char* catches;
  double low, high;
  std::uint64_t bins;
  std::vector<double> edges;
};

const EdgeCase kEdgeCases[] = {
    {"no zero inside: equal steps, the last edge past the top", 1, 5, 4, {2, 3, 4, 6}},
    {"zero already an edge: it stands twice, and the step after the next is two widths wide",
     -1,
     3,
     4,
     {0, 0, 1, 3, 4}},
    {"zero between edges", -3, 5, 4, {-1, 0, 1, 5, 6}},
    {"lower end at zero counts as inside", 0, 4, 4, {0, 1, 3, 4, 5}},
    {"upper end at zero does not", -4, 0, 4, {-3, -2, -1, 1}},
    {"no width", 2, 2, 3, {2, 2, 3}},
    {"no bins", 1, 2, 0, {}},
};

TEST(Histogram, EdgesFollowTheRule) {
  for (const EdgeCase& row : kEdgeCases) {
    SCOPED_TRACE(row.catches);
    QDContUnivariateVariable histogram;
    histogram.SetRange(row.low, row.high, row.bins);
    EXPECT_EQ(histogram.GetBinUpperEdges(), row.edges);
    EXPECT_EQ(histogram.GetBins().size(), row.edges.size());
  }
}

TEST(Histogram, ZeroInsideTheRangeMakesOneMoreOfFourHundredBins) {
  QDContUnivariateVariable histogram;
  histogram.SetRange(-1.0, 2.0, QDContUnivariateVariable::kBinCount);
  const std::vector<double>& edges = histogram.GetBinUpperEdges();
  EXPECT_EQ(edges.size(), 401u);
  EXPECT_EQ(std::count(edges.begin(), edges.end(), 0.0), 1);
}

/// Bin i holds the values above edge i - 1 up to edge i.
std::int64_t BinByDefinition(const std::vector<double>& edges, double x) {
  std::size_t bin = 0;
  while (bin + 1 < edges.size() && edges[bin] < x) ++bin;
  return static_cast<std::int64_t>(bin);
}

TEST(Histogram, FindBinAgreesWithItsDefinitionAtAndBesideEveryEdge) {
  constexpr double kHuge = std::numeric_limits<double>::max() / 2;
  constexpr double kTiny = std::numeric_limits<double>::denorm_min();
  const std::vector<double> lows = {0,      -1, -1e-300, 1, 1e15,  -7.3, -kHuge,    -1,
                                    -kHuge, 0,  -kTiny,  3, -1e-9, -1e9, -2 * kHuge};
  const std::vector<double> highs = {1,   1,     5e-300,   1 + 1e-13, 1e15 + 3,     -7.3,
                                     1,   kHuge, kHuge,    kTiny,     kTiny * 1000, 1e9,
                                     1e9, 1e-9,  2 * kHuge};
  for (std::size_t range = 0; range < lows.size(); ++range) {
    const double low = lows[range];
    const double high = highs.at(range);
    SCOPED_TRACE(testing::Message() << low << " to " << high);
    QDContUnivariateVariable histogram;
    histogram.SetRange(low, high, QDContUnivariateVariable::kBinCount);
    const std::vector<double>& edges = histogram.GetBinUpperEdges();
    std::vector<double> probes = {low, high};
    for (const double edge : edges) {
      probes.insert(probes.end(), {edge, std::nextafter(edge, low), std::nextafter(edge, high)});
    }
    for (const double x : probes) {
      if (!(x >= low) || !(x <= high)) continue;
      ASSERT_EQ(histogram.FindBin(x), BinByDefinition(edges, x)) << x;
    }
  }
}

TEST(Histogram, NotANumberAndAFewBinsHaveAnAnswer) {
  QDContUnivariateVariable histogram;
  EXPECT_EQ(histogram.FindBin(3.0), 0);
  histogram.SetRange(0.0, 10.0, 1);  // edges 0 and 11
  EXPECT_EQ(histogram.FindBin(5.0), 1);
  EXPECT_EQ(histogram.FindBin(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Histogram, BinsHoldSumsOfWeightsAndWeightedMeansAndZerosComeLast) {
  QDContUnivariateVariable histogram;
  histogram.SetRange(-4.0, 4.0, 4);  // edges -2, 0, 0+, 2, 5
  for (const auto& [x, weight] : {std::pair(-4.0, 1), {-3.0, 3}, {4.0, 2}, {3.5, 0}}) {
    histogram.AddValueOrZero(x, weight);
  }
  histogram.AddValueOrZero(0.0, 5);
  histogram.AddZeroBin();
  EXPECT_EQ(histogram.GetZeroCount(), 5);
  EXPECT_THAT(Filled(histogram.GetBins()), ElementsAre(Pair(4, -3.25), Pair(2, 4.0), Pair(5, 0.0)));
  EXPECT_EQ(histogram.GetBins().back().count, 5);
}

TEST(Histogram, TakesAColumnAsItsValues) {
  constexpr std::size_t kCount = 700;  // more than are taken at a time
  std::vector<double> values(kCount, std::numeric_limits<double>::quiet_NaN());
  std::vector<std::int32_t> weights;
  for (std::size_t i = 0; i < kCount; ++i) {
    if (i % 90 != 0) values[i] = static_cast<double>(i % 81) * 0.1 - 4.0;  // 0 too, and both ends
    weights.push_back(static_cast<std::int32_t>(i % 3));
  }
  for (const bool isWeighted : {false, true}) {
    for (const std::uint64_t bins : {0U, 4U}) {
      QDContUnivariateVariable byColumn;
      QDContUnivariateVariable byValue;
      if (bins > 0) byColumn.SetRange(-4.0, 4.0, bins);
      if (bins > 0) byValue.SetRange(-4.0, 4.0, bins);
      byColumn.AddColumn(values.data(), kCount, isWeighted ? weights.data() : nullptr);
      for (std::size_t i = 0; i < kCount; ++i) {
        byValue.AddValueOrZero(values[i], isWeighted ? weights[i] : 1);
      }
      EXPECT_EQ(byColumn.GetZeroCount(), byValue.GetZeroCount());
      ASSERT_EQ(byColumn.GetBins().size(), byValue.GetBins().size());
      for (std::size_t bin = 0; bin < byValue.GetBins().size(); ++bin) {
        EXPECT_EQ(byColumn.GetBins()[bin].count, byValue.GetBins()[bin].count);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(byColumn.GetBins()[bin].binMean),
                  std::bit_cast<std::uint64_t>(byValue.GetBins()[bin].binMean));
      }
    }
  }
}

struct HingeCase {
  const char* catches;
  std::vector<std::pair<double, double>> values;  // ascending, with weight
  double quartile1, median, quartile3;
};

// Tukey's depths: median (n + 1) / 2, hinges (floor of it + 1) / 2 from either end; by hand.
const HingeCase kHingeCases[] = {
    {"odd n", {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}}, 2, 3, 4},
    {"even n, hinges on values", {{1, 1}, {2, 1}, {3, 1}, {4, 1}, {5, 1}, {6, 1}}, 2, 3.5, 5},
    {"hinges between values", {{1, 1}, {2, 1}, {4, 1}, {8, 1}}, 1.5, 3, 6},
    {"one value", {{7, 1}}, 7, 7, 7},
    {"two values", {{1, 1}, {2, 1}}, 1, 1.5, 2},
    {"a weight stands for equal records", {{1, 1}, {2, 2}, {5, 3}}, 2, 3.5, 5},
    {"no value", {}, kMissing, kMissing, kMissing},
};

TEST(Hinges, AreThoseOfTukey) {
  for (const HingeCase& row : kHingeCases) {
    SCOPED_TRACE(row.catches);
    QDContUnivariateVariable summary;
    double total = 0.0;
    for (const auto& [value, weight] : row.values) total += weight;
    for (const auto& [value, weight] : row.values) summary.TrackHinges(value, weight, total);
    summary.FinishHinges();
    EXPECT_EQ(summary.GetFirstQuartile(), row.quartile1);
    EXPECT_EQ(summary.GetMedian(), row.median);
    EXPECT_EQ(summary.GetThirdQuartile(), row.quartile3);
    EXPECT_EQ(summary.GetMinimum(), row.values.empty() ? kMissing : row.values.front().first);
    EXPECT_EQ(summary.GetMaximum(), row.values.empty() ? kMissing : row.values.back().first);
  }
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

#include "kit/ranks/record_ranks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <random>

#include "kit/ranks/column_ranks.h"
#include "kit/ranks/rank_counts.h"

namespace {

using testing::ElementsAreArray;

struct RecordCase {
  const char* catches;
  std::vector<double> values;
  std::vector<double> ranks;
};

const RecordCase kRecordCases[] = {
    {"descending values", {3, 2, 1}, {3, 2, 1}},
    {"two ties", {5, 1, 5, 1}, {3.5, 1.5, 3.5, 1.5}},
    {"all one tie", {4, 4, 4}, {2, 2, 2}},
    {"a drift beyond the first's reach", {0, 1.2e-14, 6e-15}, {1.5, 3, 1.5}},
    {"one value", {9}, {1}},
};

TEST(RecordRanks, SharePlacesOfTies) {
  RecordRanks ranks(4);
  for (const RecordCase& row : kRecordCases) {
    SCOPED_TRACE(row.catches);
    std::vector<double> found;
    for (std::size_t i = 0; i < row.values.size(); ++i) ranks.Put(i, row.values[i]);
    ranks.Rank(row.values.size());
    for (std::size_t i = 0; i < row.values.size(); ++i) found.push_back(ranks.RankOf(i));
    EXPECT_THAT(found, ElementsAreArray(row.ranks));
  }
}

TEST(RecordRanks, BothSidesOfTheChangeOfSortAgree) {
  for (const std::size_t count : {32u, 33u, 100u}) {
    RecordRanks ranks(count);
    // 0, 3, 6, ... modulo the odd or even count, so that some values stand twice.
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) values.push_back(static_cast<double>(i * 6 % count));
    for (std::size_t i = 0; i < count; ++i) ranks.Put(i, values[i]);
    ranks.Rank(count);
    for (std::size_t i = 0; i < count; ++i) {
      double below = 0;
      double equal = 0;
      for (const double other : values) {
        below += other < values[i] ? 1 : 0;
        equal += other == values[i] ? 1 : 0;
      }
      ASSERT_EQ(ranks.RankOf(i), below + (equal + 1) * 0.5) << i << " of " << count;
    }
  }
}

// RecordRanks, one record after the other, is the reference.
TEST(ColumnRanks, AreThoseOfEachRecordAlone) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  // Equal, tied without being equal, tied to both of two that do not tie, and not comparable.
  const std::vector<double> drawn{-2.5,         -0.0,        0.0,    6e-15,     1.2e-14,
                                  1.0,          1.0 + 1e-15, 5e-324, kInfinity, -kInfinity,
                                  std::nan(""), 7.0,         8.0,    9.0};
  std::mt19937 generator(1);
  for (const std::size_t k : {2u, 5u, 16u, 17u, 5000u}) {
    constexpr std::size_t kRecords = 300;  // more than fit
    std::vector<std::vector<double>> values(k, std::vector<double>(kRecords));
    std::vector<const double*> columns;
    for (std::vector<double>& column : values) {
      for (double& value : column) value = drawn[generator() % drawn.size()];
      columns.push_back(column.data());
    }
    ColumnRanks ranks(k);
    RecordRanks single(k);
    const std::size_t most = ranks.RecordsAtOnce();
    ASSERT_LT(most, kRecords);
    for (const std::size_t count : {std::size_t{1}, (most + 1) / 2, most}) {
      ranks.Rank(columns, kRecords - count, count);
      for (std::size_t record = 0; record < count; ++record) {
        for (std::size_t i = 0; i < k; ++i) single.Put(i, columns[i][kRecords - count + record]);
        single.Rank(k);
        for (std::size_t i = 0; i < k; ++i) {
          ASSERT_EQ(ranks.StepsOf(i)[record], 2.0 * single.RankOf(i) - 2.0)
              << record << " of " << count << ", " << i << " of " << k;
        }
      }
    }
  }
}

TEST(RankCounts, StandAscendingByRankForFewAndForManySamples) {
  for (const std::int32_t samples : {3, 1001}) {
    RankCounts counts(static_cast<std::size_t>(samples));
    const std::vector<std::int32_t> steps{2 * samples - 2, 1, 0, 1};
    const std::vector<std::int64_t> weights{4, 2, 1, 3};
    counts.Add(2, steps.data(), steps.size(), [&](std::size_t i) { return weights[i]; });
    counts.Add(1, steps.data() + 2, 1, [](std::size_t) { return 9; });
    std::vector<std::pair<double, std::int64_t>> found;
    for (const HistogramBin& bin : counts.CountsOf(2)) {
      if (bin.Count() > 0) found.emplace_back(bin.Mean(), bin.Count());
    }
    EXPECT_EQ(found, (std::vector<std::pair<double, std::int64_t>>{
                         {1.0, 1}, {1.5, 5}, {static_cast<double>(samples), 4}}));
    EXPECT_EQ(counts.RankSum(2), 1.0 + 1.5 * 5 + 4.0 * samples);
  }
}

// Records of the ranks 1.5 1.5 3 4, 2 2 2 4, 1 2 3 4 and 2.5 2.5 2.5 2.5.
TEST(RankCounts, TellTheTies) {
  RankCounts counts(4);
  const std::int32_t steps[4][4] = {{1, 2, 0, 3}, {1, 2, 2, 3}, {4, 2, 4, 3}, {6, 6, 6, 3}};
  const std::int64_t weights[4] = {5, 7, 11, std::int64_t{1} << 40};
  for (std::size_t sample = 0; sample < 4; ++sample) {
    counts.Add(sample, steps[sample], 4, [&](std::size_t i) { return weights[i]; });
  }
  EXPECT_EQ(counts.TieSum(), 6.0 * 5 + 24.0 * 7 + 60.0 * 0x1p40);
}

}  // namespace

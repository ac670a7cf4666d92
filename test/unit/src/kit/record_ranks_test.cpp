#include "kit/record_ranks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "kit/rank_counts.h"

namespace {

using testing::ElementsAreArray;

struct RecordCase {
  const char* catches;
  std::vector<double> values;
  std::vector<double> ranks;
  double tieTerm;
};

const RecordCase kRecordCases[] = {
    {"descending values", {3, 2, 1}, {3, 2, 1}, 0},
    {"two ties", {5, 1, 5, 1}, {3.5, 1.5, 3.5, 1.5}, 12},
    {"all one tie", {4, 4, 4}, {2, 2, 2}, 24},
    {"within 1e-14 of the first", {1 + 1e-15, 1}, {1.5, 1.5}, 6},
    {"a drift beyond the first's reach", {0, 6e-15, 1.2e-14}, {1.5, 1.5, 3}, 6},
    {"one value", {9}, {1}, 0},
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
    EXPECT_EQ(ranks.TieTerm(), row.tieTerm);
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

TEST(RankCounts, StandAscendingByRankForFewAndForManySamples) {
  for (const std::size_t samples : {3u, 1001u}) {
    RankCounts counts(samples);
    const auto last = static_cast<double>(samples);
    counts.Add(2, last, 4);
    counts.Add(2, 1.5, 2);
    counts.Add(2, 1.0, 1);
    counts.Add(2, 1.5, 3);
    counts.Add(1, 1.0, 9);
    std::vector<std::pair<double, std::int64_t>> found;
    for (const HistogramBin& bin : counts.CountsOf(2)) {
      if (bin.count > 0) found.emplace_back(bin.binMean, bin.count);
    }
    EXPECT_EQ(found, (std::vector<std::pair<double, std::int64_t>>{{1.0, 1}, {1.5, 5}, {last, 4}}));
  }
}

}  // namespace

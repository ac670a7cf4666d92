#include "kit/ranks/rank.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "kit/ranks/signed_ranks.h"
#include "support/matchers.h"

namespace {

struct Entry {
  double value;
  double weight;
  double group;
};

struct RankCase {
  const char* catches;
  std::vector<Entry> entries;
  double rankSum0, rankSum1;  // of the groups 0 and 1
  double tieSum;
};

// By hand.
const RankCase kRankCases[] = {
    {"no entry", {}, 0, 0, 0},
    {"mid-rank of a run over two groups",
     {{1, 1, 0}, {2, 1, 0}, {2, 1, 1}, {3, 1, 1}},
     3.5,
     6.5,
     6},
    {"a weight shares its rank", {{5, 3, 0}}, 6, 0, 24},
    {"weight 3 after 5 units has rank 7", {{1, 5, 1}, {2, 3, 0}}, 21, 15, 144},
    {"a fraction of a weight counts in the sum alone", {{1, 1.9, 0}, {2, 1, 1}}, 1.9, 2, 0},
    {"weight below 1 takes no place", {{1, 0.5, 0}, {2, 1, 1}}, 0.25, 1, 0},
};

TEST(Rank, SumsAndTiesFollowTheRuns) {
  for (const RankCase& row : kRankCases) {
    SCOPED_TRACE(row.catches);
    NPARRank ranks;
    for (int round = 0; round < 2; ++round) {  // a reset ranker starts anew
      for (const Entry& entry : row.entries) {
        ASSERT_THAT(ranks.AddValue(entry.value, entry.weight, entry.group), IsOk());
      }
      ranks.CloseRun();
      EXPECT_EQ(ranks.GroupEntry(0).rankSum, row.rankSum0);
      EXPECT_EQ(ranks.GroupEntry(1).rankSum, row.rankSum1);
      EXPECT_EQ(ranks.TieSum(), row.tieSum);
      ranks.Reset();
    }
  }
}

TEST(Rank, AnyKeyNamesAGroupAndAnUnseenOneIsEmpty) {
  NPARRank ranks;
  const std::vector<double> keys = {-1.0, 0.0, 0.5, 65535.0, 65536.0, 1e300};
  for (std::size_t i = 0; i < keys.size(); ++i) {
    ASSERT_THAT(ranks.AddValue(static_cast<double>(i), 1.0, keys[i]), IsOk());
  }
  ranks.CloseRun();
  for (std::size_t i = 0; i < keys.size(); ++i) {
    EXPECT_EQ(ranks.GroupEntry(keys[i]).rankSum, static_cast<double>(i + 1)) << keys[i];
  }
  EXPECT_EQ(ranks.GroupEntry(3.0).rankSum, 0.0);
}

TEST(Rank, ACopyGoesOnWithTheRunThatIsOpen) {
  NPARRank ranks;
  ASSERT_THAT(ranks.AddValue(1.0, 1.0, 0.0), IsOk());
  NPARRank copy = ranks;
  ASSERT_THAT(copy.AddValue(1.0, 1.0, 1.0), IsOk());
  copy.CloseRun();
  ranks.CloseRun();
  EXPECT_EQ(copy.GroupEntry(0.0).rankSum, 1.5);
  EXPECT_EQ(ranks.GroupEntry(0.0).rankSum, 1.0);
}

TEST(Rank, SumsOfWeightsGoBeyondThirtyTwoBits) {
  NPARRank ranks;
  for (const double value : {1.0, 2.0, 3.0}) {
    ASSERT_THAT(ranks.AddValue(value, 2147483647.0, value), IsOk());
  }
  ranks.CloseRun();
  EXPECT_EQ(ranks.GroupEntry(3.0).rankSum, 2147483647.0 * (2.0 * 2147483647.0 + 1073741824.0));
}

// Hollander and Wolfe (1999), Nonparametric Statistical Methods, table 3.1: the depression scores,
// first less second visit, signed-rank sum 40 of 45.
TEST(SignedRanks, SplitTheRanksOfSizesBySign) {
  SignedRanks ranks;
  for (const double d : {0.952, -0.147, 1.022, 0.43, 0.62, 0.59, 0.49, -0.08, 0.01}) {
    ranks.Add(d, 1.0);
  }
  ranks.Rank();
  EXPECT_EQ(ranks.PositiveRankSum(), 40.0);
  EXPECT_EQ(ranks.NegativeRankSum(), 5.0);
  EXPECT_EQ(ranks.TieSum(), 0.0);
}

// Sizes 1 1 2 3 3 3.
TEST(SignedRanks, OfUnitsLeaveOutZerosAndWhatIsNoNumber) {
  const std::vector<double> units{3.0,         -1.0, 0.0,           -3.0, std::nan(""),
                                  1.0 + 1e-15, 2.0,  -std::nan(""), 3.0,  -0.0};
  SignedRanks ranks;
  ranks.AddUnits(units.data(), units.size());
  ranks.Rank();
  EXPECT_EQ(ranks.PositiveRankSum(), 1.5 + 3 + 5 + 5);
  EXPECT_EQ(ranks.NegativeRankSum(), 1.5 + 5);
  EXPECT_EQ(ranks.TieSum(), 6.0 + 24.0);
}

TEST(SignedRanks, UnitsMayFollowAWeight) {
  SignedRanks ranks;
  ranks.Add(-1.0, 3.0);
  ranks.AddUnits(std::vector<double>{2.0, 0.0}.data(), 2);
  ranks.Rank();
  EXPECT_EQ(ranks.PositiveRankSum(), 4.0);
  EXPECT_EQ(ranks.NegativeRankSum(), 3 * 2.0);
}

// By hand: NPARRank, one entry after the other in a stable order.
TEST(SignedRanks, OfWholeAndOtherWeightsAreThoseOfNPARRank) {
  std::mt19937 random(7);
  const std::vector<double> wholes{0.0, 1.0, 2.0, 5.0, 2147483647.0};
  const std::vector<double> others{0.5, 1.0, -2.0, 2147483648.0, 3.75};
  const std::vector<double> drawn{0.3,          1.0,  1.0 + 1e-15, 2.0, 7.0,
                                  std::nan(""), 1e99, 3.0,         4.0, 1e308 * 10};
  for (const std::vector<double>& weights : {wholes, others}) {
    SignedRanks ranks;
    std::vector<std::pair<double, double>> entries;
    for (int i = 0; i < 300; ++i) {
      entries.emplace_back(drawn[random() % drawn.size()] * (random() % 2 == 0 ? 1.0 : -1.0),
                           weights[random() % weights.size()]);
      ranks.Add(entries.back().first, entries.back().second);
    }
    ranks.Rank();
    std::stable_sort(entries.begin(), entries.end(), [](const auto& a, const auto& b) {
      return OrderedBits(std::abs(a.first)) < OrderedBits(std::abs(b.first));
    });
    NPARRank expected;
    for (const auto& [d, weight] : entries) {
      static_cast<void>(expected.AddValue(std::abs(d), weight, d < 0.0 ? 0.0 : 1.0));
    }
    expected.CloseRun();
    EXPECT_EQ(ranks.PositiveRankSum(), expected.GroupEntry(1.0).rankSum);
    EXPECT_EQ(ranks.NegativeRankSum(), expected.GroupEntry(0.0).rankSum);
    EXPECT_DOUBLE_EQ(ranks.TieSum(), expected.TieSum().high);
  }
}

}  // namespace

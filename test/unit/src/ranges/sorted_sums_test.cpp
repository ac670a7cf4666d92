#include "ranges/sorted_sums.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <random>
#include <span>
#include <string>
#include <vector>

#include "kit/ranks/rank.h"
#include "tests/independent/jonckheere_statistic.h"

namespace {

constexpr std::size_t kGroups = 3;

/// Ascending cells whose steps are ties, chains of near ties across the tolerance of 1e-14, and
/// gaps.
std::vector<ValueCell> RandomCells(std::mt19937& random) {
  const double steps[] = {0.0, 0.0, 4e-15, 9e-15, 2e-14, 1.0};
  std::vector<ValueCell> cells(random() % 40);
  double value = 0.0;
  for (ValueCell& cell : cells) {
    value += steps[random() % std::size(steps)];
    cell = {value, 1 + static_cast<std::int64_t>(random() % 3),
            static_cast<std::uint32_t>(random() % kGroups)};
  }
  return cells;
}

SortedSums SumsOf(std::span<const ValueCell> cells) {
  SortedSums sums(kGroups, true);
  for (const ValueCell& cell : cells) EXPECT_TRUE(sums.Take(cell.value, cell.group, cell.weight));
  return sums;
}

std::vector<std::uint8_t> BytesOf(const SortedSums& sums) {
  ByteWriter write;
  sums.Write(write);
  return write.bytes;
}

/// The pieces that end at these places, each written, read and joined.
RunSums Joined(std::span<const ValueCell> cells, std::vector<std::size_t> ends) {
  ends.push_back(cells.size());
  std::ranges::sort(ends);
  SortedSums joined(kGroups, true);
  std::size_t begin = 0;
  for (const std::size_t end : ends) {
    const std::vector<std::uint8_t> bytes = BytesOf(SumsOf(cells.subspan(begin, end - begin)));
    ByteReader read(bytes);
    SortedSums piece(kGroups, true);
    EXPECT_TRUE(piece.Read(read) && read.IsAtEnd());
    EXPECT_TRUE(joined.Append(piece));
    begin = end;
  }
  return joined.Total();
}

// The classes that the tests rank with, a value at a time, are another road to the same sums.
TEST(SortedSumsTest, AreThoseOfTheRanksWhereverThePiecesAreCut) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 3000; ++round) {
    const std::vector<ValueCell> cells = RandomCells(random);
    NPARRank ranks;
    JonckheereCounts pairs(kGroups);
    JonckheerePair ofTwo[kGroups];  // by the group that is in neither
    TieRuns runs;
    for (const ValueCell& cell : cells) {
      static_cast<void>(ranks.AddValue(cell.value, static_cast<double>(cell.weight), cell.group));
      pairs.Add(cell.value, cell.weight, cell.group);
      static_cast<void>(runs.Begins(cell.value));
      for (std::size_t i = 0; i < kGroups; ++i) {
        const std::size_t later = i == kGroups - 1 ? 1 : 2;
        if (cell.group != i) ofTwo[i].Add(runs.First(), cell.weight, cell.group == later);
      }
    }
    for (JonckheerePair& pair : ofTwo) pair.CloseRun();
    ranks.CloseRun();
    pairs.CloseRun();
    std::vector<std::size_t> ends(random() % 6);
    for (std::size_t& end : ends) end = random() % (cells.size() + 1);
    const RunSums sums = Joined(cells, ends);
    for (std::size_t group = 0; group < kGroups; ++group) {
      EXPECT_EQ(HalfOf(sums.Groups()[group].twiceRankSum),
                ranks.GroupEntry(static_cast<double>(group)).rankSum);
    }
    EXPECT_EQ(ToDoubles(sums.TiedPairs()), pairs.Sums().ties.pairs);
    EXPECT_EQ(ToDoubles(sums.TiedPairs() + sums.TiedTriples()), ranks.TieSum());
    EXPECT_EQ(HalfOf(sums.TwiceOrderedPairs()), pairs.Sums().statistic);
    for (std::size_t i = 0; i < kGroups; ++i) {
      const std::size_t earlier = i == 0 ? 1 : 0;
      const std::size_t later = i == 2 ? 1 : 2;
      EXPECT_EQ(HalfOf(sums.Pairs()->TwiceOrdered(earlier, later)), ofTwo[i].Sums().statistic);
      const TiedUnits tied = sums.Pairs()->TiedOf(earlier, later);
      EXPECT_EQ(ToDoubles(tied.pairs), ofTwo[i].Sums().ties.pairs);
      EXPECT_EQ(ToDoubles(tied.triples), ofTwo[i].Sums().ties.triples);
    }
    ASSERT_FALSE(HasFailure()) << "round " << round;
  }
}

TEST(SortedSumsTest, SumsStayExactWhereDoublesRound) {
  SortedSums half(2);
  const std::int64_t weight = (std::int64_t{1} << 38) + 1;
  ASSERT_TRUE(half.Take(1.0, 0, weight) && half.Take(2.0, 1, weight));
  SortedSums whole = half;
  EXPECT_FALSE(whole.Append(half)) << "begins below the end";
  SortedSums above(2);
  ASSERT_TRUE(above.Take(2.0, 0, weight) && above.Take(2.0, 1, weight));
  ASSERT_TRUE(whole.Append(above));
  const WideInteger w = weight;
  const RunSums total = whole.Total();
  // Ranks (w + 1) / 2 below, and w + (3 w + 1) / 2 of the 3 w tied above.
  EXPECT_TRUE(total.Groups()[0].twiceRankSum == w * (w + 1) + w * (5 * w + 1));
  EXPECT_TRUE(total.Groups()[1].twiceRankSum == 2 * w * (5 * w + 1));
  EXPECT_TRUE(total.TiedTriples() == w * w * (w - 1) + 9 * w * w * (3 * w - 1));
  EXPECT_TRUE(total.TwiceOrderedPairs() == 4 * w * w + 2 * w * w);
}

TEST(SortedSumsTest, RefusesValuesThatDoNotAscendAndBytesThatAreNoSums) {
  SortedSums sums = SumsOf(std::vector<ValueCell>{{1.0, 1, 0}, {3.0, 2, 1}, {5.0, 1, 2}});
  EXPECT_FALSE(sums.Take(4.0, 0, 1));
  EXPECT_FALSE(sums.Take(std::numeric_limits<double>::quiet_NaN(), 0, 1));
  const std::vector<std::uint8_t> bytes = BytesOf(sums);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    ByteReader read({bytes.data(), length});
    SortedSums piece(kGroups, true);
    EXPECT_FALSE(piece.Read(read)) << length;
  }
  // Whatever a byte becomes, sums that are accepted can be finished and joined.
  std::size_t refused = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    std::vector<std::uint8_t> wrong = bytes;
    wrong[i] ^= 0xA5U;
    ByteReader read(wrong);
    SortedSums piece(kGroups, true);
    if (!piece.Read(read)) {
      ++refused;
      continue;
    }
    static_cast<void>(piece.Append(sums));
    EXPECT_GE(piece.Total().Count(), 0);
  }
  EXPECT_GT(refused, bytes.size() / 2);
}

}  // namespace

#include "kit/comparisons/range_counts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "kit/ranks/rank.h"

namespace {

struct Value {
  double x;
  std::int64_t weight;
  std::size_t place;
};

TEST(RangeCountsTest, EveryRangeIsAsIfItWereRankedAlone) {
  std::mt19937 random(11);
  for (int round = 0; round < 40; ++round) {
    const std::size_t groupCount = 2 + random() % 6;
    const unsigned distinct = round % 2 == 0 ? 8 : 100000;
    std::vector<Value> values;
    for (int i = 0; i < 60; ++i) {
      values.push_back({static_cast<double>(random() % distinct),
                        static_cast<std::int64_t>(random() % 4), random() % groupCount});
    }
    std::stable_sort(values.begin(), values.end(),
                     [](const Value& a, const Value& b) { return a.x < b.x; });
    RangeCounts counts(groupCount);
    for (const Value& value : values) counts.Add(value.x, value.weight, value.place);
    counts.Finish();
    for (std::size_t first = 0; first < groupCount; ++first) {
      for (std::size_t last = first + 1; last < groupCount; ++last) {
        const SampleRange range{first, last};
        NPARRank ranks;
        double ordered = 0.0;
        for (const Value& value : values) {
          if (value.place < first || value.place > last) continue;
          ASSERT_TRUE(ranks
                          .AddValue(value.x, static_cast<double>(value.weight),
                                    static_cast<double>(value.place))
                          .IsOK());
          for (const Value& other : values) {
            if (other.place < first || other.place >= value.place || other.x > value.x) continue;
            ordered +=
                static_cast<double>(value.weight * other.weight) * (other.x == value.x ? 0.5 : 1.0);
          }
        }
        ranks.CloseRun();
        double size = 0.0;
        for (std::size_t place = first; place <= last; ++place) {
          ASSERT_EQ(counts.RankSum(range, place),
                    ranks.GroupEntry(static_cast<double>(place)).rankSum);
          size += counts.SizeOf(place);
        }
        ASSERT_EQ(counts.SizeOf(range), size);
        ASSERT_EQ(counts.Ties(range).Cubic(), ranks.TieSum());
        ASSERT_EQ(counts.OrderedPairs(range), ordered);
      }
    }
  }
}

}  // namespace

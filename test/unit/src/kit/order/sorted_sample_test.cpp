#include "kit/order/sorted_sample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <vector>

namespace {

TEST(SortedSampleTest, CountsHoldTheWeightsAtAndBelowAValue) {
  SortedSample sample;
  sample.Add(1.0, 2);
  sample.Add(1.0, 1);
  sample.Add(2.0, 0);
  sample.Add(4.0, 5);
  EXPECT_EQ(sample.Total(), 8);
  EXPECT_EQ(sample.Values(), (std::vector<double>{1.0, 4.0}));
  EXPECT_EQ(sample.CountUpTo(0.9), 0);
  EXPECT_EQ(sample.CountUpTo(1.0), 3);
  EXPECT_EQ(sample.CountUpTo(3.9), 3);
  EXPECT_EQ(sample.CountBefore(1), 3);
  EXPECT_EQ(sample.CountUpTo(4.0), 8);
}

TEST(SortedSampleTest, TheMedianOfSeveralIsThatOfTheirUnion) {
  std::mt19937 random(7);
  for (int round = 0; round < 300; ++round) {
    const std::size_t sampleCount = 1 + random() % 9;
    const unsigned distinct = 1 + static_cast<unsigned>(random() % 40);
    std::vector<SortedSample> samples(sampleCount);
    std::vector<double> all;
    for (SortedSample& sample : samples) {
      std::vector<double> values;
      const std::size_t size = random() % 30;
      for (std::size_t i = 0; i < size; ++i)
        values.push_back(static_cast<double>(random() % distinct));
      std::sort(values.begin(), values.end());
      for (const double value : values) {
        const std::int64_t weight = 1 + static_cast<std::int64_t>(random() % 3);
        sample.Add(value, weight);
        all.insert(all.end(), static_cast<std::size_t>(weight), value);
      }
    }
    if (all.empty()) continue;
    std::sort(all.begin(), all.end());
    const double expected = std::midpoint(all[(all.size() - 1) / 2], all[all.size() / 2]);
    std::vector<const SortedSample*> list;
    for (const SortedSample& sample : samples) list.push_back(&sample);
    ASSERT_EQ(MedianOf(list), expected) << "round " << round;
  }
}

TEST(SortedSampleTest, TheMeanOfTheMiddlesDoesNotOverflow) {
  SortedSample sample;
  sample.Add(1e308, 1);
  sample.Add(1.5e308, 1);
  const SortedSample* const list[] = {&sample};
  EXPECT_DOUBLE_EQ(MedianOf(list), 1.25e308);
}

}  // namespace

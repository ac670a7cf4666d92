#include "kit/summaries/hinges.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

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
    {"infinities beside them",
     {{-kInfinity, 1}, {1, 1}, {2, 1}, {3, 1}, {kInfinity, 1}, {kInfinity, 2}},
     1.5,
     3,
     kInfinity},
    {"an infinity behind one", {{1, 1}, {2, 1}, {3, 1}, {kInfinity, 2}}, 2, 3, kInfinity},
    {"no value", {}, QDMV::gMissingValue, QDMV::gMissingValue, QDMV::gMissingValue},
};

TEST(HingesTest, AreThoseOfTukey) {
  for (const HingeCase& row : kHingeCases) {
    SCOPED_TRACE(row.catches);
    double total = 0.0;
    for (const auto& [value, weight] : row.values) total += weight;
    HingeWalk walk(total);
    for (const auto& [value, weight] : row.values) walk.TrackHinges(value, weight);
    walk.FinishHinges();
    EXPECT_EQ(walk.FirstQuartile(), row.quartile1);
    EXPECT_EQ(walk.Median(), row.median);
    EXPECT_EQ(walk.ThirdQuartile(), row.quartile3);
    EXPECT_EQ(walk.Minimum(), row.values.empty() ? QDMV::gMissingValue : row.values.front().first);
    EXPECT_EQ(walk.Maximum(), row.values.empty() ? QDMV::gMissingValue : row.values.back().first);
  }
}

TEST(HingesTest, PassingOverAStretchChangesNothing) {
  constexpr int kCount = 60;
  std::vector<double> values;
  for (int i = 0; i < kCount; ++i) values.push_back(static_cast<double>(i / 2) - 9.0);
  HingeWalk byValue(kCount);
  for (const double x : values) byValue.TrackHinges(x, 1.0);
  byValue.FinishHinges();
  for (const std::size_t length : {1U, 2U, 3U, 7U, 20U}) {
    HingeWalk walk(kCount);
    int passedOver = 0;
    for (std::size_t first = 0; first < values.size(); first += length) {
      const std::size_t end = std::min(first + length, values.size());
      const Stretch stretch{static_cast<std::int64_t>(end - first), values[first],
                            values[end > 1 ? end - 2 : 0], values[end - 1]};
      if (walk.PassOver(stretch)) {
        ++passedOver;
        continue;
      }
      for (std::size_t i = first; i < end; ++i) walk.TrackHinges(values[i], 1.0);
    }
    walk.FinishHinges();
    EXPECT_TRUE(passedOver > 0 || length > 10) << length;
    EXPECT_EQ(walk.FirstQuartile(), byValue.FirstQuartile());
    EXPECT_EQ(walk.Median(), byValue.Median());
    EXPECT_EQ(walk.ThirdQuartile(), byValue.ThirdQuartile());
    EXPECT_EQ(walk.Minimum(), byValue.Minimum());
    EXPECT_EQ(walk.Maximum(), byValue.Maximum());
  }
}

}  // namespace

#include "kit/summaries/moments.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using Weighted = std::vector<std::pair<double, std::int32_t>>;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Moments MomentsOf(const Weighted& list, std::size_t atOnce, bool isExpanded) {
  std::vector<double> values;
  std::vector<std::int32_t> weights;
  for (const auto& [x, weight] : list) {
    const std::size_t times = isExpanded ? static_cast<std::size_t>(weight) : 1;
    values.insert(values.end(), times, x);
    weights.insert(weights.end(), times, isExpanded ? 1 : weight);
  }
  Moments moments;
  for (std::size_t i = 0; i < values.size(); i += atOnce) {
    moments.Add(&values[i], isExpanded ? nullptr : &weights[i],
                std::min(atOnce, values.size() - i));
  }
  return moments;
}

/// Of parts of the list, joined.
Moments JoinedOf(const Weighted& list) {
  constexpr std::size_t kPart = 500;
  Moments joined;
  for (std::size_t i = 0; i < list.size(); i += kPart) {
    const auto first = list.begin() + static_cast<std::ptrdiff_t>(i);
    const auto count = static_cast<std::ptrdiff_t>(std::min(kPart, list.size() - i));
    joined.Append(MomentsOf({first, first + count}, 7, false));
  }
  return joined;
}

/// The tenths of a whole number that jumps about; the first value may be another.
Weighted Tenths(double first) {
  Weighted list = {{first, 1}};
  for (int i = 1; i < 3000; ++i) list.emplace_back(i * 7919 % 1000 * 0.1, 1);
  return list;
}

struct MomentsCase {
  const char* catches;
  Weighted values;
  double mean, stdDev;
};

// Python's fractions and decimal, of the doubles as they are.
const MomentsCase kCases[] = {
    {"a spread far below the values",
     {{1e9 + 0.1, 3}, {1e9 + 0.2, 5}, {1e9 + 0.7, 1}},
     1000000000.2222222,
     0.18559215131558832},
    {"a sum that cancels",
     {{1e8, 2}, {-1e8, 2}, {0.1, 1}, {-0.3, 4}},
     -0.12222222222222222,
     70710678.11865476},
    {"tenths", Tenths(0.0), 49.95, 28.872311478705242},
    {"the first value far from all others", Tenths(1e15), 333333333383.2833, 18257418583504.625},
    {"one value", {{0.1, 7}}, 0.1, 0.0},
};

TEST(MomentsTest, AreThoseOfFractionsInAnyOrderAndGrouping) {
  std::mt19937 random(1);
  for (const MomentsCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    Weighted values = row.values;
    for (const std::size_t atOnce : {std::size_t{1}, std::size_t{3}, Moments::kChunk}) {
      for (const bool isExpanded : {false, true}) {
        const Moments moments = MomentsOf(values, atOnce, isExpanded);
        EXPECT_DOUBLE_EQ(moments.Mean(), row.mean);
        EXPECT_DOUBLE_EQ(moments.StdDev(), row.stdDev);
        EXPECT_EQ(moments.StdDev(), MomentsOf(row.values, 7, false).StdDev());
        EXPECT_DOUBLE_EQ(JoinedOf(values).Mean(), row.mean);
        EXPECT_EQ(moments.StdDev(), JoinedOf(values).StdDev());
      }
      std::shuffle(values.begin(), values.end(), random);
    }
  }
}

TEST(MomentsTest, AHeavyValueBesideALightOne) {
  const Moments moments = MomentsOf({{0.1, 2147483647}, {0.7, 1}}, 2, false);
  EXPECT_EQ(moments.Mean(), 0.10000000027939678);
  EXPECT_DOUBLE_EQ(moments.StdDev(), 1.2947511862546645e-05);
}

TEST(MomentsTest, WhatTheSquaresOfCannotBeHeld) {
  EXPECT_EQ(MomentsOf({{1e300, 1}, {-1e300, 1}, {6, 1}}, 2, false).Mean(), 2.0);
  EXPECT_EQ(MomentsOf({{1e300, 1}, {6, 1}}, 2, false).StdDev(), kInfinity);
  EXPECT_DOUBLE_EQ(MomentsOf({{4e150, 1}, {1e150, 2}}, 2, false).Mean(), 2e150);
  const Moments infinite = MomentsOf({{1, 1}, {kInfinity, 1}, {2, 1}}, 2, false);
  EXPECT_EQ(infinite.Mean(), kInfinity);
  EXPECT_TRUE(std::isnan(infinite.StdDev()));
}

}  // namespace

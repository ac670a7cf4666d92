#include "kit/ranks/placements.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

namespace {

// Half of a group above all of the other, half below: doubled placements of 0 and of 2 n2 deviate
// by n2, those of the others not at all.
TEST(PlacementsTest, ScatterHoldsWherever128BitsDo) {
  for (const std::int64_t half : {std::int64_t{1}, std::int64_t{1} << 30, std::int64_t{1} << 39}) {
    Placements placements;
    placements.Add({half, 0});
    placements.Add({0, 2 * half});
    placements.Add({half, 0});
    const auto n = static_cast<double>(2 * half);
    EXPECT_DOUBLE_EQ(*placements.Scatter(0), n * n * n);
    EXPECT_EQ(*placements.Scatter(1), 0.0);
  }
  Placements beyond;
  beyond.Add({std::int64_t{1} << 40, std::int64_t{1} << 40});
  EXPECT_TRUE(beyond.Scatter(0));
  beyond.Add({1, 0});
  EXPECT_FALSE(beyond.Scatter(0));
}

// Units by one, in stretches, and in stretches too long or too late for sums of 64 bits.
TEST(PlacementsTest, UntiedUnitsCountAsRunsOfOne) {
  std::vector<std::int32_t> groups;
  for (std::uint32_t i = 0; i < 3000; ++i)
    groups.push_back(static_cast<std::int32_t>(i * 2654435761U >> 31U));
  for (const std::int64_t before : {std::int64_t{0}, std::int64_t{1} << 27}) {
    Placements one;
    one.Add({before, before});
    Placements stretches = one;
    for (const std::int32_t group : groups) one.Add({1 - group, group});
    stretches.AddUntied(groups.data(), 1000);
    stretches.AddUntied(groups.data() + 1000, 2000);
    for (const std::size_t group : {std::size_t{0}, std::size_t{1}}) {
      EXPECT_EQ(stretches.Count(group), one.Count(group));
      EXPECT_TRUE(stretches.Sum(group) == one.Sum(group));
      EXPECT_EQ(stretches.Scatter(group), one.Scatter(group));
    }
  }
}

}  // namespace

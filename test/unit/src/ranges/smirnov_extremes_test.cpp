#include "ranges/smirnov_extremes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

namespace {

using Counts = SmirnovExtremes::Counts;
using Units = std::vector<std::pair<double, std::size_t>>;  // values with their groups, ascending

/// The stretches that end at these places, each written, read and joined.
SmirnovExtremes Joined(const Units& units, const Counts& sizes, std::vector<std::size_t> ends) {
  ends.push_back(units.size());
  std::ranges::sort(ends);
  SmirnovExtremes joined(sizes, {});
  Counts before{};
  std::size_t next = 0;
  for (const std::size_t end : ends) {
    SmirnovExtremes stretch(sizes, before);
    for (; next < end; ++next) {
      stretch.Take(units[next].first, units[next].second, 1);
      ++before[units[next].second];
    }
    ByteWriter write;
    stretch.Write(write);
    ByteReader read(write.bytes);
    SmirnovExtremes copy({}, {});
    EXPECT_TRUE(copy.Read(read) && read.IsAtEnd());
    EXPECT_TRUE(joined.Append(copy));
  }
  EXPECT_TRUE(joined.Finish());
  return joined;
}

TEST(SmirnovExtremesTest, AreThoseOfAllStepsWhereverTheStretchesAreCut) {
  std::mt19937 random(1933);
  for (int round = 0; round < 2000; ++round) {
    Units units(2 + random() % 30);
    Counts sizes{};
    for (auto& [value, group] : units) {
      value = static_cast<double>(random() % 12);
      group = &value == &units[0].first ? 0 : &value == &units[1].first ? 1 : random() % 2;
      ++sizes[group];
    }
    std::ranges::sort(units);
    double most = 0.0;
    double least = 0.0;
    for (double x = 0.0; x < 12.0; ++x) {
      Counts upTo{};
      for (const auto& [value, group] : units) upTo[group] += value <= x ? 1 : 0;
      const double f1 = static_cast<double>(upTo[0]) / static_cast<double>(sizes[0]);
      const double f2 = static_cast<double>(upTo[1]) / static_cast<double>(sizes[1]);
      const double d = sizes[0] >= sizes[1] ? f1 - f2 : f2 - f1;
      most = std::max(most, d);
      least = std::min(least, d);
    }
    std::vector<std::size_t> ends(random() % 5);
    for (std::size_t& end : ends) end = random() % (units.size() + 1);
    const SmirnovExtremes extremes = Joined(units, sizes, ends);
    EXPECT_EQ(extremes.Positive(), most);
    EXPECT_EQ(extremes.Negative(), least);
  }
}

TEST(SmirnovExtremesTest, AStretchOfOtherRecordsIsRefused) {
  SmirnovExtremes first({2, 1}, {0, 0});
  first.Take(1.0, 0, 1);
  EXPECT_FALSE(first.Append(SmirnovExtremes({2, 1}, {0, 0}))) << "one is missing";
  EXPECT_FALSE(first.Append(SmirnovExtremes({2, 2}, {1, 0}))) << "other sizes";
  EXPECT_FALSE(first.Finish()) << "units are missing";
}

}  // namespace

#include "kit/ranks/merged_runs.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace {

int RunsIn(const std::string& units) {
  int runs = 0;
  for (std::size_t i = 0; i < units.size(); ++i) runs += i == 0 || units[i] != units[i - 1];
  return runs;
}

/// Fewest and most runs over every order of the units inside each block.
struct Extremes {
  int fewest = 1000;
  int most = 0;
};
void TryOrders(const std::vector<std::string>& blocks, std::size_t block, const std::string& units,
               Extremes& found) {
  if (block == blocks.size()) {
    found.fewest = std::min(found.fewest, RunsIn(units));
    found.most = std::max(found.most, RunsIn(units));
    return;
  }
  std::string order = blocks[block];
  std::sort(order.begin(), order.end());
  do {
    TryOrders(blocks, block + 1, units + order, found);
  } while (std::next_permutation(order.begin(), order.end()));
}

MergedRuns RunsOfBlocks(const std::vector<std::string>& blocks) {
  MergedRuns runs;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (const char unit : blocks[i]) {
      runs.Add(static_cast<double>(i), unit == 'a' ? 0 : 1, 1);
    }
  }
  runs.Finish();
  return runs;
}

TEST(MergedRunsTest, ExtremesAreThoseOfAllOrdersOfTheTies) {
  std::mt19937 random(20240611);
  for (int round = 0; round < 400; ++round) {
    std::vector<std::string> blocks(1 + random() % 4);
    int ties = 0;
    for (std::string& block : blocks) {
      block = std::string(random() % 4, 'a') + std::string(random() % 3, 'b');
      if (block.empty()) block = "b";
      ties += block.front() != block.back();
    }
    Extremes found;
    TryOrders(blocks, 0, "", found);
    const MergedRuns runs = RunsOfBlocks(blocks);
    const std::string text = ::testing::PrintToString(blocks);
    EXPECT_EQ(runs.Minimum(), found.fewest) << text;
    EXPECT_EQ(runs.Maximum(), found.most) << text;
    EXPECT_EQ(runs.InterGroupTies(), ties) << text;
  }
}

TEST(MergedRunsTest, ARecordIsAsManyUnitsAsItWeighs) {
  MergedRuns runs;
  runs.Add(1.0, 0, 3);
  runs.Add(1.0, 1, 5);
  runs.Add(2.0, 0, 0);  // no unit: it parts no run
  runs.Add(3.0, 1, std::int64_t{1} << 40);
  runs.Finish();
  EXPECT_EQ(runs.Minimum(), 2);
  EXPECT_EQ(runs.Maximum(), 7);
  EXPECT_EQ(runs.InterGroupTies(), 1);
}

TEST(MergedRunsTest, NoUnitsMakeNoRuns) {
  MergedRuns runs;
  runs.Add(1.0, 0, 0);
  runs.Finish();
  EXPECT_EQ(runs.Minimum(), 0);
  EXPECT_EQ(runs.Maximum(), 0);
}

}  // namespace

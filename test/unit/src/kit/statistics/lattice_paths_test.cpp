#include "kit/statistics/lattice_paths.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <vector>

namespace {

std::vector<bool> EndsOf(const std::vector<std::size_t>& runLengths, std::size_t units) {
  std::vector<bool> ends(units + 1);
  std::size_t end = 0;
  for (const std::size_t length : runLengths) ends[end += length] = true;
  return ends;
}

struct SmirnovCase {
  const char* catches;
  std::int64_t n1, n2;
  SmirnovDistances distances;
  std::vector<std::size_t> runLengths;
  std::array<double, 3> sigs;  // two-sided, less, greater
};

// Python 3.11, whole numbers: paths that do not touch, counted step by step, over C(n1 + n2, n1).
// Without ties also SciPy 1.17.1, ks_2samp([1,2,3,4,5,6.5,7], [4.5,6.6,8,9,10], method="exact").
const std::vector<std::size_t> kUntied(12, 1);
const SmirnovCase kCases[] = {
    {"no ties", 7, 5, {23, 0}, kUntied, {0.11616161616161616, 1.0, 0.058080808080808081}},
    {"groups swapped", 5, 7, {0, 23}, kUntied, {0.11616161616161616, 0.058080808080808081, 1.0}},
    {"ties",
     8,
     7,
     {28, 3},
     {1, 3, 4, 3, 3, 1},
     {0.15897435897435897, 0.84397824397824398, 0.07397047397047397}},
    {"two runs, one on each side", 3, 4, {12, 0}, {3, 4}, {1.0 / 35, 1.0, 1.0 / 35}},
    {"groups apart", 3, 4, {12, 0}, std::vector<std::size_t>(7, 1), {2.0 / 35, 1.0, 1.0 / 35}},
    {"one unit each", 1, 1, {1, 0}, {1, 1}, {1.0, 1.0, 0.5}},
    {"all tie", 3, 4, {0, 0}, {7}, {1.0, 1.0, 1.0}},
};

TEST(LatticePathsTest, TheShareOfPathsIsThatOfAllDivisions) {
  for (const SmirnovCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const auto units = static_cast<std::size_t>(row.n1 + row.n2);
    const ExactTails sigs =
        ConditionalSmirnov(row.n1, row.n2, row.distances, EndsOf(row.runLengths, units));
    EXPECT_DOUBLE_EQ(sigs.twoSided, row.sigs[0]);
    EXPECT_DOUBLE_EQ(sigs.less, row.sigs[1]);
    EXPECT_DOUBLE_EQ(sigs.greater, row.sigs[2]);
  }
}

// One unit is at each of n places with the same probability; groups that do not overlap are one
// division of all, of a thousand each 1 of 2.05e600.
TEST(LatticePathsTest, LongPathsAndSmallSharesKeepTheirDigits) {
  constexpr std::int64_t kOthers = kMostLatticePairs;
  const std::vector<bool> untied(static_cast<std::size_t>(kOthers) + 2, true);
  const ExactTails one = ConditionalSmirnov(1, kOthers, {0, 3900000}, untied);
  EXPECT_DOUBLE_EQ(one.less, 100001.0 / 4000001.0);

  const std::vector<bool> many(2001, true);
  EXPECT_EQ(ConditionalSmirnov(1000, 1000, {1000000, 0}, many).greater, 0.0);
}

}  // namespace

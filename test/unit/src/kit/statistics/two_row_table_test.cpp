#include "kit/statistics/two_row_table.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "support/matchers.h"

namespace {

struct TableCase {
  const char* catches;
  std::vector<std::int64_t> lower, sizes;
  double chiSquare, sig;
  double yates = 0.0, yatesSig = 1.0, fisher = 1.0;  // of two groups
};

// SciPy 1.17.1: stats.chi2_contingency(table, correction=...), stats.fisher_exact(table)
const TableCase kCases[] = {
    {"three groups", {5, 4, 0}, {5, 6, 4}, 9.44444444444444444, 0.0088953890370439555},
    {"two groups",
     {6, 1},
     {9, 5},
     2.8,
     0.0942643068412103021,
     1.24444444444444444,
     0.26461621708358877,
     0.26573426573426573},
    {"a correction past 0", {3, 3}, {6, 7}, 0.066326530612244898, 0.796762421835232196},
    {"one-sided", {4, 3}, {4, 3}, 0.0, 1.0},
};

TEST(TwoRowTableTest, FiguresAgreeWithSciPy) {
  for (const TableCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    TwoRowTable table;
    for (std::size_t j = 0; j < row.sizes.size(); ++j) table.Add(row.lower[j], row.sizes[j]);
    EXPECT_THAT(table.ChiSquare().statistic, IsCloseTo(row.chiSquare));
    EXPECT_THAT(table.ChiSquare().sig, IsCloseTo(row.sig, 1e-13));
    if (row.sizes.size() != 2 || table.IsOneSided()) continue;
    EXPECT_THAT(table.YatesChiSquare().statistic, IsCloseTo(row.yates));
    EXPECT_THAT(table.YatesChiSquare().sig, IsCloseTo(row.yatesSig, 1e-13));
    EXPECT_THAT(table.FisherSig(), IsCloseTo(row.fisher));
  }
}

TEST(TwoRowTableTest, EveryCellHasItsExpectedCount) {
  TwoRowTable table;  // expected 3, 3.6, 2.4 below and 7, 8.4, 5.6 above
  for (const std::int64_t size : {10, 12, 8}) table.Add(3, size);
  EXPECT_EQ(table.Expected().cells, 6);
  EXPECT_EQ(table.Expected().lowCells, 3);
  EXPECT_DOUBLE_EQ(table.Expected().smallest, 2.4);
}

}  // namespace

#include "planning/kept_records.h"

#include <gtest/gtest.h>

#include <bit>
#include <limits>
#include <vector>

namespace {

constexpr double kMissing = QDMV::gMissingValue;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

KeptColumn ColumnOf(const std::vector<double>& values, std::size_t atOnce = 3) {
  KeptColumn column(2);
  for (std::size_t kept = 0; kept < values.size(); kept += atOnce) {
    column.Append(kept, values.data() + kept, std::min(atOnce, values.size() - kept), false);
  }
  return column;
}

TEST(KeptColumn, TakesAByteForWhatAByteTellsAndKeepsEveryBitOfTheRest) {
  struct Case {
    double value;
    bool isNarrow;
  };
  for (const Case& row :
       {Case{0.0, true}, Case{254.0, true}, Case{-1.0, true}, Case{255.0, false},
        Case{256.0, false}, Case{-0.0, false}, Case{-2.0, false}, Case{0.5, false},
        Case{1e-300, false}, Case{4503599627370497.0, false}, Case{1e300, false}, Case{kNan, false},
        Case{kMissing, false}, Case{-std::numeric_limits<double>::infinity(), false}}) {
    // Up to the value in question all fit, also over an edge of a block.
    std::vector<double> values{7, 0, -1, 254, 3, 3, 1, -1, 9};
    values.push_back(row.value);
    values.push_back(1.0);
    for (const std::size_t atOnce : {1U, 3U, 11U}) {
      const KeptColumn column = ColumnOf(values, atOnce);
      EXPECT_EQ(column.IsNarrow(), row.isNarrow) << row.value;
      for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(column.ValueAt(i)),
                  std::bit_cast<std::uint64_t>(values[i]))
            << row.value << ", place " << i;
      }
    }
  }
  EXPECT_EQ(ColumnOf({-1, 4, 2}).CodeCount(), 5U);
  EXPECT_EQ(ColumnOf({-1}).CodeCount(), 0U);
}

TEST(KeptColumn, TakesCodesForFewValuesAsLongAsTheyAreFew) {
  const auto repeating = [](std::size_t count, std::size_t distinct) {
    std::vector<double> values;
    for (std::size_t i = 0; i < count; ++i) {
      values.push_back(static_cast<double>(i % distinct) * 0.5 - 1e6);
    }
    return values;
  };
  struct Case {
    const char* name;
    std::vector<double> values;
    bool hasTable;
  };
  std::vector<double> bytesFirst(3000, 7.0);
  bytesFirst.push_back(-0.0);
  std::vector<double> tooMany = repeating(2000, 10);
  for (double& value : repeating(ValueCodes::kMost, ValueCodes::kMost)) {
    tooMany.push_back(value - 1e7);
  }
  for (const Case& row :
       {Case{"a hundred", repeating(5000, 100), true},
        Case{"all once", repeating(1024, 1024), false},
        Case{"all once, but too few to tell", repeating(1000, 1000), true},
        Case{"most once", repeating(1024, 992), true}, Case{"bytes", bytesFirst, true},
        Case{"too many in the end", tooMany, false}}) {
    SCOPED_TRACE(row.name);
    const KeptColumn column = ColumnOf(row.values, 64);
    EXPECT_FALSE(column.IsNarrow());
    EXPECT_EQ(column.Table() != nullptr, row.hasTable);
    std::size_t different = 0;
    for (std::size_t i = 0; i < row.values.size(); ++i) {
      const auto kept = std::bit_cast<std::uint64_t>(column.ValueAt(i));
      different += kept == std::bit_cast<std::uint64_t>(row.values[i]) ? 0 : 1;
    }
    EXPECT_EQ(different, 0U);
  }
}

TEST(KeptColumn, KnowsWhetherItHoldsAMark) {
  const auto holds = [](const std::vector<double>& values) {
    const KeptColumn column = ColumnOf(values);
    return std::pair(column.Holds(kMissing), column.Holds(QDMV::gMissingCategory));
  };
  EXPECT_EQ(holds({0.5, 1, -1.5, std::numeric_limits<double>::lowest(), kNan}),
            std::pair(false, false));
  EXPECT_EQ(holds({0.5, 1, 2, 3, kMissing}), std::pair(true, false));
  EXPECT_EQ(holds({0, 1, 2, 3, -1, 5}), std::pair(false, true));
  EXPECT_EQ(holds({-1, kMissing}), std::pair(true, true));
}

}  // namespace

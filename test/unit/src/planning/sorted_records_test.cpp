#include "planning/sorted_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <limits>

#include "support/kept_records.h"

namespace {

constexpr double kMissing = QDMV::gMissingValue;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(NPARSortedIterator, WalksAscendingWithEqualValuesInRecordOrder) {
  for (const int count : {1, 256, 257, 2049, 6000}) {
    SCOPED_TRACE(count);
    const Kept kept(TwoVariables(), Numbered(count));
    std::vector<std::pair<double, double>> expected;
    for (const auto& row : Numbered(count)) expected.emplace_back(row[1], row[0]);
    std::sort(expected.begin(), expected.end());  // numbers ascend within equal values
    std::vector<double> numbers;
    for (const auto& pair : expected) numbers.push_back(pair.second);

    NPARSortManager manager(kept.reader.get());
    ASSERT_TRUE(manager.AddSortVariable(1));
    MultiPassRecordIter* sorted = manager.GetSortedIterator(1);
    EXPECT_EQ(Walk(*sorted, 0), numbers);
    EXPECT_EQ(sorted->GetState(), 1);
    EXPECT_EQ(sorted->Next(), nullptr);
    EXPECT_EQ(sorted->Reset(), 0);
    EXPECT_EQ(WalkBlocks(dynamic_cast<IRecordBlocks&>(*sorted), 0), numbers);
    EXPECT_EQ(sorted->Reset(), 0);
    EXPECT_EQ((*sorted->Next())[0], numbers.front());
  }
}

TEST(NPARSortedIterator, TakesTheMissingValueAsAValueAndPutsNotANumberLast) {
  const Kept kept(TwoVariables(), {{0, kNan}, {1, 3}, {2, kMissing}, {3, -3}, {4, -1e308}});
  NPARSortManager manager(kept.reader.get());
  ASSERT_TRUE(manager.AddSortVariable(1));
  EXPECT_EQ(Walk(*manager.GetSortedIterator(1), 0), (std::vector<double>{2, 4, 3, 1, 0}));
}

TEST(NPARSortedIterator, OverNoRecordsEndsAtOnce) {
  const Kept kept(TwoVariables(), {});
  NPARSortedIterator sorted(&kept.reader->Records(), {});
  EXPECT_EQ(sorted.Reset(), 1);
  EXPECT_FALSE(sorted.HasNext());
  RecordBlock block;
  EXPECT_FALSE(sorted.NextBlock(block));
}

/// More records than are left to their rows: what the records are sorted by, codes of one byte,
/// codes that are not, and some of everything that a copy could lose.
Rows ManyKinds() {
  const double special[] = {-0.0, 0.0, kNan, kMissing, -kInfinity, kInfinity, 5e-324};
  Rows rows;
  for (int i = 0; i < 40000; ++i) {
    const double x = i % 1000 < 7 ? special[i % 1000] : (i * 7919) % 30011 - 15000.0;
    const double narrow = i % 11 == 0 ? QDMV::gMissingCategory : i % 255;
    const double zeros = i == 20000 ? -0.0 : 0.0;
    rows.push_back({x, narrow, i % 256 * 1.0, zeros, i % 2 * 0.5});
  }
  return rows;
}

TEST(NPARSortedIterator, GivesColumnsBitForBitAsTheRowsHoldThem) {
  const Kept kept(VariableListBuilder()
                      .Continuous("x")
                      .Continuous("narrow")
                      .Continuous("wide")
                      .Continuous("zeros")
                      .Continuous("halves")
                      .Build(),
                  ManyKinds());
  NPARSortManager manager(kept.reader.get());
  ASSERT_TRUE(manager.AddSortVariable(0));
  auto& sorted = dynamic_cast<NPARSortedIterator&>(*manager.GetSortedIterator(0));
  RecordColumns columns;
  std::size_t seen = 0;
  for (; sorted.NextColumns(columns); seen += columns.Size()) {
    std::vector<const double*> gathered;
    for (int variable = 0; variable < 5; ++variable) gathered.push_back(columns.Of(variable));
    for (std::size_t i = 0; i < columns.Size(); ++i) {
      for (std::size_t variable = 0; variable < 5; ++variable) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(gathered[variable][i]),
                  std::bit_cast<std::uint64_t>(columns.Rows().rows[i][variable]))
            << "variable " << variable << ", place " << seen + i;
      }
    }
  }
  EXPECT_EQ(seen, 40000U);
}

TEST(NPARSortManager, GivesOneViewForEachVariableThatWasAskedFor) {
  const Kept kept(TwoVariables(), Numbered(3));
  NPARSortManager manager(kept.reader.get());
  EXPECT_FALSE(manager.AddSortVariable(-1));
  EXPECT_FALSE(manager.AddSortVariable(2));
  EXPECT_TRUE(manager.AddSortVariable(1));
  EXPECT_TRUE(manager.AddSortVariable(1));
  EXPECT_EQ(manager.GetSortedIterator(0), nullptr);
  EXPECT_EQ(manager.GetSortedIterator(2), nullptr);
  EXPECT_EQ(manager.GetSortedIterator(-1), nullptr);
  EXPECT_EQ(manager.GetSortedIterator(1), manager.GetSortedIterator(1));
  manager.Release(1);
  manager.Release(-1);  // of no order at all
  EXPECT_EQ(Walk(*manager.GetSortedIterator(1), 1), (std::vector<double>{0, 2, 4}));
}

}  // namespace

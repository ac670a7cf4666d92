#include "planning/sorted_records.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
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
    numbers.reserve(expected.size());
    for (const auto& pair : expected) numbers.push_back(pair.second);

    NPARSortManager manager(kept.reader.get());
    ASSERT_TRUE(manager.AddSortVariable(1));
    auto& sorted = dynamic_cast<NPARSortedIterator&>(*manager.GetSortedIterator(1));
    EXPECT_EQ(Walk(sorted, 0), numbers);
    EXPECT_EQ(sorted.GetState(), 1);
    EXPECT_EQ(sorted.Next(), nullptr);
    EXPECT_EQ(WalkBatches(sorted, 0), numbers);
    EXPECT_EQ(sorted.Reset(), 0);
    EXPECT_EQ((*sorted.Next())[0], numbers.front());
  }
}

TEST(NPARSortedIterator, TakesTheMissingValueAsAValueAndPutsNotANumberLast) {
  const Kept kept(TwoVariables(), {{0, kNan}, {1, 3}, {2, kMissing}, {3, -3}, {4, -1e308}});
  NPARSortManager manager(kept.reader.get());
  ASSERT_TRUE(manager.AddSortVariable(1));
  EXPECT_EQ(WalkBatches(*manager.GetSortedIterator(1), 0), (std::vector<double>{2, 4, 3, 1, 0}));
}

/// What the records are sorted by, codes that fit a byte and codes that do not, some of everything
/// that a copy could lose, the number of the record, and values of many sizes that keys tell.
Rows ManyKinds() {
  const double special[] = {-0.0, 0.0, kNan, kMissing, -kInfinity, kInfinity, 5e-324};
  Rows rows;
  for (int i = 0; i < 40000; ++i) {
    const double x = i % 1000 < 7 ? special[i % 1000] : (i * 7919) % 30011 - 15000.0;
    const double narrow = i % 11 == 0 ? QDMV::gMissingCategory : i % 255;
    const double wide = i == 30000 ? 255.0 : i % 200;
    const double zeros = i == 20000 ? -0.0 : 0.0;
    rows.push_back({x, narrow, wide, zeros, i % 2 * 0.5, i % 3 - 1.0, i * 1.0,
                    std::sin(i) * std::ldexp(1.0, i % 300 - 150)});
  }
  return rows;
}

TEST(NPARSortedIterator, GivesColumnsBitForBitAsTheRecordsCame) {
  VariableListBuilder variables;
  for (const char* name :
       {"x", "narrow", "wide", "zeros", "halves", "missing", "number", "spread"}) {
    variables.Continuous(name);
  }
  const Rows source = ManyKinds();
  const Kept kept(variables.Build(), source);
  // Codes are taken along of both narrow variables, of one, of none, beside a record number or in
  // its place: a walk then asks for more than it had said.
  for (const std::vector<std::int32_t>& companions :
       {std::vector<std::int32_t>{5, 1, 2, 0, 5}, {1, 5}, {1}, {5}, {}}) {
    for (const std::int32_t sortVariable : {0, 1, 5, 7}) {
      SCOPED_TRACE(testing::Message() << companions.size() << " companions, by " << sortVariable);
      NPARSortManager manager(kept.reader.get());
      ASSERT_TRUE(manager.AddSortVariable(sortVariable));
      for (const std::int32_t companion : companions) manager.AddCompanion(companion);
      std::size_t differences = 0;
      std::size_t seen = 0;
      ForEachBatch(*manager.GetSortedIterator(sortVariable), [&](RecordBatch& batch) {
        seen += batch.Size();
        for (std::size_t i = 0; i < batch.Size(); ++i) {
          const auto number = static_cast<std::size_t>(batch.Of(6)[i]);
          for (std::int32_t variable = 0; variable < 8; ++variable) {
            const double value = source[number][static_cast<std::size_t>(variable)];
            differences += std::bit_cast<std::uint64_t>(batch.Of(variable)[i]) !=
                           std::bit_cast<std::uint64_t>(value);
            differences += batch.TruncatedOf(variable)[i] != TruncateToInt32(value);
          }
        }
      });
      EXPECT_EQ(differences, 0U);
      EXPECT_EQ(seen, source.size());
    }
  }
}

TEST(NPARSortedIterator, OrdersNegativesWithANegativeZeroAmongThem) {
  Rows rows;
  for (int i = 0; i < 40000; ++i) rows.push_back({i * 1.0, i == 777 ? -0.0 : -1.0 - i % 9973});
  const Kept kept(TwoVariables(), rows);
  NPARSortManager manager(kept.reader.get());
  ASSERT_TRUE(manager.AddSortVariable(1));
  const std::vector<double> values = WalkBatches(*manager.GetSortedIterator(1), 1);
  EXPECT_TRUE(std::is_sorted(values.begin(), values.end()));
  EXPECT_TRUE(std::signbit(values.back()));
  EXPECT_EQ(values.back(), 0.0);
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
  EXPECT_EQ(WalkBatches(*manager.GetSortedIterator(1), 1), (std::vector<double>{0, 2, 4}));
}

}  // namespace

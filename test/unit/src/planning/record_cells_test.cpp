#include "planning/record_cells.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <tuple>

#include "support/kept_records.h"

namespace {

using testing::ElementsAre;

constexpr double kMissing = QDMV::gMissingValue;
enum Column { X, G, W };

/// Value, group, weight, records.
using Cell = std::tuple<double, double, double, std::int32_t>;

QDVarList Variables() {
  return VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).Weight("w").Build();
}

std::vector<Cell> CellsOf(const Rows& rows, std::int32_t weight = -1,
                          Shortcut counting = Shortcut::Always) {
  const Kept kept(Variables(), rows);
  CountedRecords counted(kept.reader->Records(), weight, counting);
  const std::vector<std::int32_t> asked{G, X};
  std::vector<Cell> cells;
  const auto walk = counted.WalkCells(asked, X);
  if (walk == nullptr) return cells;
  ForEachBatch(*walk, [&](RecordBatch& batch) {
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      cells.emplace_back(batch.Of(X)[i], batch.Of(G)[i], weight < 0 ? 0.0 : batch.Of(weight)[i],
                         batch.Counts()[i]);
    }
  });
  return cells;
}

const Rows kRows{{0.5, 1, 2}, {-3, 0, 1},  {0.5, 0, 2},      {0.5, 1, 3},
                 {-3, -1, 1}, {0.5, 1, 2}, {kMissing, 1, 1}, {-3, 0, 1}};

TEST(RecordCells, CountRecordsThatAreAlikeAscendingByTheirValue) {
  EXPECT_THAT(CellsOf(kRows),
              ElementsAre(Cell{kMissing, 1, 0, 1}, Cell{-3, 0, 0, 2}, Cell{-3, -1, 0, 1},
                          Cell{0.5, 0, 0, 1}, Cell{0.5, 1, 0, 3}));
}

TEST(RecordCells, SumTheirWeights) {
  EXPECT_THAT(CellsOf(kRows, W),
              ElementsAre(Cell{kMissing, 1, 1, 1}, Cell{-3, 0, 2, 2}, Cell{-3, -1, 1, 1},
                          Cell{0.5, 0, 2, 1}, Cell{0.5, 1, 4, 2}, Cell{0.5, 1, 3, 1}));
}

TEST(RecordCells, AreNoneWhereRecordsAreToBeSorted) {
  const auto with = [](std::vector<double> further) {
    Rows rows = kRows;
    rows.push_back(std::move(further));
    return rows;
  };
  EXPECT_TRUE(CellsOf(with({std::numeric_limits<double>::quiet_NaN(), 1, 1})).empty());
  EXPECT_FALSE(CellsOf(with({-0.0, 1, 1})).empty());
  Rows bothZeros = with({-0.0, 1, 1});
  bothZeros.push_back({0.0, 1, 1});
  EXPECT_TRUE(CellsOf(bothZeros).empty());
  EXPECT_FALSE(CellsOf(with({1, 1, 1.5})).empty());  // that is no weight
  for (const double weight : {1.5, -1.0, -2.0, 2147483648.0}) {
    EXPECT_TRUE(CellsOf(with({1, 1, weight}), W).empty()) << weight;
  }
  EXPECT_TRUE(CellsOf(kRows, -1, Shortcut::Never).empty());
  // Of 3 values in 2 groups, where one more stands for what is missing.
  Rows many;
  for (int i = 0; i < 5; ++i) many.insert(many.end(), kRows.begin(), kRows.end());
  EXPECT_FALSE(CellsOf(many, -1, Shortcut::WhereItPays).empty());
  many.resize(4 * 3 * 3 - 1);
  EXPECT_TRUE(CellsOf(many, -1, Shortcut::WhereItPays).empty());
}

}  // namespace

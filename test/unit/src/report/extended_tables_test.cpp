#include "report/extended_tables.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "report/elements.h"
#include "support/algorithm_element.h"
#include "support/group_run.h"

namespace {

TEST(ExtendedTables, WhatIsNotFiniteHasNoRowAndAnEmptyCell) {
  ExtendedFigures figures;
  figures.Add("Count", std::int64_t{1} << 60);
  figures.Add("Number", 0.1);
  figures.Add("NotANumber", std::numeric_limits<double>::quiet_NaN());
  figures.Add("Infinite", std::numeric_limits<double>::infinity());
  figures.Add("Absent", std::optional<double>());
  FigureTable table{"Groups", {"N", "Median"}, {}};
  figures.Add(table);  // without rows
  table.AddRow("Group0", {3, 2.5});
  table.AddRow("Group1", {0, FigureValue()});
  figures.Add(table);
  FigureTable nameless{"Pairs", {"Sample1", "EffectR"}, {}};
  nameless.AddRow("", {1, -0.5});
  nameless.AddRow("", {2, 0.5});
  figures.Add(nameless);
  std::unique_ptr<XMLElement> algorithm = CreateAlgorithm("T", "t", "c", "");
  WriteExtendedFigures(*algorithm, ExtendedFigures());
  WriteExtendedFigures(*algorithm, figures);
  EXPECT_EQ(AlgorithmElement(algorithm.release()).Xml(),
            R"(<Algorithm name="T" type="t" classification="c">
 <StructuredTable name="ExtendedFigures">
  <Attribute name="Count" value="1152921504606846976" />
  <Attribute name="Number" value="0.1" />
  <SimpleTable name="Groups">
   <RowNames>Group0;Group1</RowNames>
   <ColumnNames>N;Median</ColumnNames>
   <Row>3;2.5</Row>
   <Row>0;</Row>
  </SimpleTable>
  <SimpleTable name="Pairs">
   <RowNames />
   <ColumnNames>Sample1;EffectR</ColumnNames>
   <Row>1;-0.5</Row>
   <Row>2;0.5</Row>
  </SimpleTable>
 </StructuredTable>
</Algorithm>
)");
}

/// Shows a tally the values of two groups, {x, group, weight} ascending by x.
void Show(GroupTally& tally, const Rows& rows) {
  for (int pass = 0; pass < 2; ++pass) {
    for (const std::vector<double>& row : rows) {
      RowBatch one(Record::View(row.data(), static_cast<int>(row.size())));
      tally.Take(one);
    }
    tally.EndPass();
  }
}

TEST(ExtendedTables, GroupsHaveTheirQuartilesByUnits) {
  // R 4.2.2: fivenum(c(1, 2, 2, 2, 7, 9)), fivenum(c(3, 3, 4, 8)); the fractions are cut off.
  const Rows weighted{{1, 0, 1.75}, {2, 0, 3.75}, {3, 1, 2.5}, {4, 1, 1.5},
                      {7, 0, 1.9},  {8, 1, 1},    {9, 0, 1},   {10, 1, 0.5}};
  const Rows records{{1, 0}, {2, 0}, {2, 0}, {2, 0}, {3, 1},
                     {3, 1}, {4, 1}, {7, 0}, {8, 1}, {9, 0}};
  for (const auto shown : {GroupTally::Shown::BoxPlots, GroupTally::Shown::Histograms}) {
    for (const Rows& rows : {weighted, records}) {
      GroupTally::Key key;
      key.testVariable = 0;
      key.groupVariable = 1;
      key.weightVariable = rows.front().size() > 2 ? 2 : -1;
      key.groupCount = 3;
      key.shown = shown;
      key.wantsQuartiles = true;
      GroupTally tally(key);
      Show(tally, rows);
      const std::vector<double> ranks{4, 6.5};
      const FigureTable two = TwoGroupsTable(tally, ranks);
      ASSERT_EQ(two.rows.size(), 2U);
      EXPECT_EQ(two.rows[1].label, "Group1");
      EXPECT_EQ(*two.rows[0].cells[0].Count(), 6);
      const FigureTable several = GroupsTable(tally);
      ASSERT_EQ(several.rows.size(), 2U);  // the third group has no data
      EXPECT_EQ(several.rows[0].label, "0");
      EXPECT_EQ(several.columns.size(), 4U);
      const double wanted[2][3] = {{2, 2, 7}, {3.5, 3, 6}};
      for (std::size_t group = 0; group < 2; ++group) {
        for (std::size_t i = 0; i < 3; ++i) {
          EXPECT_EQ(*several.rows[group].cells[i + 1].Number(), wanted[group][i]) << group << i;
          EXPECT_EQ(*two.rows[group].cells[i + 1].Number(), wanted[group][i]);
        }
        EXPECT_EQ(*two.rows[group].cells[4].Number(), ranks[group]);
      }
    }
  }
}

TEST(ExtendedTables, FieldsAreKeptUpToTheirLimit) {
  for (const std::int64_t n : {FieldQuartiles::kMostUnits, FieldQuartiles::kMostUnits + 1}) {
    const Rows rows{{1, 5, 2.5}, {4, 5, 0.0}, {3, 5, static_cast<double>(n - 2)}};
    FieldQuartiles fields({0, 1});
    for (const std::vector<double>& row : rows) {
      RowBatch one(Record::View(row.data(), static_cast<int>(row.size())));
      fields.Take(one, RecordWeight(2));
    }
    fields.Sort();
    const FigureTable table = FieldsTable(fields);
    ASSERT_EQ(table.rows.size(), n > FieldQuartiles::kMostUnits ? 0U : 2U);
    if (table.rows.empty()) continue;
    EXPECT_EQ(*table.rows[0].cells[0].Count(), n);
    EXPECT_EQ(*table.rows[0].cells[1].Number(), 3.0);
    EXPECT_EQ(table.rows[1].label, "1");
    EXPECT_EQ(*table.rows[1].cells[3].Number(), 5.0);
  }
}

}  // namespace

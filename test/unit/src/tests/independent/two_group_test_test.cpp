#include "tests/independent/two_group_test.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "support/matchers.h"
#include "support/two_group_run.h"
#include "tests/independent/hodges_lehmann_groups.h"
#include "tests/independent/ks_two_sample.h"
#include "tests/independent/mann_whitney.h"
#include "tests/independent/moses.h"
#include "tests/independent/wald_wolfowitz.h"

// What all tests of two groups do alike.

namespace {

using Message = AlgorithmElement::Message;
using testing::ElementsAre;
using Texts = std::vector<std::string>;

/// One of the tests and the codes that its entry raises.
struct Kind {
  const char* entry;
  const char* conditionName;
  int noVariable, noGroup, unknown, notContinuous, notCategorical, emptyList;
  int notTwoCategories, overlap, unpopulated, noData;  // 0: not refused
  const char* failedIndex;                             // how an index stands that was not found
  const char* failedGroup;  // the group's index, found, of a test that is born failed
};

const Kind kKinds[] = {
    {"IMannWhitneyU", "MannWhitneyU", 220712, 220713, 220703, 220715, 220714, 220701, 220709,
     220710, 220711, 220003, "-1", "-1"},
    {"IWaldWolfowitzRuns", "WaldWolfowitz", 220612, 220613, 220603, 220615, 220614, 220601, 220609,
     220610, 220611, 220003, "__MISSING__", "__MISSING__"},
    {"IMoses", "Moses", 220512, 220513, 220503, 220515, 220514, 220501, 220509, 220510, 220511,
     220003, "__MISSING__", "__MISSING__"},
    {"IHodgesLehmannEstimateGroups", "HodgesLehmann", 222512, 222513, 222503, 222515, 222514,
     222501, 222509, 222510, 222511, 220003, "__MISSING__", "__MISSING__"},
    {"IKolmogorovSmirnov", "KolmogorovSmirnov", 222003, 222003, 222003, 222012, 222013, 222001,
     222009, 0, 222010, 222010, "__MISSING__", "1"},
};

class TwoGroupTests : public testing::TestWithParam<Kind> {
 protected:
  [[nodiscard]] static AlgorithmElement Run(const QDVarList& variables, const Rows& rows,
                                            const TestSettings& entry) {
    return RunEntry(variables, rows, GetParam().entry, entry.Get());
  }
  /// The element with its figures: no message, or none that is an error.
  static void ExpectSameFigures(const AlgorithmElement& result, const AlgorithmElement& other) {
    EXPECT_EQ(result.Xml(), other.Xml());
    EXPECT_TRUE(result.Has("StatisticsResult"));
  }
  static void ExpectFailure(const AlgorithmElement& result, const Message& message) {
    EXPECT_THAT(result.Messages(), ElementsAre(message));
    EXPECT_THAT(result.ChildNames(),
                ElementsAre("StructuredTable Condition", "StructuredTable WarningMessages"));
  }
};

// Two samples with ties inside and between them, on either side of zero.
const std::vector<double> kFirst{-2, -1, 0, 0, 1, 3, 3.5, 4, 7};
const std::vector<double> kSecond{-1.5, 0, 1, 2, 3, 5, 6, 6, 8, 9};

TEST_P(TwoGroupTests, TextGroupsAscendUnlessTheyAreOrdinal) {
  const auto nominal = VariableListBuilder().Continuous("x").Nominal("g", {"b", "a"}).Build();
  const auto ordinal = VariableListBuilder().Continuous("x").Ordinal("g", {"b", "a"}).Build();
  const Rows rows = GroupedRows({kFirst, kSecond});
  const Rows swapped = GroupedRows({kSecond, kFirst});
  ExpectSameFigures(Run(ordinal, rows, GroupedEntry()),
                    RunOnSamples(GetParam().entry, kFirst, kSecond));
  const auto result = Run(nominal, rows, GroupedEntry());
  EXPECT_EQ(result.Text("ConditionKey"),
            std::string("DefaultAllDistinctValuesUsed_I_") + GetParam().conditionName + "_2");
  const auto listed = Run(nominal, rows, ListedEntry<std::string>({"a"}, {"b"}));
  EXPECT_EQ(listed.Text("ConditionKey"),
            std::string("CategoryListsAreSpecified_I_") + GetParam().conditionName + "_2");
  const auto asFirst = Run(ordinal, swapped, GroupedEntry());
  for (const char* table :
       {"StatisticsResult/TestStatistic", "StatisticsResult/Estimate",
        "StatisticsResult/AsymptoticSig2Tailed", "Asymptotic/Lower", "Group0/N", "Group1/N"}) {
    EXPECT_EQ(result.Text(table), listed.Text(table)) << table;
    EXPECT_EQ(result.Text(table), asFirst.Text(table)) << table;
  }
  if (result.Has("Group0")) {
    EXPECT_EQ(result.Text("Group0/GroupIndex"), "1");
    EXPECT_EQ(result.Rows("Group0/Interval"), asFirst.Rows("Group0/Interval"));
  }
}

TEST_P(TwoGroupTests, NumericGroupsAscendByTheirNumbers) {
  const auto numbers =
      VariableListBuilder().Continuous("x").NominalNumbers("g", {10.0, 9.0}).Build();
  const Rows rows = GroupedRows({kSecond, kFirst});
  const auto byDefault = Run(numbers, rows, GroupedEntry());
  const auto listed = Run(numbers, rows, ListedEntry<double>({9.0}, {10.0}));
  const auto texts = RunOnSamples(GetParam().entry, kFirst, kSecond);
  for (const char* row : {"StatisticsResult/TestStatistic", "StatisticsResult/Estimate",
                          "MinimumRuns/TestStatistic", "Group0/N"}) {
    EXPECT_EQ(byDefault.Text(row), texts.Text(row)) << row;
    EXPECT_EQ(listed.Text(row), texts.Text(row)) << row;
  }
}

TEST_P(TwoGroupTests, RecordsOfNoGroupChangeNothing) {
  const auto entry = ListedEntry<std::string>({"a"}, {"d", "b", "e"});
  const auto variables = GroupedVariables(5);
  Rows rows = GroupedRows({kFirst, kSecond});
  const AlgorithmElement without = Run(variables, rows, entry);
  // Category c, inside and beyond the range of the others; codes that are no category at all.
  for (const Rows::value_type& row :
       Rows{{-9, 2, 5}, {1, 2, 1}, {3, 2, 1}, {99, 2, 1}, {2, 7, 1}, {2, 1e9, 1}, {2, -3, 1}}) {
    rows.push_back(row);
  }
  ExpectSameFigures(Run(variables, rows, entry), without);
  EXPECT_EQ(without.Text("Condition/%1"), "1");
  if (without.Has("Group1")) {
    EXPECT_EQ(without.Text("Group1/GroupIndex"), "3;1;4");
  }
}

TEST_P(TwoGroupTests, AWeightIsThatManyRecordsWithoutItsFraction) {
  const Rows weighted{{1, 0, 3.9}, {2, 1, 2}, {2, 0, 1}, {0, 0, 4}, {5, 1, 2.1}, {9, 0, 0.5}};
  const Rows repeated =
      GroupedRows({{1, 1, 1, 2, 0, 0, 0, 0, 9}, {2, 2, 5, 5}});  // 9 carries no weight
  Rows unit = repeated;
  unit[8][2] = 0.0;
  ExpectSameFigures(Run(GroupedVariables(), weighted, GroupedEntry()),
                    Run(GroupedVariables(), unit, GroupedEntry()));
}

TEST_P(TwoGroupTests, TheOrderOfTheRecordsPlaysNoPart) {
  Rows rows = GroupedRows({kFirst, kSecond});
  Rows backwards(rows.rbegin(), rows.rend());
  ExpectSameFigures(Run(GroupedVariables(), backwards, GroupedEntry()),
                    Run(GroupedVariables(), rows, GroupedEntry()));
}

TEST_P(TwoGroupTests, MissingValuesLeaveTheirRecordsOut) {
  const double missing = QDMV::gMissingValue;
  const auto variables = VariableListBuilder()
                             .Continuous("x")
                             .Nominal("g", {"a", "b"})
                             .Weight("n")
                             .Continuous("y")
                             .Build();
  Rows rows = GroupedRows({kFirst, kSecond});
  for (std::vector<double>& row : rows) row.push_back(0.0);
  Rows holes = rows;
  holes.push_back({missing, 0, 1, 0});
  holes.push_back({50, -1, 1, 0});
  ExpectSameFigures(Run(variables, holes, GroupedEntry()), Run(variables, rows, GroupedEntry()));
  // A value that is missing elsewhere: analysis keeps the record, listwise drops it.
  Rows more = rows;
  more.push_back({-40, 0, 1, missing});
  EXPECT_NE(Run(variables, more, GroupedEntry()).Xml(), Run(variables, rows, GroupedEntry()).Xml());
  const auto listwise = [&](const Rows& records) {
    QDSettings settings;
    settings.AddNewSetting("missingTreatment", std::string("listwise"), "");
    settings.AddNewSetting(GetParam().entry, GroupedEntry().Get(), "");
    return AlgorithmElement::AllOf(RunDocument(variables, records, settings)).front().Xml();
  };
  EXPECT_EQ(listwise(more), Run(variables, rows, GroupedEntry()).Xml());
}

TEST_P(TwoGroupTests, AnEntryIsRefusedWithItsCodeAndParameters) {
  const Kind& kind = GetParam();
  const auto variables = VariableListBuilder()
                             .Continuous("x")
                             .Nominal("g", {"a", "b"})
                             .NominalNumbers("k", {1.0, 2.0})
                             .Nominal("three", {"a", "b", "c"})
                             .Other("o")
                             .Build();
  const auto entry = [](const std::string& variable, const std::string& group) {
    TestSettings settings;
    if (!variable.empty()) settings.Put("variableName", variable);
    if (!group.empty()) settings.Put("groupVariableName", group);
    return settings;
  };
  const auto listed = [&entry](const std::string& group, const auto& first, const auto& second) {
    TestSettings settings = entry("x", group);
    settings.Put("userSpecifyGroupList", "true");
    if (!first.empty()) settings.Put("group1List", first);
    if (!second.empty()) settings.Put("group2List", second);
    return settings;
  };
  const std::vector<double> noNumbers;
  const std::vector<double> one{1.0};
  const Texts noTexts;
  const Texts a{"a"};
  struct Row {
    const char* catches;
    TestSettings settings;
    Message message;
  };
  const Row rows[] = {
      {"no test field", entry("", "g"), {kind.noVariable, "error", {}}},
      {"no group field", entry("x", ""), {kind.noGroup, "error", {}}},
      {"the later problem stands", entry("", ""), {kind.noGroup, "error", {}}},
      {"unknown test field", entry("nobody", "g"), {kind.unknown, "error", {"nobody"}}},
      {"parameters add up", entry("nobody", "none"), {kind.unknown, "error", {"nobody", "none"}}},
      {"not continuous", entry("g", "g"), {kind.notContinuous, "error", {"1"}}},
      {"neither continuous nor categorical", entry("o", "g"), {kind.notContinuous, "error", {"4"}}},
      {"not categorical", entry("x", "x"), {kind.notCategorical, "error", {"0"}}},
      {"no first list of texts", listed("g", noTexts, a), {kind.emptyList, "error", {}}},
      {"no second list of texts", listed("g", a, noTexts), {kind.emptyList, "error", {}}},
      {"no first list of numbers", listed("k", noNumbers, one), {kind.emptyList, "error", {}}},
      {"no second list of numbers", listed("k", one, noNumbers), {kind.emptyList, "error", {}}},
      {"texts for numbers", listed("k", a, a), {kind.emptyList, "error", {}}},
      {"three categories", entry("x", "three"), {kind.notTwoCategories, "error", {}}},
  };
  const Rows records{{1, 0, 0, 0, 0}, {2, 1, 1, 1, 0}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.catches);
    ExpectFailure(Run(variables, records, row.settings), row.message);
  }
  const auto failed = Run(variables, records, entry("nobody", "g"));
  EXPECT_EQ(failed.Text("Condition/%0"), kind.failedIndex);
  EXPECT_EQ(failed.Text("Condition/%1"), kind.failedGroup);
}

TEST_P(TwoGroupTests, GroupsWithoutDataAreRefused) {
  const Kind& kind = GetParam();
  const auto variables = GroupedVariables(4);
  const auto listed = [](const Texts& first, const Texts& second) {
    return ListedEntry<std::string>(first, second);
  };
  const Rows rows = GroupedRows({{1, 2, 3}, {}, {4, 5}});
  if (kind.overlap != 0) {
    ExpectFailure(Run(variables, rows, listed({"a", "c"}, {"b", "c"})),
                  {kind.overlap, "error", {}});
  }
  ExpectFailure(Run(variables, rows, listed({"b", "d"}, {"c"})), {kind.unpopulated, "error", {}});
  ExpectFailure(Run(variables, rows, listed({"a"}, {"d", "b"})), {kind.unpopulated, "error", {}});
  ExpectFailure(Run(variables, rows, listed({"a"}, {"no category"})),
                {kind.unpopulated, "error", {}});
  EXPECT_TRUE(Run(variables, rows, listed({"a", "d"}, {"b", "c"})).Has("StatisticsResult"));
  // Weight of a group that is only in records whose test value is missing.
  const double missing = QDMV::gMissingValue;
  ExpectFailure(RunOnSamples(kind.entry, {1, 2}, {missing}), {kind.unpopulated, "error", {}});
  ExpectFailure(RunOnSamples(kind.entry, {missing}, {1, 2}), {kind.unpopulated, "error", {}});
  ExpectFailure(RunOnSamples(kind.entry, {missing}, {missing}), {kind.noData, "error", {}});
}

INSTANTIATE_TEST_SUITE_P(Each, TwoGroupTests, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.entry); });

template <typename Test>
class TwoGroupPasses : public testing::Test {};
using TestsWithSummaries =
    testing::Types<NPARMannWU, NPARWaldWolfRuns, NPARMoses, NPARHodgesLehmannTwoIndep>;
TYPED_TEST_SUITE(TwoGroupPasses, TestsWithSummaries);

TYPED_TEST(TwoGroupPasses, WithoutSummariesTheGroupsCannotBeChecked) {
  TestSettings settings;
  settings.Put("variableIndex", 0).Put("groupVariableIndex", 1);
  settings.Put("groupVariableValue1", 0).Put("groupVariableValue2", 1);
  TypeParam test(settings.Release());
  EXPECT_THAT(test.BeginPass(), HasCode(TypeParam::kCodeBase + 6));
  EXPECT_EQ(test.GetPassesLeft(), 0);
  EXPECT_FALSE(test.NeedsAnotherPass());
}

TYPED_TEST(TwoGroupPasses, AnEmptyListIsRefused) {
  TestSettings settings;
  settings.Put("variableIndex", 0).Put("groupVariableIndex", 1).Put("userSpecifyGroupList", 1);
  settings.Put("group1List", std::vector<double>{0.0});
  TypeParam test(settings.Release());
  UnivariateResults summaries(nullptr);
  test.SetSharedData(&summaries);
  EXPECT_THAT(test.BeginPass(), HasCode(TypeParam::kCodeBase + 11));
}

}  // namespace

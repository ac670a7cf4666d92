#include "tests/independent/two_group_test.h"

#include "support/group_run.h"

// What all tests of two groups do alike.

namespace {

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
                                            const TestSettings& entry = GroupedEntry()) {
    return RunEntry(variables, rows, GetParam().entry, entry);
  }
  static void ExpectFailures(const QDVarList& variables, const Rows& rows,
                             const std::vector<EntryCase>& cases) {
    ExpectMessages(GetParam().entry, variables, rows, cases);
  }
  /// The same element, figures and all.
  static void ExpectSame(const AlgorithmElement& result, const AlgorithmElement& other) {
    EXPECT_EQ(result.Xml(), other.Xml());
    EXPECT_TRUE(result.Has("StatisticsResult"));
  }
};

const Rows kTwoGroups = GroupedRows({kTiedFirst, kTiedSecond});
const Rows kSwapped = GroupedRows({kTiedSecond, kTiedFirst});

TEST_P(TwoGroupTests, TextGroupsAscendUnlessTheyAreOrdinal) {
  const auto nominal = GroupedVariables({"b", "a"});
  const auto ordinal = GroupedVariables({"b", "a"}, true);
  ExpectSame(Run(ordinal, kTwoGroups), Run(GroupedVariables(), kTwoGroups));
  const auto result = Run(nominal, kTwoGroups);
  EXPECT_EQ(result.Text("ConditionKey"),
            std::string("DefaultAllDistinctValuesUsed_I_") + GetParam().conditionName + "_2");
  const auto listed = Run(nominal, kTwoGroups, ListedEntry<std::string>({"a"}, {"b"}));
  EXPECT_EQ(listed.Text("ConditionKey"),
            std::string("CategoryListsAreSpecified_I_") + GetParam().conditionName + "_2");
  const auto asFirst = Run(ordinal, kSwapped);
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
      VariableListBuilder().Continuous("x").NominalNumbers("g", {10.0, 9.0}).Weight("n").Build();
  const auto texts = Run(GroupedVariables(), kTwoGroups);
  for (const TestSettings& entry : {GroupedEntry(), ListedEntry<double>({9.0}, {10.0}),
                                    ListedEntry<std::string>({"9"}, {"10"})}) {
    const auto result = Run(numbers, kSwapped, entry);
    for (const char* row : {"StatisticsResult/TestStatistic", "StatisticsResult/Estimate",
                            "MinimumRuns/TestStatistic", "Group0/N"}) {
      EXPECT_EQ(result.Text(row), texts.Text(row)) << row;
    }
  }
}

TEST_P(TwoGroupTests, RecordsOfNoGroupChangeNothing) {
  const auto entry = ListedEntry<std::string>({"a"}, {"d", "b", "e"});
  const auto variables = GroupedVariables(5);
  Rows rows = kTwoGroups;
  const AlgorithmElement without = Run(variables, rows, entry);
  // Category c, inside and beyond the range of the others; codes that are no category at all.
  const Rows others{{-9, 2, 5}, {1, 2, 1},   {3, 2, 1}, {99, 2, 1},
                    {2, 7, 1},  {2, 1e9, 1}, {2, -3, 1}};
  rows.insert(rows.end(), others.begin(), others.end());
  ExpectSame(Run(variables, rows, entry), without);
  EXPECT_EQ(without.Text("Condition/%1"), "1");
  if (without.Has("Group1")) {
    EXPECT_EQ(without.Text("Group1/GroupIndex"), "3;1;4");
  }
}

TEST_P(TwoGroupTests, MissingValuesLeaveTheirRecordsOut) {
  const double missing = QDMV::gMissingValue;
  Rows holes = kTwoGroups;
  holes.push_back({missing, 0, 1});
  holes.push_back({50, -1, 1});
  ExpectSame(Run(GroupedVariables(), holes), Run(GroupedVariables(), kTwoGroups));
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
  const auto by = [](const char* variable, const char* group) {
    return Entry("variableName", variable, "groupVariableName", group);
  };
  const auto listed = [&by](const char* group, const char* key, const auto& list) {
    return by("x", group).Put("userSpecifyGroupList", "true", key, list);
  };
  const std::vector<double> one{1.0};
  const Texts a{"a"};
  const Rows records{{1, 0, 0, 0, 0}, {2, 1, 1, 1, 0}};
  ExpectFailures(
      variables, records,
      {{"no test field", Entry("groupVariableName", "g"), Error(kind.noVariable)},
       {"no group field", Entry("variableName", "x"), Error(kind.noGroup)},
       {"the later problem stands", Entry(), Error(kind.noGroup)},
       {"with the earlier parameter", Entry("variableName", "nobody"),
        Error(kind.noGroup, {"nobody"})},
       {"unknown test field", by("nobody", "g"), Error(kind.unknown, {"nobody"})},
       {"parameters add up", by("nobody", "none"), Error(kind.unknown, {"nobody", "none"})},
       {"not continuous", by("g", "g"), Error(kind.notContinuous, {"1"})},
       {"neither continuous nor categorical", by("o", "g"), Error(kind.notContinuous, {"4"})},
       {"not categorical", by("x", "x"), Error(kind.notCategorical, {"0"})},
       {"neither of both fits", by("g", "x"), Error(kind.notCategorical, {"1", "0"})},
       {"no first list of texts", listed("g", "group2List", a), Error(kind.emptyList)},
       {"no second list of texts", listed("g", "group1List", a), Error(kind.emptyList)},
       {"no first list of numbers", listed("k", "group2List", one), Error(kind.emptyList)},
       {"no second list of numbers", listed("k", "group1List", one), Error(kind.emptyList)},
       {"a list without values", listed("g", "group1List", Texts{}).Put("group2List", a),
        Error(kind.emptyList)},
       {"texts for numbers", listed("k", "group1List", a).Put("group2List", a),
        Error(kind.emptyList)},
       {"three categories", by("x", "three"), Error(kind.notTwoCategories)}});
  ExpectTexts(Run(variables, records, by("nobody", "g")),
              {{"Condition/%0", kind.failedIndex}, {"Condition/%1", kind.failedGroup}});
}

TEST_P(TwoGroupTests, GroupsWithoutDataAreRefused) {
  const Kind& kind = GetParam();
  const auto listed = [](const Texts& first, const Texts& second) {
    return ListedEntry(first, second);
  };
  const Rows rows = GroupedRows({{1, 2, 3}, {}, {4, 5}});
  std::vector<EntryCase> cases{
      {"no record of group 1", listed({"b", "d"}, {"c"}), Error(kind.unpopulated)},
      {"no record of group 2", listed({"a"}, {"d", "b"}), Error(kind.unpopulated)},
      {"no record of either", listed({"b"}, {"d"}), Error(kind.unpopulated)},
      {"no category at all", listed({"a"}, {"no category"}), Error(kind.unpopulated)}};
  if (kind.overlap != 0) {
    cases.push_back({"in both lists", listed({"a", "c"}, {"b", "c"}), Error(kind.overlap)});
    cases.push_back({"also without data", listed({"a", "b"}, {"b"}), Error(kind.overlap)});
  }
  ExpectFailures(GroupedVariables(4), rows, cases);
  EXPECT_TRUE(
      Run(GroupedVariables(4), rows, listed({"a", "d"}, {"b", "c"})).Has("StatisticsResult"));
  EXPECT_TRUE(
      RunOnSamples(kind.entry, {{1}, {2, 3, 4}}, listed({"b"}, {"a"})).Has("StatisticsResult"))
      << "one record is data";
  // Weight of a group that is only in records whose test value is missing.
  const Sample missing{QDMV::gMissingValue};
  const auto codes = [&kind](const Sample& first, const Sample& second) {
    return RunOnSamples(kind.entry, {first, second}).Messages();
  };
  EXPECT_EQ(codes({1, 2}, missing), Error(kind.unpopulated));
  EXPECT_EQ(codes(missing, {1, 2}), Error(kind.unpopulated));
  EXPECT_EQ(codes(missing, missing), Error(kind.noData));
}

INSTANTIATE_TEST_SUITE_P(Each, TwoGroupTests, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.entry); });

}  // namespace

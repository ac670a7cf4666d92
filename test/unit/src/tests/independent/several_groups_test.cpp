#include "support/group_run.h"

// What all tests of several groups do alike, each with its own codes.

namespace {

struct Kind {
  const char* entry;
  std::int32_t noField, noGroup, unknown, notContinuous, notCategorical;
  bool tellsIndex;                         // of an unfit field
  std::int32_t oneCategory, noComparison;  // 0: not refused
  std::int32_t note;                       // of every run that has a statistic; 0: none
  std::int32_t tooFewPairwise, tooFewStepwise, notSignificantPairwise, notSignificantStepwise;
  std::int32_t oneGroup;  // with data
};

const Kind kKinds[] = {
    {"IKruskalWallis", 222103, 222103, 222103, 222109, 222110, false, 222115, 222101, 222111,
     222118, 222116, 222119, 222117, 222112},
    {"IMedian", 222303, 222303, 222303, 222309, 222310, false, 222315, 0, 222311, 222318, 222316,
     222319, 222317, 222312},
    {"IJonckheereTerpstra", 222215, 222216, 222203, 222218, 222217, true, 0, 0, 0, 222211, 222212,
     222213, 222214, 222210},
};

class SeveralGroups : public testing::TestWithParam<Kind> {};

TEST_P(SeveralGroups, AComparisonFallsAwayWithItsOwnWarning) {
  const Kind& kind = GetParam();
  const Samples two{Ascending(1, 6), Ascending(7, 6), {}};
  const Samples same{{1, 2}, {1, 2}, {1, 2}};
  const struct {
    const char* catches;
    Samples groups;
    const char* comparison;
    std::int32_t code;
  } cases[] = {
      {"two groups with data, pairwise", two, "pairWise", kind.tooFewPairwise},
      {"two groups with data, stepwise", two, "stepWise", kind.tooFewStepwise},
      {"not significant, pairwise", same, "pairWise", kind.notSignificantPairwise},
      {"not significant, stepwise", same, "stepWise", kind.notSignificantStepwise},
      {"nothing wanted", two, "none", 0},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result =
        RunOnSamples(kind.entry, row.groups, ComparedEntry(row.comparison));
    Codes codes;
    if (kind.note != 0) codes.push_back(kind.note);
    if (row.code != 0) codes.push_back(row.code);
    EXPECT_EQ(result.MessageCodes(), codes);
    EXPECT_FALSE(result.Has("PairwiseResult"));
    EXPECT_FALSE(result.Has("StepwiseResult"));
    EXPECT_TRUE(result.Has("StatisticsResult"));
  }
}

TEST_P(SeveralGroups, AnEntryThatDoesNotFitNamesItsProblem) {
  const Kind& kind = GetParam();
  const QDVarList variables = VariableListBuilder()
                                  .Continuous("x")
                                  .Nominal("g", {"a", "b", "c"})
                                  .Nominal("one", {"a"})
                                  .Build();
  const TestSettings none = Entry("typeOfMultipleComparison", "none");
  const auto by = [&none](const char* variable, const char* group) {
    return TestSettings(none).Put("variableName", variable, "groupVariableName", group);
  };
  const auto unfit = [&kind](std::int32_t code, const char* index) {
    return Error(code, kind.tellsIndex ? Texts{index} : Texts{});
  };
  std::vector<EntryCase> cases{
      {"no field", TestSettings(none).Put("groupVariableName", "g"), Error(kind.noField)},
      {"no group", TestSettings(none).Put("variableName", "x"), Error(kind.noGroup)},
      {"an unknown field", by("no", "g"), Error(kind.unknown, {"no"})},
      {"an unknown group", by("x", "no"), Error(kind.unknown, {"no"})},
      {"not continuous", by("g", "g"), unfit(kind.notContinuous, "1")},
      {"not categorical", by("x", "x"), unfit(kind.notCategorical, "0")},
      {"the first problem stands", Entry("variableName", "no", "groupVariableName", "g"),
       Error(kind.unknown, {"no"})},
      {"one group with data", by("x", "g"), Error(kind.oneGroup)}};
  if (kind.oneCategory != 0) {
    cases.push_back({"one category", by("x", "one"), Error(kind.oneCategory)});
  }
  if (kind.noComparison != 0) {
    cases.push_back({"no comparison", GroupedEntry(), Error(kind.noComparison)});
  }
  ExpectMessages(kind.entry, variables, {{1, 0, 0}, {2, 0, 0}}, cases);
}

TEST(SeveralGroupsFields, AFailedConstructionListsTheFieldsThatFit) {
  const QDVarList variables =
      VariableListBuilder().Continuous("x").Nominal("g", {"a", "b"}).Nominal("one", {"a"}).Build();
  const auto listedOf = [&](const char* name, const char* variable, const char* group) {
    TestSettings entry = Entry("variableName", variable, "groupVariableName", group);
    if (name == std::string("IMedian")) entry.Put("typeOfMultipleComparison", "none");
    const std::string document = RunEntryDocument(variables, {{1, 0, 0}, {2, 1, 0}}, name, entry);
    std::string listed;
    for (const char* index : {"0", "1", "2"}) {
      const std::string info = std::string("<FieldInfo varIndex=\"") + index + '"';
      if (document.find(info) != std::string::npos) listed += index;
    }
    return listed;
  };
  EXPECT_EQ(listedOf("IKruskalWallis", "x", "g"), "01") << "no comparison";
  for (const char* name : {"IKruskalWallis", "IMedian"}) {
    EXPECT_EQ(listedOf(name, "x", "one"), "02") << "one category";
    EXPECT_EQ(listedOf(name, "x", "x"), "0") << "groups that are not categorical";
    EXPECT_EQ(listedOf(name, "g", "g"), "1") << "a field that is not continuous";
  }
}

INSTANTIATE_TEST_SUITE_P(Each, SeveralGroups, testing::ValuesIn(kKinds),
                         [](const auto& info) { return std::string(info.param.entry); });

}  // namespace

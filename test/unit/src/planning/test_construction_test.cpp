#include "planning/test_construction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/variables.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Shows what it was made with.
class MadeTest final : public NPARTest {
 public:
  using NPARTest::NPARTest;
  void SetSharedData(UnivariateResults*) override {}
  QDStatus BeginPass() override { return status; }
  QDStatus ProcessRecord(const Record&) override { return status; }
  bool NeedsAnotherPass() override { return false; }
  QDStatus EndPass() override { return status; }
  void GetRequiredVariables(std::vector<std::int64_t>&) override {}
  XMLElement* WriteResults() override { return nullptr; }
  [[nodiscard]] const QDSettings& Settings() const { return *settings; }
  [[nodiscard]] const std::vector<NPARMessage>& Messages() const { return messages; }
};

enum Codes : std::int32_t { kAbsent = 1, kNoGroup, kUnknown, kNotContinuous, kNotCategorical };

class Construction : public testing::Test {
 protected:
  const QDVarList variables = VariableListBuilder()
                                  .Continuous("x")
                                  .Continuous("y")
                                  .Nominal("g", {"a", "b"})
                                  .Other("o")
                                  .Build();
  const QDSettings none;
  NPARPlanner planner{&none, &variables};
  QDSettings entry;
};

TEST_F(Construction, FreshSettingsHoldTheLevelThatTheTestReads) {
  TestConstruction significance(planner, entry);
  TestConstruction confidence(planner, entry, TestConstruction::Level::Confidence);
  std::vector<std::string> names;
  significance.Make<MadeTest>()->Settings().GetSettingNames(names);
  EXPECT_THAT(names, ElementsAre("sigLevel"));
  const auto made = confidence.Make<MadeTest>();
  double level = 0.0;
  EXPECT_TRUE(made->Settings().GetSettingValByName("confidenceLevel", level));
  EXPECT_EQ(level, 0.95);
  EXPECT_THAT(made->Messages(), IsEmpty());
}

TEST_F(Construction, ATestIsBornFailedWithOneMessage) {
  TestConstruction construction(planner, entry);
  construction.FailOver(220903, "first");
  construction.FailOver(220915, "2");
  construction.Fail(220918, "comes too late");
  const auto made = construction.Make<MadeTest>();
  EXPECT_EQ(construction.GetStatus(), QDStatus(220915));
  EXPECT_EQ(made->BeginPass(), QDStatus(220915));
  ASSERT_EQ(made->Messages().size(), 1U);
  EXPECT_EQ(made->Messages()[0].kind, MessageKind::Error);
  EXPECT_THAT(made->Messages()[0].params, ElementsAre("first", "2"));
}

TEST_F(Construction, TestAndGroupAreFoundAndChecked) {
  struct Case {
    const char* variable;  // null: the key is absent
    const char* group;
    std::int32_t code;
    std::vector<std::string> parameters;
    int variableIndex, groupIndex;
  };
  const Case cases[] = {
      {"y", "g", 0, {}, 1, 2},
      {nullptr, "g", kAbsent, {}, -1, 2},
      {"y", nullptr, kNoGroup, {}, 1, -1},
      {"nowhere", "g", kUnknown, {"nowhere"}, -1, 2},
      {"y", "nowhere", kUnknown, {"nowhere"}, 1, -1},
      {"g", "g", kNotContinuous, {"2"}, 2, 2},
      {"o", "g", kNotContinuous, {"3"}, 3, 2},
      {"y", "x", kNotCategorical, {"0"}, 1, 0},
      {"g", "x", kNotCategorical, {"2", "0"}, 2, 0},
      {"nowhere", nullptr, kNoGroup, {"nowhere"}, -1, -1},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(testing::Message()
                 << (row.variable ? row.variable : "-") << " by " << (row.group ? row.group : "-"));
    entry = QDSettings();
    if (row.variable != nullptr) entry.AddNewSetting("variableName", row.variable, "");
    if (row.group != nullptr) entry.AddNewSetting("groupVariableName", row.group, "");
    TestConstruction construction(planner, entry);
    const auto found = construction.LookUpTestAndGroup(
        {kAbsent, kNoGroup, kUnknown, kNotContinuous, kNotCategorical});
    construction.PutTestAndGroup(found);
    EXPECT_EQ(found.variable, row.variableIndex);
    EXPECT_EQ(found.group, row.groupIndex);
    EXPECT_EQ(construction.GetStatus().GetErrorCode(), row.code);
    const auto made = construction.Make<MadeTest>();
    std::int32_t variableIndex = -9;
    EXPECT_TRUE(made->Settings().GetSettingValByName("variableIndex", variableIndex));
    EXPECT_EQ(variableIndex, row.variableIndex);
    if (row.code != 0) {
      EXPECT_EQ(made->Messages().at(0).params, row.parameters);
    }
  }
}

TEST_F(Construction, AListIsWalkedUpToTheFirstUnknownName) {
  entry.AddNewSetting("variableName", std::vector<std::string>{"y", "g", "x", "nowhere", "o"}, "");
  TestConstruction construction(planner, entry);
  const auto indices = construction.LookUpList(kAbsent, kUnknown, [&](std::int32_t index) {
    construction.RequireContinuous(index, kNotContinuous);
  });
  EXPECT_THAT(indices, ElementsAre(1, 2, 0));
  EXPECT_EQ(construction.GetStatus(), QDStatus(kUnknown));
  EXPECT_THAT(construction.Make<MadeTest>()->Messages().at(0).params, ElementsAre("2", "nowhere"));
}

TEST_F(Construction, AnAbsentListHasItsOwnCodeAndNoParameter) {
  TestConstruction construction(planner, entry);
  EXPECT_THAT(construction.LookUpList(kAbsent, kUnknown), IsEmpty());
  EXPECT_EQ(construction.GetStatus(), QDStatus(kAbsent));
  EXPECT_THAT(construction.Make<MadeTest>()->Messages().at(0).params, IsEmpty());
}

TEST_F(Construction, CopiesWhatTheEntryHasAsItStands) {
  entry.AddNewSetting("testProbability", "0.25", "");
  entry.AddNewSetting("scores", std::vector<double>{1, 2.5}, "");
  TestConstruction construction(planner, entry);
  EXPECT_TRUE(construction.Copy("testProbability"));
  EXPECT_TRUE(construction.Copy("scores"));
  EXPECT_FALSE(construction.Copy("absent"));
  construction.Put("flag", true);
  const auto made = construction.Make<MadeTest>();
  std::string text;
  EXPECT_TRUE(made->Settings().GetSettingValByName("testProbability", text));
  EXPECT_EQ(text, "0.25");
  std::vector<double> scores;
  EXPECT_TRUE(made->Settings().GetSettingValByName("scores", scores));
  EXPECT_THAT(scores, ElementsAre(1, 2.5));
  double flag = 0.0;
  EXPECT_TRUE(made->Settings().GetSettingValByName("flag", flag));
  EXPECT_EQ(flag, 1.0);
  EXPECT_FALSE(made->Settings().GetSettingValByName("absent", text));
}

TEST_F(Construction, TheLevelLookUpFailsTheRunForAVariableThatNoTestTakes) {
  EXPECT_EQ(planner.GetVariableLevel("x"), 1);
  EXPECT_EQ(planner.GetVariableLevel("g"), 3);
  EXPECT_EQ(planner.GetVariableLevel("nowhere"), 0);
  EXPECT_EQ(planner.GetStatus(), QDStatus());
  EXPECT_EQ(planner.GetVariableLevel("o"), 0);
  EXPECT_EQ(planner.GetStatus(), QDStatus(220004));
}

}  // namespace

#include "planning/two_group_construction.h"

#include <gtest/gtest.h>

#include "support/settings_text.h"
#include "support/variables.h"

namespace {

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
};

constexpr TwoGroupEntryCodes kCodes = TwoGroupEntryCodesFrom(220700);

class TwoGroupConstruction : public testing::Test {
 protected:
  const QDVarList variables = VariableListBuilder()
                                  .Continuous("x")
                                  .Nominal("letters", {"b", "a"})
                                  .Ordinal("grades", {"b", "a"})
                                  .NominalNumbers("numbers", {10, 9})
                                  .NominalNumbers("three", {1, 2, 3})
                                  .Build();
  const QDSettings none;
  NPARPlanner planner{&none, &variables};

  QDSettings Entry(const std::string& group) const {
    QDSettings entry;
    entry.AddNewSetting("variableName", "x", "");
    entry.AddNewSetting("groupVariableName", group, "");
    return entry;
  }
  /// The test's settings behind those of every test, or the code of the problem.
  std::string Resolve(const QDSettings& entry, const TwoGroupEntryCodes& codes = kCodes) {
    TestConstruction construction(planner, entry);
    static_cast<void>(ResolveTwoGroups(construction, codes));
    if (!construction.IsOK()) return std::to_string(construction.GetStatus().GetErrorCode());
    return SettingsText(construction.Make<MadeTest>()->Settings());
  }
  using Codes = std::vector<double>;
  std::pair<Codes, Codes> ResolveLists(const QDSettings& entry) {
    TestConstruction construction(planner, entry);
    static_cast<void>(ResolveTwoGroups(construction, kCodes));
    std::pair<Codes, Codes> lists;
    const auto test = construction.Make<MadeTest>();
    EXPECT_TRUE(test->Settings().GetSettingValByName("group1List", lists.first));
    EXPECT_TRUE(test->Settings().GetSettingValByName("group2List", lists.second));
    return lists;
  }
};

std::string Settings(int group, const std::string& groups, int flag) {
  return "sigLevel=0.05 groupVariableIndex=" + std::to_string(group) + " variableIndex=0 " +
         groups + "userSpecifyGroupList=" + std::to_string(flag) + " ";
}

TEST_F(TwoGroupConstruction, TheLowerValueIsTheFirstGroupUnlessTheFieldIsOrdinal) {
  const std::string swapped = "groupVariableValue1=1 groupVariableValue2=0 ";
  const std::string asListed = "groupVariableValue1=0 groupVariableValue2=1 ";
  EXPECT_EQ(Resolve(Entry("letters")), Settings(1, swapped, 0));
  EXPECT_EQ(Resolve(Entry("grades")), Settings(2, asListed, 0));
  EXPECT_EQ(Resolve(Entry("numbers")), Settings(3, swapped, 0));
  EXPECT_EQ(Resolve(Entry("three")), Settings(4, asListed, 0));
}

TEST_F(TwoGroupConstruction, ATestMayWantExactlyTwoCategories) {
  TwoGroupEntryCodes codes = kCodes;
  codes.notTwoCategories = 222009;
  EXPECT_EQ(Resolve(Entry("three"), codes), "222009");
  EXPECT_NE(Resolve(Entry("letters"), codes), "222009");
}

TEST_F(TwoGroupConstruction, GivenValuesBecomeCodesAndUnknownOnesMinusOne) {
  QDSettings texts = Entry("letters");
  texts.AddNewSetting("userSpecifyGroupList", "true", "");
  texts.AddNewSetting("group1List", std::vector<std::string>{"a", "nowhere"}, "");
  texts.AddNewSetting("group2List", std::vector<std::string>{"b"}, "");
  EXPECT_EQ(ResolveLists(texts), (std::pair{Codes{1, -1}, Codes{0}}));
  QDSettings numbers = Entry("three");
  numbers.AddNewSetting("userSpecifyGroupList", "true", "");
  numbers.AddNewSetting("group1List", std::vector<std::string>{"3", "1"}, "");
  numbers.AddNewSetting("group2List", std::vector<double>{2}, "");
  EXPECT_EQ(ResolveLists(numbers), (std::pair{Codes{2, 0}, Codes{1}}));
}

TEST_F(TwoGroupConstruction, AnAnnouncedListMustBeThere) {
  for (const char* only : {"group1List", "group2List"}) {
    QDSettings entry = Entry("letters");
    entry.AddNewSetting("userSpecifyGroupList", "true", "");
    entry.AddNewSetting(only, std::vector<std::string>{"a"}, "");
    EXPECT_EQ(Resolve(entry), "220701");
  }
}

TEST_F(TwoGroupConstruction, CodesAreNumberedFromTheTestsBase) {
  EXPECT_EQ(kCodes.variables.noVariable, 220712);
  EXPECT_EQ(kCodes.variables.noGroup, 220713);
  EXPECT_EQ(kCodes.variables.unknown, 220703);
  EXPECT_EQ(kCodes.variables.notContinuous, 220715);
  EXPECT_EQ(kCodes.variables.notCategorical, 220714);
  EXPECT_EQ(kCodes.emptyList, 220701);
}

}  // namespace

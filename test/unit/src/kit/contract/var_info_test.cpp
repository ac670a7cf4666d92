#include "kit/contract/var_info.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/variables.h"

namespace {

using testing::ElementsAre;

class VarInfo : public testing::Test {
 protected:
  const QDVarList variables = VariableListBuilder()
                                  .Continuous("x")
                                  .Nominal("text", {"plain", "a;b", "c\\d"})
                                  .OrdinalNumbers("number", {2.5, -1, 10})
                                  .Other("other")
                                  .Build();
  const NPARVarInfo info{&variables};
  std::vector<double> positions = {7};
};

TEST_F(VarInfo, AnIndexThatIsNoneHasNoTexts) {
  for (const std::int32_t index : {-1, 4}) {
    EXPECT_EQ(info.GetName(index), "");
    EXPECT_EQ(info.GetLabel(index), "");
    EXPECT_EQ(info.GetValueText(index, 0.0), "");
    EXPECT_FALSE(info.IsOrdinal(index));
  }
  EXPECT_EQ(info.GetName(1), "text");
}

TEST_F(VarInfo, OnlyACategoricalVariableCanBeOrdinal) {
  EXPECT_TRUE(info.IsOrdinal(2));
  EXPECT_FALSE(info.IsOrdinal(1));
  EXPECT_FALSE(info.IsOrdinal(0));
}

TEST_F(VarInfo, ComparesKindsAndTakesAnAbsentVariableAsOneOfItsOwnKind) {
  EXPECT_TRUE(info.SameType(1, 1));
  EXPECT_FALSE(info.SameType(1, 2));
  EXPECT_FALSE(info.SameType(0, 3));
  EXPECT_TRUE(info.SameType(-1, 9));
  EXPECT_FALSE(info.SameType(-1, 0));
}

TEST_F(VarInfo, EscapesTextsForListsAndLeavesNumbersAlone) {
  EXPECT_EQ(info.GetValueText(1, 0.0), "plain");
  EXPECT_EQ(info.GetValueText(1, 1.9), "a\\;b");
  EXPECT_EQ(info.GetValueText(1, 2.0), "c\\\\d");
  EXPECT_EQ(info.GetNumericValueText(1, 1.0), "a;b");
  EXPECT_EQ(info.GetValueText(2, 0.0), "2.5");
  EXPECT_EQ(info.GetValueText(2, 3.0), "");
  EXPECT_EQ(info.GetValueText(0, 0.0), "");
}

TEST_F(VarInfo, ListsTheCategoriesThatAreNotExcluded) {
  std::vector<std::string> names = {"stale"};
  info.ListOtherStringCategories(1, {1.0, -1.0}, names, positions);
  EXPECT_THAT(names, ElementsAre("plain", "c\\d"));
  EXPECT_THAT(positions, ElementsAre(0.0, 2.0));

  std::vector<double> values;
  info.ListOtherNumericCategories(2, {}, values, positions);
  EXPECT_THAT(values, ElementsAre(2.5, -1.0, 10.0));
  EXPECT_THAT(positions, ElementsAre(0.0, 1.0, 2.0));

  info.ListOtherNumericCategories(0, {}, values, positions);
  EXPECT_TRUE(values.empty());
  EXPECT_TRUE(positions.empty());
}

}  // namespace

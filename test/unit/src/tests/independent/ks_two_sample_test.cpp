#include "tests/independent/ks_two_sample.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/matchers.h"
#include "support/two_group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IKolmogorovSmirnov", first, second);
}

struct KSCase {
  const char* catches;
  Sample first, second;
  double absolute, positive, negative, z, sig;
};

// SciPy 1.17.1: statistics of ks_2samp(larger, smaller, alternative="greater" and "less"), z from
// the larger, kstwobign.sf(z); above z = 3.1 the limiting tail counts as 0.
const KSCase kCases[] = {
    {"the larger group's function comes first",
     {1.1, 2.2, 3.7, 5.4},
     {0.4, 2.9, 6.3, 7.8, 9.1},
     0.6,
     0.2,
     -0.6,
     0.8944271909999159,
     0.4004710362084578},
    {"ties inside and between the groups",
     {-2, -1, 0, 0, 1, 3, 3.5, 4, 7},
     {-1.5, 0, 1, 2, 3, 5, 6, 6, 8, 9},
     0.38888888888888884,
     0,
     -0.38888888888888884,
     0.8463889584616802,
     0.47082147208902647},
    {"for equal sizes group 1's", Ascending(1, 20), Ascending(5.5, 20), 0.25, 0.25, 0,
     0.7905694150420951, 0.5595597101952633},
    {"the same samples", {3, 4, 4}, {3, 4, 4}, 0, 0, 0, 0, 1},
    {"z below 0.27", Ascending(0, 25), Ascending(0.5, 25), 0.04, 0.04, 0, 0.1414213562373095, 1},
    {"z from 1 on takes the other series",
     {1, 2, 3},
     {4, 5, 6},
     1,
     1,
     0,
     1.224744871391589,
     0.09956184831478034},
    {"apart, z from 3.1 on", Ascending(0, 50), Ascending(100, 50), 1, 1, 0, 5, 0},
};

TEST(KSTwoSampleTest, FiguresAgreeWithSciPy) {
  for (const KSCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.first, row.second);
    EXPECT_THAT(result.Number("Absolute"), IsCloseTo(row.absolute));
    EXPECT_THAT(result.Number("Positive"), IsCloseTo(row.positive));
    EXPECT_THAT(result.Number("Negative"), IsCloseTo(row.negative));
    EXPECT_THAT(result.Number("TestStatistic"), IsCloseTo(row.z));
    EXPECT_THAT(result.Number("AsymptoticSig2Tailed"), IsCloseTo(row.sig, 1e-10));
    EXPECT_EQ(result.Decision(), row.sig < 0.05 ? "reject" : "retain");
  }
}

TEST(KSTwoSampleTest, SwappingEqualGroupsTurnsTheSigns) {
  const AlgorithmElement result = Result(Ascending(5.5, 20), Ascending(1, 20));
  EXPECT_EQ(result.Text("Absolute"), "0.25");
  EXPECT_EQ(result.Text("Positive"), "0");
  EXPECT_EQ(result.Text("Negative"), "-0.25");
}

TEST(KSTwoSampleTest, ACategoryInBothListsBelongsToTheFirst) {
  const Rows rows = GroupedRows({{1, 2}, {3, 4}, {5}});
  const auto run = [&rows](const std::vector<std::string>& first,
                           const std::vector<std::string>& second) {
    return RunEntry(GroupedVariables(3), rows, "IKolmogorovSmirnov",
                    ListedEntry<std::string>(first, second).Get());
  };
  const AlgorithmElement both = run({"a", "b"}, {"b", "c"});
  EXPECT_EQ(both.Text("Group0/N"), "4");
  EXPECT_EQ(both.Text("Group1/N"), "1");
  EXPECT_EQ(both.Text("Group1/GroupIndex"), "1;2");
  EXPECT_EQ(both.Text("TestStatistic"), run({"a", "b"}, {"c"}).Text("TestStatistic"));
}

TEST(KSTwoSampleTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Name(), "IKolmogorovSmirnov");
  EXPECT_EQ(result.Type(), "hypothesis_test");
  EXPECT_EQ(result.Classification(), "Independent_Samples");
  EXPECT_THAT(result.ChildNames(),
              testing::ElementsAre("StructuredTable Condition", "StructuredTable StatisticsResult",
                                   "StructuredTable Group0", "StructuredTable Group1"));
  EXPECT_THAT(result.ChildNames("StatisticsResult"),
              testing::ElementsAre("StructuredTable MostExtremeDifferences",
                                   "Attribute TestStatistic", "Attribute AsymptoticSig2Tailed"));
  EXPECT_THAT(
      result.ChildNames("MostExtremeDifferences"),
      testing::ElementsAre("Attribute Absolute", "Attribute Positive", "Attribute Negative"));
  EXPECT_THAT(result.ChildNames("Group1"),
              testing::ElementsAre("Attribute GroupIndex", "Attribute N", "SimpleTable Interval"));
  EXPECT_THAT(result.Rows("Group0/Interval"), testing::ElementsAre("2;1;1", "1;4;0"));
  EXPECT_THAT(result.Rows("Group1/Interval"), testing::ElementsAre("1;1;1", "-3;2;0"));
}

TestSettings ReadableSettings() {
  TestSettings settings;
  settings.Put("sigLevel", 0.05).Put("variableIndex", 0).Put("groupVariableIndex", 1);
  settings.Put("groupVariableValue1", 0.0).Put("groupVariableValue2", 1.0);
  return settings;
}

TEST(KSTwoSampleTest, ASettingThatIsNotThereIsUnreadable) {
  const QDSettings readable = ReadableSettings().Get();
  std::vector<std::string> names;
  readable.GetSettingNames(names);
  ASSERT_EQ(names.size(), 5U);
  for (const std::string& left : names) {
    TestSettings settings;
    for (const std::string& name : names) {
      double value = 0.0;
      ASSERT_TRUE(readable.GetSettingValByName(name, value));
      if (name != left) settings.Put(name, value);
    }
    NPARKSmirnowTwoSample test(settings.Release());
    EXPECT_THAT(test.BeginPass(), HasCode(222001)) << left;
    EXPECT_FALSE(test.NeedsAnotherPass());
  }
  TestSettings oneList = ReadableSettings();
  oneList.Put("userSpecifyGroupList", 1).Put("group1List", std::vector<double>{0.0});
  NPARKSmirnowTwoSample test(oneList.Release());
  EXPECT_THAT(test.BeginPass(), HasCode(222001));
}

TEST(KSTwoSampleTest, ASecondPassWithoutTheRecordsOfTheFirstIsWarnedOf) {
  NPARKSmirnowTwoSample test(ReadableSettings().Release());
  EXPECT_THAT(test.BeginPass(), IsOk());
  EXPECT_EQ(test.GetPassesLeft(), 2);
  for (const std::vector<double>& row : Rows{{1, 0}, {2, 1}}) {
    EXPECT_THAT(test.ProcessRecord(Record::View(row.data(), 2)), IsOk());
  }
  EXPECT_THAT(test.EndPass(), IsOk());
  EXPECT_TRUE(test.NeedsAnotherPass());
  EXPECT_THAT(test.BeginPass(), IsOk());
  EXPECT_EQ(test.GetPassesLeft(), 1);
  EXPECT_THAT(test.EndPass(), IsOk());
  EXPECT_EQ(test.GetPassesLeft(), 0);
  EXPECT_FALSE(test.NeedsAnotherPass());
  EXPECT_THAT(AlgorithmElement(test.WriteResults()).Messages(),
              testing::ElementsAre(AlgorithmElement::Message{222011, "warning", {}}));
}

}  // namespace

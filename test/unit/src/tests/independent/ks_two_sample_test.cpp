#include "tests/independent/ks_two_sample.h"

#include "support/group_run.h"

namespace {

AlgorithmElement Result(const Sample& first, const Sample& second) {
  return RunOnSamples("IKolmogorovSmirnov", {first, second});
}

struct KSCase {
  const char* catches;
  Sample first, second;
  double absolute, positive, negative, z, sig;
};

// SciPy 1.17.1: statistics of ks_2samp(larger, smaller, alternative="greater" and "less"), z from
// the larger, kstwobign.sf(z); above z = 3.1 the limiting tail counts as 0.
const KSCase kCases[] = {
    {"the larger group's function comes first", kUntiedFirst, kUntiedSecond, 0.6, 0.2, -0.6,
     0.8944271909999159, 0.4004710362084578},
    {"ties inside and between the groups", kTiedFirst, kTiedSecond, 0.38888888888888884, 0,
     -0.38888888888888884, 0.8463889584616802, 0.47082147208902647},
    {"for equal sizes group 1's", Ascending(1, 20), Ascending(5.5, 20), 0.25, 0.25, 0,
     0.7905694150420951, 0.5595597101952633},
    {"swapped, the sign turns", Ascending(5.5, 20), Ascending(1, 20), 0.25, 0, -0.25,
     0.7905694150420951, 0.5595597101952633},
    {"the same samples", Sample{3, 4, 4}, Sample{3, 4, 4}, 0, 0, 0, 0, 1},
    {"z below 0.27", Ascending(0, 25), Ascending(0.5, 25), 0.04, 0.04, 0, 0.1414213562373095, 1},
    {"z from 1 on takes the other series", Ascending(1, 3), Ascending(4, 3), 1, 1, 0,
     1.224744871391589, 0.09956184831478034},
    {"apart, z from 3.1 on", Ascending(0, 50), Ascending(100, 50), 1, 1, 0, 5, 0},
};

TEST(KSTwoSampleTest, FiguresAgreeWithSciPy) {
  for (const KSCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const AlgorithmElement result = Result(row.first, row.second);
    ExpectFigures(result, {{"Absolute", row.absolute},
                           {"Positive", row.positive},
                           {"Negative", row.negative},
                           {"TestStatistic", row.z},
                           {"AsymptoticSig2Tailed", row.sig, 1e-10}});
    EXPECT_EQ(result.Decision(), row.sig < 0.05 ? "reject" : "retain");
  }
}

TEST(KSTwoSampleTest, ACategoryInBothListsBelongsToTheFirst) {
  const auto run = [](const Texts& first, const Texts& second) {
    return RunOnSamples("IKolmogorovSmirnov", {{1, 2}, {3, 4}, {5}}, ListedEntry(first, second));
  };
  const AlgorithmElement both = run({"a", "b"}, {"b", "c"});
  ExpectTexts(both, {{"Group0/N", "4"},
                     {"Group1/N", "1"},
                     {"Group1/GroupIndex", "1;2"},
                     {"TestStatistic", run({"a", "b"}, {"c"}).Text("TestStatistic")}});
}

TEST(KSTwoSampleTest, TheElementHoldsItsTablesInOrder) {
  const AlgorithmElement result = Result({0, 1, 1, 4}, {2, -3, 0});
  EXPECT_EQ(result.Outline(),
            "Condition(ConditionKey %0 %1) StatisticsResult(MostExtremeDifferences(Absolute "
            "Positive Negative) TestStatistic AsymptoticSig2Tailed) Group0(GroupIndex N "
            "Interval[]) Group1(GroupIndex N Interval[])");
  EXPECT_EQ(result.Rows("Group0/Interval"), (Texts{"2;1;1", "1;4;0"}));
  EXPECT_EQ(result.Rows("Group1/Interval"), (Texts{"1;1;1", "-3;2;0"}));
}

TEST(KSTwoSampleTest, ASettingThatIsNotThereIsUnreadable) {
  const Texts names{"sigLevel", "variableIndex", "groupVariableIndex", "groupVariableValue1",
                    "groupVariableValue2"};
  TestSettings readable;
  for (const std::string& left : names) {
    TestSettings settings;
    for (const std::string& name : names) {
      if (name != left) settings.Put(name, 0.0);
    }
    NPARKSmirnowTwoSample test(settings.Release());
    EXPECT_THAT(test.BeginPass(), HasCode(222001)) << left;
    EXPECT_FALSE(test.NeedsAnotherPass());
    readable.Put(left, 0.0);
  }
  EXPECT_THAT(NPARKSmirnowTwoSample(readable.Release()).BeginPass(), IsOk());
  readable.Put("userSpecifyGroupList", 1, "group1List", Sample{0.0});
  EXPECT_THAT(NPARKSmirnowTwoSample(readable.Release()).BeginPass(), HasCode(222001));
}

TEST(KSTwoSampleTest, ASecondPassWithoutTheRecordsOfTheFirstIsWarnedOf) {
  NPARKSmirnowTwoSample test(Entry("sigLevel", 0.05, "variableIndex", 0, "groupVariableIndex", 1,
                                   "groupVariableValue1", 0.0, "groupVariableValue2", 1.0)
                                 .Release());
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
  EXPECT_EQ(AlgorithmElement(test.WriteResults()).Messages(), (Messages{{222011, "warning", {}}}));
}

}  // namespace

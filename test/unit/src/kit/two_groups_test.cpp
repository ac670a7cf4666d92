#include "kit/two_groups.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

constexpr TwoGroupCodes kCodes{6, 9, 10, 11};

class StatusTaker final : public NPARTest {
 public:
  StatusTaker() : NPARTest(nullptr) {}
  void SetSharedData(UnivariateResults*) override {}
  QDStatus BeginPass() override { return status; }
  QDStatus ProcessRecord(const Record&) override { return status; }
  bool NeedsAnotherPass() override { return false; }
  QDStatus EndPass() override { return status; }
  void GetRequiredVariables(std::vector<std::int64_t>&) override {}
  XMLElement* WriteResults() override { return nullptr; }
};

class Frequencies final : public UnivariateResults {
 public:
  explicit Frequencies(std::map<std::int32_t, std::int64_t> counts)
      : UnivariateResults(nullptr), counts(std::move(counts)) {}
  bool GetFrequencies(std::int32_t, std::map<std::int32_t, std::int64_t>& out) const override {
    out = counts;
    return true;
  }
  std::int32_t GetCategoryCount(std::int32_t) const override {
    return static_cast<std::int32_t>(counts.size());
  }

 private:
  std::map<std::int32_t, std::int64_t> counts;
};

TwoGroups Read(const QDSettings& settings) {
  TwoGroups groups;
  groups.Read(settings);
  return groups;
}

QDSettings Lists(const std::vector<double>& first, const std::vector<double>& second) {
  QDSettings settings;
  settings.AddNewSetting("variableIndex", 0.0, "");
  settings.AddNewSetting("groupVariableIndex", 1.0, "");
  settings.AddNewSetting("userSpecifyGroupList", 1.0, "");
  settings.AddNewSetting("group1List", first, "");
  settings.AddNewSetting("group2List", second, "");
  return settings;
}

QDSettings Defaults() {
  QDSettings settings;
  settings.AddNewSetting("variableIndex", 0.0, "");
  settings.AddNewSetting("groupVariableIndex", 1.0, "");
  settings.AddNewSetting("userSpecifyGroupList", 0.0, "");
  settings.AddNewSetting("groupVariableValue1", 1.0, "");
  settings.AddNewSetting("groupVariableValue2", 0.0, "");
  return settings;
}

TwoGroups::Group GroupOfCode(const TwoGroups& groups, double code) {
  Record record(2);
  record[1] = code;
  return groups.Of(record);
}

TEST(TwoGroupsTest, CodesBelongToTheirListAndUnknownOnesToNone) {
  const TwoGroups groups = Read(Lists({4, 0, -1}, {2, 4}));
  EXPECT_EQ(GroupOfCode(groups, 0), TwoGroups::First);
  EXPECT_EQ(GroupOfCode(groups, 2), TwoGroups::Second);
  EXPECT_EQ(GroupOfCode(groups, 4), TwoGroups::First);  // it stands in both
  EXPECT_EQ(GroupOfCode(groups, 1), TwoGroups::Neither);
  EXPECT_EQ(GroupOfCode(groups, 5), TwoGroups::Neither);
  EXPECT_EQ(GroupOfCode(groups, -1), TwoGroups::Neither);
  EXPECT_EQ(GroupOfCode(groups, 1e12), TwoGroups::Neither);
}

TEST(TwoGroupsTest, DefaultGroupsAreOneCategoryEach) {
  const TwoGroups groups = Read(Defaults());
  EXPECT_FALSE(groups.AreUserSpecified());
  EXPECT_EQ(GroupOfCode(groups, 1), TwoGroups::First);
  EXPECT_EQ(GroupOfCode(groups, 0), TwoGroups::Second);
  std::vector<std::int64_t> positions{7};
  groups.AppendRequired(positions);
  EXPECT_EQ(positions, (std::vector<std::int64_t>{7, 0, 1}));
}

struct CheckCase {
  const char* catches;
  QDSettings settings;
  std::map<std::int32_t, std::int64_t> frequencies;
  std::int32_t code;
};

TEST(TwoGroupsTest, TheFirstFindingIsReported) {
  const CheckCase cases[] = {
      {"two categories", Defaults(), {{0, 3}, {1, 0}}, 0},
      {"three categories", Defaults(), {{0, 3}, {1, 2}, {2, 0}}, kCodes.notTwoCategories},
      {"one category", Defaults(), {{0, 3}}, kCodes.notTwoCategories},
      {"lists with data", Lists({0}, {2}), {{0, 1}, {1, 0}, {2, 1}}, 0},
      {"one populated code is enough", Lists({0, 1}, {2}), {{0, 0}, {1, 5}, {2, 1}}, 0},
      {"empty first list", Lists({}, {2}), {{0, 1}, {2, 1}}, kCodes.unpopulated},
      {"empty second list", Lists({0}, {}), {{0, 1}, {2, 1}}, kCodes.unpopulated},
      {"overlap before emptiness", Lists({0, 1}, {1}), {{0, 0}, {1, 0}}, kCodes.overlap},
      {"first group without data", Lists({1}, {2}), {{1, 0}, {2, 1}}, kCodes.unpopulated},
      {"second group without data", Lists({1}, {-1}), {{1, 1}, {2, 1}}, kCodes.unpopulated},
  };
  for (const CheckCase& row : cases) {
    SCOPED_TRACE(row.catches);
    StatusTaker test;
    const Frequencies summaries(row.frequencies);
    EXPECT_EQ(Read(row.settings).Check(test, &summaries, kCodes), row.code == 0);
    EXPECT_EQ(test.EndPass().GetErrorCode(), row.code);
  }
  StatusTaker test;
  EXPECT_FALSE(Read(Defaults()).Check(test, nullptr, kCodes));
  EXPECT_EQ(test.EndPass(), QDStatus(kCodes.noSummaries));
}

TEST(TwoGroupsTest, HistogramsSpanEachGroupAndCountZerosApart) {
  TwoGroupHistograms histograms;
  for (const double x : {0.0, 4.0}) histograms.TakeRange(TwoGroups::First, x);
  histograms.TakeRange(TwoGroups::Second, 7.0);
  histograms.Start();
  histograms.Add(TwoGroups::First, 0.0, 3);
  histograms.Add(TwoGroups::First, 4.0, 2);
  histograms.Add(TwoGroups::Second, 7.0, 1);
  histograms.Finish();
  const auto& first = histograms.Bins(TwoGroups::First);
  ASSERT_EQ(first.size(), 402U);  // 400, one for the edge at zero, the zeros
  EXPECT_EQ(first.back().count, 3);
  // The edges behind zero stand one width further up, so the maximum is not in the last bin.
  EXPECT_EQ(first[399].count, 2);
  EXPECT_EQ(first[399].binMean, 4.0);
  EXPECT_EQ(histograms.Bins(TwoGroups::Second).size(), 400U);
}

}  // namespace

#include "host/render/sample_order.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace npar_host {
namespace {

using testing::ElementsAre;

TEST(SampleOrderTest, NumbersInTextsCountAsNumbers) {
  const std::vector<std::string> ordered = {"",         "2",       "10",     "a",     "g",
                                            "g2",       "g02x",    "g2x1",   "g2x10", "g10",
                                            "week 9 a", "week 10", "\u00fc1"};
  for (std::size_t i = 0; i < ordered.size(); ++i) {
    for (std::size_t j = 0; j < ordered.size(); ++j) {
      EXPECT_EQ(IsNaturallyLess(ordered[i], ordered[j]), i < j) << ordered[i] << " " << ordered[j];
    }
  }
}

ResultDocument GroupsOf(const char* test) {
  ResultDocument document;
  document.fields.resize(2);
  document.fields[1].categories = {{"g1", ""}, {"g10", ""}, {"g2", ""}};
  document.fields[1].distribution = ResultDistribution{{}, {{5, 0}, {6, 1}, {7, 2}}};
  document.tests.resize(1);
  document.tests[0].name = test;
  document.tests[0].classification = "Independent_Samples";
  document.tests[0].conditionParameters = {"0", "1"};
  document.tests[0].boxPlots.resize(3);
  for (int i = 0; i < 3; ++i) document.tests[0].boxPlots[static_cast<std::size_t>(i)].code = i;
  document.tests[0].extended =
      ResultExtended{{},
                     {{"Groups", {"0", "1", "2"}, {"N"}, {{"5"}, {"6"}, {"7"}}},
                      {"Other", {"Group0", "Group1"}, {"N"}, {{"1"}, {"2"}}}}};
  return document;
}

std::vector<std::int32_t> Boxes(const ResultDocument& document) {
  std::vector<std::int32_t> codes;
  for (const ResultBoxPlot& box : document.tests[0].boxPlots) codes.push_back(box.code);
  return codes;
}

TEST(SampleOrderTest, NominalGroupsStandInNaturalOrderAndTrendsInTheirOwn) {
  ResultDocument document = GroupsOf("IKruskalWallis");
  OrderSamples(document);
  EXPECT_THAT(Boxes(document), ElementsAre(0, 1, 2)) << "nobody said that they are nominal";
  document.fields[1].isNominal = true;
  OrderSamples(document);
  EXPECT_THAT(Boxes(document), ElementsAre(0, 2, 1));
  const auto& tables = document.tests[0].extended->tables;
  EXPECT_THAT(tables[0].rowNames, ElementsAre("0", "2", "1"));
  EXPECT_EQ(tables[0].rows[1][0], "7");
  EXPECT_THAT(tables[1].rowNames, ElementsAre("Group0", "Group1"));
  EXPECT_EQ(document.fields[1].distribution->bins[1].count, 7.0);
  ResultDocument trend = GroupsOf("IJonckheereTerpstra");
  trend.fields[1].isNominal = true;
  OrderSamples(trend);
  EXPECT_THAT(Boxes(trend), ElementsAre(0, 1, 2));
  trend.tests[0].groupsDescend = true;
  OrderSamples(trend);
  EXPECT_THAT(Boxes(trend), ElementsAre(2, 1, 0));
}

}  // namespace
}  // namespace npar_host

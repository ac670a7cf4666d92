#include "host/render/extended_figures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/render/extended_words.h"
#include "host/render/reading_notes.h"
#include "host/render/sentence.h"
#include "host/render/text.h"
#include "support/process.h"

namespace npar_host {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ResultDocument Reference(const std::string& name) {
  return ReadResultDocument(FileContent("test/support/references/results/" + name + ".xml"), name);
}

struct DifferenceCase {
  const char* catches;
  const char* document;
  std::size_t test;
  ResultStatistic exact;
  const char* sentence;
};

TEST(ExtendedFiguresTest, AnotherDecisionByTheExactSignificanceIsToldAndNoneElse) {
  const std::string conditional = "ConditionalExactSig2Tailed";
  const DifferenceCase cases[] = {
      {"asymptotic .063 is retained",
       "tooth_growth_supp",
       0,
       {"", conditional, "0.037"},
       "The document's decision rests on an asymptotic value; the exact significance, with ties "
       "counted, is .037."},
      {"exact .004 is rejected",
       "sleep_pairs",
       0,
       {"", conditional, "0.25"},
       "The document's exact value does not count ties; with them the exact significance is .250."},
      {"the level itself does not reject", "tooth_growth_supp", 0, {"", conditional, "0.05"}, ""},
      {"another name counts no ties",
       "tooth_growth_supp",
       0,
       {"", "ExactSig2Tailed", "0.0004"},
       "The document's decision rests on an asymptotic value; the exact significance is < .001."},
      {"other figures decide nothing", "tooth_growth_supp", 0, {"", "MidPSig2Tailed", "0.01"}, ""},
  };
  for (const DifferenceCase& row : cases) {
    SCOPED_TRACE(row.catches);
    ResultDocument document = Reference(row.document);
    ResultTest& test = document.tests.at(row.test);
    test.extended = {{row.exact}, {}};
    EXPECT_EQ(ExactDifference(document, test), row.sentence);
  }
  ResultDocument document = Reference("sleep_pairs");
  document.tests[0].extended = {{{"", "ExactSig2Tailed", "0.00390625"}}, {}};
  EXPECT_FALSE(ExactBeside(document.tests[0])) << "it is the document's own";
  EXPECT_THAT(ReadingNotes(document, document.tests[0]), IsEmpty());
  document.tests[0].extended = {{{"", conditional, "0.005"}}, {}};
  EXPECT_THAT(ReadingNotes(document, document.tests[0]),
              ElementsAre(HasSubstr("does not count ties; with them it is .005")));
}

TEST(ExtendedFiguresTest, SmallGroupsOfSeveralAreToldByTheirSizes) {
  ResultDocument document = Reference("insect_sprays_pairwise");
  ResultTest& test = document.tests.at(0);
  test.extended = {{}, {{"Groups", {"0", "2"}, {"Median", "N"}, {{"14", "4"}, {"2", "5"}}}}};
  EXPECT_THAT(ReadingNotes(document, test), Contains(HasSubstr("fewer than 5 records: A has 4")));
}

// Mann-Whitney names its groups by position; the figures are made up.
TEST(ExtendedFiguresTest, GroupsEffectAndSentenceTakeTheirFigures) {
  ResultDocument document = Reference("tooth_growth_supp");
  document.tests.resize(1);
  ResultTest& test = document.tests[0];
  const double effect = FindEffectSize(document, test)->value;
  test.extended = {{{"", "RankBiserial", std::to_string(effect)},
                    {"", "RankBiserialLower", "-0.5225"},
                    {"", "RankBiserialUpper", "0.0157"}},
                   {{"Groups",
                     {"Group1", "Group0"},
                     {"N", "Median", "LowerQuartile", "MeanRank"},
                     {{"30", "16.5", "11.25", "1"}, {"30", "22.7", "", "2"}}}}};
  EXPECT_FALSE(EffectLimits(test, {"", "r", 0.3})) << "limits of another figure";
  test.extended->figures[0].text = "-0.278888888888889";
  const ExtendedColumns columns = GroupColumns(test);
  EXPECT_THAT(columns.Labels(), ElementsAre("Median", "25 %"));
  EXPECT_THAT(columns.Cells(columns.RowOfGroup(test, 0)), ElementsAre("22.7", ""));
  EXPECT_THAT(columns.Cells(std::nullopt), ElementsAre("", ""));
  EXPECT_THAT(RenderText(document, {}),
              HasSubstr("  95 % CI (Newcombe)               [-0.5225, 0.0157]"));
  EXPECT_THAT(Sentence(document, test), HasSubstr("r = -.28, 95 % CI [-.52, .02]."));
  EXPECT_THAT(Sentence(document, test), HasSubstr("Mdn = 22.70 and 16.50,"));
}

TEST(ExtendedFiguresTest, LimitsAndTailsStandInOneRowAndUnknownNamesAreSplit) {
  ResultTest test;
  test.extended = {{{"", "OddsRatio", "2"},
                    {"", "OddsRatioLower", "1"},
                    {"", "OddsRatioUpper", "4"},
                    {"", "NewFigureOfN", "5"},
                    {"", "ExactSig1TailedLess", "0.25"},
                    {"", "ExactSig1TailedGreater", "0.75"}},
                   {}};
  std::vector<std::string> rows;
  const auto show = [](std::string_view, std::string_view figure) { return std::string(figure); };
  for (const FurtherFigure& figure : FurtherFigures(test)) {
    rows.push_back(figure.label + ": " + FurtherCell(figure, show));
  }
  EXPECT_THAT(rows, ElementsAre("Odds ratio (Clopper-Pearson): 2 [1, 4]", "New figure of N: 5",
                                "Exact, less and greater: 0.25, 0.75"));
  EXPECT_EQ(ExtendedLabel("OddsRatioLower"), "Odds ratio, lower limit");
}

}  // namespace
}  // namespace npar_host

#include "host/render/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace npar_host {
namespace {

using testing::HasSubstr;
using testing::Not;

ResultDocument SignDocument() {
  ResultDocument document;
  document.totalCount = document.totalFreq = 10.0;
  ResultField first;
  first.name = "drug1";
  ResultField second;
  second.name = "drug2";
  document.fields = {first, second};
  ResultTest test;
  test.name = "RSign";
  test.type = "hypothesis_test";
  test.classification = "Related_Samples";
  test.decision = "reject";
  test.conditionKey = "R_Sign_2";
  test.conditionParameters = {"0", "1"};
  test.differences = ResultDistribution{{{"", "PositiveDifferences", "9"}}, {}};
  test.statistics = {{"", "TotalN", "10"}, {"", "ExactSig2Tailed", "0.00390625"}};
  document.tests = {test};
  return document;
}

TEST(TextReportTest, ShowsHypothesisDecisionAndFigures) {
  EXPECT_EQ(RenderText(SignDocument()), R"(Nonparametric tests
===================
10 records; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

1. Sign test
------------
  The median of the differences drug2 - drug1 is 0.
  Reject the null hypothesis at the level 0.05.

  Positive differences                   9
  Total N                               10
  Exact significance (2-sided)  0.00390625
)");
}

TEST(TextReportTest, CountsThatAreNotTheUsualOnesAreTold) {
  ResultDocument document = SignDocument();
  document.totalFreq = 25.0;
  document.droppedCount = 3.0;
  document.badWeightCount = 2.0;
  document.listwise = true;
  const std::string text = RenderText(document);
  EXPECT_THAT(text,
              HasSubstr("10 records with a total weight of 25, 3 dropped for missing values"));
  EXPECT_THAT(text, HasSubstr("excluded listwise"));
}

TEST(TextReportTest, NamesCannotControlTheTerminal) {
  ResultDocument document = SignDocument();
  document.fields[0].name = "a\x1b[31m\xc2\x9b";
  const std::string text = RenderText(document);
  EXPECT_THAT(text, HasSubstr(R"(a\x1b[31m\u009b)"));
  EXPECT_THAT(text, Not(HasSubstr("\x1b")));
}

TEST(TextReportTest, TitlesThatLookLikePlacesStayAsTheyAre) {
  ResultDocument document = SignDocument();
  document.fields[1].name = "{0}";
  EXPECT_THAT(RenderText(document), HasSubstr("differences {0} - drug1 is 0"));
}

TEST(TextReportTest, LinesKeepToTheWidthAndNoWordIsLost) {
  ResultDocument document = SignDocument();
  document.fields[0].name = std::string(120, 'x');
  document.fields[1].name = "a b c d e f g h i j k l m n o p q r s t u v w x y z a b c d e f g";
  const std::string text = RenderText(document);
  EXPECT_THAT(text, HasSubstr(std::string(120, 'x')));
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t end = text.find('\n', start);
    const std::string line = text.substr(start, end - start);
    EXPECT_TRUE(line.size() <= 80u || line.find("xxx") != std::string::npos) << line;
    start = end + 1;
  }
}

TEST(TextReportTest, AFailedTestSaysThatThereIsNoDecision) {
  ResultDocument document = SignDocument();
  document.tests[0].decision = "unknown";
  document.tests[0].statistics.clear();
  document.tests[0].differences.reset();
  document.tests[0].messages = {{220003, "error", {}, {}}};
  const std::string text = RenderText(document);
  EXPECT_THAT(text, HasSubstr("No decision"));
  EXPECT_THAT(text, HasSubstr("error 220003: "));
}

TEST(TextReportTest, AnIndexThatNamesNoFieldIsNoCrash) {
  ResultDocument document = SignDocument();
  document.tests[0].conditionParameters = {"__MISSING__", "7"};
  EXPECT_THAT(RenderText(document), HasSubstr("(unknown field)"));
}

}  // namespace
}  // namespace npar_host

#include "host/render/text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>
#include <sstream>

namespace npar_host {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

ResultDocument SignDocument() {
  ResultDocument document;
  document.totalCount = document.totalFreq = 10.0;
  document.fields.resize(2);
  document.fields[0].name = "drug1";
  document.fields[1].name = "drug2";
  ResultTest test;
  test.name = "RSign";
  test.type = "hypothesis_test";
  test.classification = "Related_Samples";
  test.decision = "reject";
  test.conditionKey = "R_Sign_2";
  test.conditionParameters = {"0", "1"};
  test.differences =
      ResultDistribution{{{"", "PositiveDifferences", "9"}}, {{1, 0.8}, {2, 1.3}, {1, 4.6}}};
  test.statistics = {{"", "TotalN", "10"}, {"", "ExactSig2Tailed", "0.00390625"}};
  document.tests = {test};
  return document;
}

// Six samples whose comparisons have every column.
ResultDocument ComparisonDocument(const std::vector<std::string>& categories) {
  ResultDocument document = SignDocument();
  document.fields[1].isCategorical = true;
  ResultTest& test = document.tests[0];
  test.name = "IKruskalWallis";
  test.classification = "Independent_Samples";
  test.differences.reset();
  for (ResultComparison* comparison : {&test.pairwise, &test.stepwise}) {
    comparison->present = true;
    comparison->content.columnNames = {
        "Sample1", "Sample2", "TestStatistic", "StandardError", "StandardTestStatistic",
        "Sig",     "AdjSig"};
  }
  for (std::size_t i = 0; i < categories.size(); ++i) {
    document.fields[1].categories.push_back({categories[i], ""});
    test.pairwise.order.push_back(static_cast<std::int32_t>(categories.size() - 1 - i));
    test.stepwise.values.push_back(std::to_string(i) + ".5");
    test.boxPlots.push_back({static_cast<std::int32_t>(i),
                             "12345.6789",
                             {"-1.23456e+100", "1", "2", "3", "1e+100"},
                             {{"2e+100", "7", ""}}});
  }
  test.stepwise.order = test.pairwise.order;
  test.pairwise.content.rows = {
      {"0", "1", "-12345.6789", "12345.6789", "-2.3456789", "0.0123456", "0.0456"},
      {"1", "2", "-12345.6789", "12345.6789", "-2.3456789", "0.00000123", "0.123456"}};
  test.stepwise.content.rows = {{"1", "2", "7.25", "", "", "0.25", "0.5"},
                                {"0", "0", "__MISSING__", "", "", "__MISSING__", "__MISSING__"}};
  return document;
}

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

TEST(TextReportTest, ShowsHypothesisDecisionAndFigures) {
  EXPECT_EQ(RenderText(SignDocument()), R"(Nonparametric tests
===================
10 records; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

1. Sign test: drug1, drug2
--------------------------
  The median of the differences drug2 - drug1 is 0.
  Reject the null hypothesis at the level 0.05: p = .004 (exact, 2-sided).

  Positive differences             9
  Total N                         10
  Exact significance (2-sided)  .004

  Differences  0.8 [█ ▃] 4.6
)");
}

TEST(TextReportTest, ComparisonsNameTheirSamplesAndMarkTheSignificantOnes) {
  const std::string text = RenderText(ComparisonDocument({"Alpha", "Beta", "Gamma"}));
  EXPECT_THAT(text, HasSubstr(R"(
  Pairwise comparisons: significances are two-sided, adjusted ones after
  Bonferroni
  Sample 1  Sample 2  Statistic     Std.       Std.    Sig.  Bonferroni
                                   error  statistic                sig.
  Gamma     Beta       -12345.7  12345.7   -2.34568    .012       .046*
  Beta      Alpha      -12345.7  12345.7   -2.34568  < .001        .123
  * significance after Bonferroni below 0.05
)"));
  EXPECT_THAT(text, HasSubstr(R"(
  Homogeneous subsets: samples in one column do not differ; adjusted
  significances after Ryan, Einot and Gabriel
  Subset       1     2
  Gamma      0.5
  Beta             1.5
  Alpha            2.5
  Statistic       7.25
  Sig.            .250
  Adj. sig.       .500
)"));
}

TEST(TextReportTest, AFieldWithoutValuesHasNoFigures) {
  ResultDocument document = SignDocument();
  document.fields[0].distribution = ResultDistribution{
      {{"", "TotalN", "0"}, {"", "Min", "nan"}, {"", "Max", "nan"}, {"", "Mean", "0"}}, {}};
  EXPECT_THAT(RenderText(document), EndsWith("  " + document.fields[0].Title() + "  0\n"));
}

TEST(TextReportTest, SubsetsThatNeedBlocksRepeatOnlyTheRowsThatHaveAnEntry) {
  ResultDocument document = ComparisonDocument({"a", "b", "c", "d", "e", "f"});
  ResultTable& content = document.tests[0].stepwise.content;
  content.rows.clear();
  for (int i = 0; i < 5; ++i) {
    content.rows.AddRow({std::to_string(i), std::to_string(i + 1), "12345.5"});
  }
  EXPECT_THAT(RenderText(document, {.width = 40}), HasSubstr(R"(
  Subset           1        2        3
  f              0.5
  e              1.5      1.5
  d                       2.5      2.5
  c                                3.5
  Statistic  12345.5  12345.5  12345.5

  Subset           4        5
  c              3.5
  b              4.5      4.5
  a                       5.5
  Statistic  12345.5  12345.5
)"));
}

TEST(TextReportTest, EachBlockOfPairsNamesBothSamples) {
  EXPECT_THAT(RenderText(ComparisonDocument({"a", "b", "c"}), {.width = 50}), HasSubstr(R"(
  Sample 1  Sample 2       Std.    Sig.
                      statistic
  c         b          -2.34568    .012
  b         a          -2.34568  < .001

  Sample 1  Sample 2  Bonferroni
                            sig.
  c         b              .046*
)"));
}

struct HostileName {
  const char* catches;
  std::string name;
  const char* shown;
};

const HostileName kHostileNames[] = {
    {"escape sequences", "a\x1b[31m", R"(a\x1b[31m)"},
    {"line breaks and tabs", "a\nb\tc\r", R"(a\x0ab\x09c\x0d)"},
    {"DEL", "a\x7f", R"(a\x7f)"},
    {"one-byte control sequences of C1", "a\xc2\x9b", R"(a\u009b)"},
    {"direction of the line", "a\xe2\x80\xae", R"(a\u202e)"},
    {"invisible byte order mark",
     "\xef\xbb\xbf"
     "a",
     R"(\ufeffa)"},
    {"a stray byte", "a\xff", R"(a\xff)"},
    {"an overlong escape", "a\xc0\x9b", R"(a\xc0\x9b)"},
    {"a cut character", "a\xe2\x82", R"(a\xe2\x82)"},
    {"what looks like a place for a title", "{0}", "{0}"},
    {"harmless", "\xc3\xa9 \xe5\x90\x8d", "\xc3\xa9 \xe5\x90\x8d"},
};

TEST(TextReportTest, NamesCannotControlTheTerminal) {
  for (const HostileName& row : kHostileNames) {
    SCOPED_TRACE(row.catches);
    ResultDocument document = ComparisonDocument({row.name, "b", "c"});
    document.fields[0].name = row.name;
    document.tests[0].unknownValues = {row.name};
    const std::string text = RenderText(document);
    EXPECT_THAT(text, HasSubstr("The distribution of " + std::string(row.shown) + " is"));
    EXPECT_THAT(text, HasSubstr("\n  " + std::string(row.shown)));
    EXPECT_THAT(text, HasSubstr("no category: " + std::string(row.shown)));
    for (const char c : text) EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20);
  }
}

TEST(TextReportTest, AsciiIsAsciiAlone) {
  ResultDocument document = ComparisonDocument({"\xc3\xa9", "b", "c"});
  document.tests[0].name = "IMedian";  // Cramer's V
  document.tests[0].statistics = {{"", "TotalN", "64"}, {"", "TestStatistic", "16"}};
  document.tests[0].messages = {{220003, "error", {"\xc3\xa9"}, {}}};
  document.tests.push_back(SignDocument().tests[0]);
  const std::string text = RenderText(document, {80, true, false});
  for (const char c : text) ASSERT_LT(static_cast<unsigned char>(c), 0x80);
  EXPECT_THAT(text, HasSubstr(R"(\u00e9)"));
  EXPECT_THAT(text, HasSubstr("0.8 [@ -] 4.6"));
}

TEST(TextReportTest, ColourIsOnlyWhereItIsAskedFor) {
  EXPECT_THAT(RenderText(SignDocument()), Not(HasSubstr("\x1b")));
  EXPECT_THAT(RenderText(SignDocument(), {80, false, true}),
              HasSubstr("\x1b[1mReject the null hypothesis"));
}

TEST(TextReportTest, NoLineIsWiderThanThePage) {
  const std::string wide = "\xe5\x90\x8d\xe5\x89\x8d";  // two characters, four columns
  std::string wideName;
  for (int i = 0; i < 200; ++i) wideName += wide;
  const std::vector<std::string> names[] = {
      {"a", "b", "c"},
      {"a rather long name of a category", "another one of that kind", "and a third one"},
      {std::string(10000, 'x'), std::string(10000, 'y'), wideName},
      {"many words " + std::string(500, ' ') + "of it", "", " "},
  };
  for (const auto& categories : names) {
    for (const std::size_t width : {40u, 80u, 120u}) {
      for (const bool ascii : {false, true}) {
        ResultDocument document = ComparisonDocument(categories);
        document.fields[0].name = document.fields[1].name = categories[0];
        document.tests.push_back(SignDocument().tests[0]);
        for (const std::string& line : Lines(RenderText(document, {width, ascii, false}))) {
          EXPECT_LE(DisplayWidth(line), width) << line;
        }
      }
    }
  }
}

// In time of the processor: sixteen times the name takes sixteen times as long, not 256 times.
TEST(TextReportTest, LongNameTakesNoMoreThanItsLength) {
  const auto timeOf = [](std::size_t length) {
    const std::string name(length, 'x');
    const std::clock_t start = std::clock();
    EXPECT_EQ(WrapText(name, 80).size(), length / 80 + 1);
    return static_cast<double>(std::clock() - start);
  };
  constexpr std::size_t kLength = std::size_t{1} << 17;
  EXPECT_LT(timeOf(16 * kLength), 80 * timeOf(kLength));
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

TEST(TextReportTest, OutliersAreNamedByTheirCase) {
  ResultDocument document = ComparisonDocument({"a", "b", "c"});
  EXPECT_THAT(RenderText(document), HasSubstr("Outliers of a: 2e+100 (case 7)"));
  NameCases(document, [](double) { return std::string("Zoe\x1b"); });
  EXPECT_THAT(RenderText(document), HasSubstr("Outliers of a: 2e+100 (case Zoe\\x1b)"));
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

TEST(TextReportTest, AnIndexThatNamesNothingIsNoCrash) {
  ResultDocument document = ComparisonDocument({"a", "b", "c"});
  ResultTest& test = document.tests[0];
  test.conditionParameters = {"__MISSING__", "7"};
  test.stepwise.content.rows = {{"2", "9", "1"}, {"-1", "0", "1"}, {"nan", "1"}, {"1"}};
  test.pairwise.order = {-5, 99};
  test.boxPlots[0].code = 99;
  EXPECT_THAT(RenderText(document), HasSubstr("(unknown field)"));
}

}  // namespace
}  // namespace npar_host

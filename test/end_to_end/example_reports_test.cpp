#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "host/render/effect_size.h"
#include "host/render/result_model.h"
#include "host/render/text.h"
#include "host/render/wording.h"
#include "support/json_schema.h"
#include "support/process.h"

namespace {

constexpr const char* kProgram = NPAR_BUILD_DIR "/bin/npar";

std::string Analyse(std::vector<std::string> arguments) {
  arguments.insert(arguments.begin(), {kProgram, "analyse"});
  const ProcessResult run = RunProcess(arguments);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  return run.out;
}

TEST(TextReportOfExamples, APairIsShownWithItsDifferences) {
  EXPECT_EQ(Analyse({"examples/sleep.csv", "--related", "drug1,drug2", "--case-id", "patient",
                     "--test", "sign", "--test", "wilcoxon-pairs"}),
            R"(Nonparametric tests
===================
10 records; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

Test                                      Fields        Significance  Decision
1. Sign test                              drug1, drug2      p = .004  reject
2. Wilcoxon matched-pairs signed-rank     drug1, drug2      p = .008  reject
test

1. Sign test
------------
  The median of the differences drug2 - drug1 is 0.
  Reject the null hypothesis at the level 0.05: p = .004 (exact, 2-sided).

  Negative differences                        0
  Ties                                        1
  Positive differences                        9
  Total N                                    10
  Test statistic                              9
  Standard error                            1.5
  Standardised test statistic           2.66667
  Asymptotic significance (2-sided)  0.00766076  p = .008
  Exact significance (2-sided)       0.00390625  p = .004
  Effect size r                        0.843274

  Differences  0 [▂▄█▂▂   ▂] 4.6

  note 220916: the exact significance is given too, as there are few cases

2. Wilcoxon matched-pairs signed-rank test
------------------------------------------
  The differences drug2 - drug1 are symmetric about 0.
  Reject the null hypothesis at the level 0.05: p = .008 (asymptotic, 2-sided).

  Negative differences                        0
  Ties                                        1
  Positive differences                        9
  Total N                                    10
  Test statistic                             45
  Standard error                        8.43356
  Standardised test statistic           2.66791
  Asymptotic significance (2-sided)  0.00763244  p = .008
  Rank-biserial correlation (r)               1

  Differences  0 [▂▄█▂▂   ▂] 4.6

Fields
------
  Field   N  Minimum  Maximum  Mean  Std. dev.  Distribution
  drug1  10     -1.6      3.7  0.75    1.78901  █ █▄█ ▄  █
  drug2  10     -0.1      5.5  2.33    2.00225  █▄▄█  ▄ █▄
)");
}

TEST(TextReportOfExamples, GroupsAreShownWithBoxPlotsAndSubsets) {
  EXPECT_EQ(Analyse({"examples/insect_sprays.csv", "--independent", "count", "--by", "spray",
                     "--test", "kruskal-wallis:compare=stepwise"}),
            R"(Nonparametric tests
===================
72 records; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

1. Kruskal-Wallis one-way analysis of variance by ranks
-------------------------------------------------------
  The distribution of count is the same in all groups of spray.
  Reject the null hypothesis at the level 0.05: p < .001 (asymptotic, 2-sided).

  Test statistic                         54.6913
  Degrees of freedom                           5
  Asymptotic significance (2-sided)  1.51084e-10  p < .001
  Epsilon squared (ε²)                  0.770301

  Group  Mean rank  Lower whisker  25 %  Median  75 %  Upper whisker
  A        52.1667              7    11      14  18.5             23
  B        54.8333              7    12    16.5    18             21
  C        11.4583              0     1     1.5     3              4
  D        25.5833              2   3.5       5     5              6
  E        19.3333              1   2.5       3     5              6
  F         55.625              9    12      15    23             26

  A                  ├────────▒▒▒▒▒▒▒█▒▒▒▒▒▒▒▒▒▒──────────┤
  B                  ├──────────▒▒▒▒▒▒▒▒▒▒▒█▒▒▒──────┤
  C  ├─▒█▒▒▒──┤      o
  D      ├───▒▒▒█─┤             o
  E    ├──▒█▒▒▒▒▒─┤
  F                      ├──────▒▒▒▒▒▒▒█▒▒▒▒▒▒▒▒▒▒▒▒▒▒▒▒▒▒▒─────┤
     0                                                         26
  Outliers of C: 7
  Outliers of D: 12

  Homogeneous subsets: samples in one column do not differ significantly
  Subset           1        2         3
  C          11.4583
  E                   19.3333
  D                   25.5833
  A                             52.1667
  B                             54.8333
  F                              55.625
  Statistic           1.92538  0.682921
  Sig.                   .165      .711
  Adj. sig.              .418      .916

  note 222111: the p-value is asymptotic and the statistic corrected for ties
  warning 220013: a sample (C) is in no homogeneous subset with another one

Fields
------
  Field   N  Minimum  Maximum  Mean  Std. dev.  Distribution
  count  72        0       26   9.5    7.20329  ▆▃▆█▃▃▁▃▃▂▆▂▂▃▁▂▃▁▁▂

  spray  Count
  A         12  ██████████████████████████████
  B         12  ██████████████████████████████
  C         12  ██████████████████████████████
  D         12  ██████████████████████████████
  E         12  ██████████████████████████████
  F         12  ██████████████████████████████
)");
}

TEST(TextReportOfExamples, InAsciiGroupsHaveHistogramsToo) {
  EXPECT_EQ(Analyse({"examples/tooth_growth.csv", "--independent", "len", "--by", "supp", "--test",
                     "mann-whitney", "--ascii"}),
            R"(Nonparametric tests
===================
60 records; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

1. Mann-Whitney U test
----------------------
  The distribution of len is the same in both groups of supp.
  Retain the null hypothesis at the level 0.05: p = .063 (asymptotic, 2-sided).

  Total N                                   60
  Mann-Whitney U                         324.5
  Wilcoxon W                             789.5
  Test statistic                         324.5
  Standard error                       67.6124
  Standardised test statistic         -1.85617
  Asymptotic significance (2-sided)  0.0634297  p = .063
  Rank-biserial correlation (r)      -0.278889

  Group   N  Mean rank  Distribution
  OJ     30    34.6833    :*  -:::--==@-::
  VC     30    26.3167  =*::* ==@= :=:=: : =

Fields
------
  Field   N  Minimum  Maximum     Mean  Std. dev.  Distribution
  len    60      4.2     33.9  18.8133    7.64932  :-:+- =-+-:-+=@-.: :

  supp  Count
  OJ       30  ##############################
  VC       30  ##############################
)");
}

TEST(TextReportOfExamples, CategoriesAreShownWithTheirCounts) {
  EXPECT_EQ(Analyse({"examples/titanic.csv", "--one-sample", "sex", "--weight", "freq", "--test",
                     "binomial:intervals=clopper-pearson|jeffreys"}),
            R"(Nonparametric tests
===================
24 records with a total weight of 2201, 8 dropped for a missing weight or one
below 1; missing values are excluded test by test. Significance level 0.05,
confidence level 0.95.

Test                               Fields  Significance  Decision
1. Binomial test                   sex         p < .001  reject
2. Confidence interval of a share  sex                   (estimate)

1. Binomial test
----------------
  The probability that sex is Male is 0.5.
  Reject the null hypothesis at the level 0.05: p < .001 (asymptotic, 2-sided).

  Total N                                    2201
  Test statistic                             1731
  Standard error                          23.4574
  Standardised test statistic             26.8572
  Asymptotic significance (2-sided)  6.95232e-159  p < .001
  Effect size r                          0.572467

  Frequencies
                First class %  Second class %
  Observed            78.6461         21.3539
  Hypothesised             50              50

2. Confidence interval of a share
---------------------------------
  Estimated: the share of records with sex Male.

  Clopper-Pearson  0.786461
    Lower limit    0.768737
    Upper limit    0.803418
  Jeffreys         0.786461
    Lower limit    0.768971
    Upper limit    0.803198

Fields
------
  sex     Count
  Female    470  ████████
  Male     1731  ██████████████████████████████
)");
}

// A parameter document of examples/ with its data and model, as examples/README.md lists them.
struct Example {
  std::string parameters, data, model;
};

std::vector<Example> Examples() {
  std::vector<Example> examples;
  std::istringstream page(FileContent("examples/README.md"));
  const std::regex row(R"(\| ([a-z_]+\.xml) \| ([a-z_]+\.csv) \| ?([a-z_.]*) ?\|)");
  std::smatch cells;
  for (std::string line; std::getline(page, line);) {
    if (std::regex_match(line, cells, row)) examples.push_back({cells[1], cells[2], cells[3]});
  }
  return examples;
}

std::string ResultOf(const Example& example) {
  std::vector<std::string> command = {kProgram,   "run",
                                      "--params", "examples/" + example.parameters,
                                      "--data",   "examples/" + example.data};
  if (!example.model.empty()) {
    command.insert(command.end(), {"--model", "examples/" + example.model});
  }
  const ProcessResult run = RunProcess(command);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  return run.out;
}

// Numbers that stand alone, not inside a name such as drug1.
std::vector<std::string> NumbersOf(const std::string& text) {
  static const std::regex number(R"((^|[^\w.-])(-?\d*\.?\d+(e[+-]?\d+)?)(?![\w-]))");
  std::vector<std::string> numbers;
  for (std::sregex_iterator it(text.begin(), text.end(), number), end; it != end; ++it) {
    numbers.push_back((*it)[2]);
  }
  return numbers;
}

TEST(ExampleReportsTest, EveryNumberOfATextReportIsInTheDocument) {
  using namespace npar_host;
  const std::vector<Example> examples = Examples();
  ASSERT_GE(examples.size(), 20u);
  for (const Example& example : examples) {
    SCOPED_TRACE(example.parameters);
    const std::string result = ResultOf(example);
    const ResultDocument document = ReadResultDocument(result, "result");
    // Columns "25 %" and "75 %", the numbers of tests and subsets.
    std::set<std::string> known = {"25", "75", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    for (const std::string& text : NumbersOf(std::regex_replace(result, std::regex(";"), " ; "))) {
      known.insert({text, FigureText(text)});  // messages have theirs unrounded
      std::array<char, 32> digits{};
      std::snprintf(digits.data(), digits.size(), "%.3f", std::strtod(text.c_str(), nullptr));
      known.insert(digits.data() + 1);  // "p = .004"
    }
    for (const ResultTest& test : document.tests) {
      if (const auto effect = FindEffectSize(document, test)) {
        std::array<char, 32> digits{};
        std::snprintf(digits.data(), digits.size(), "%.17g", effect->value);
        known.insert(FigureText(digits.data()));
      }
    }
    for (const char* words : {".001", ".999", ".05"}) known.insert(words);
    for (const std::string& number : NumbersOf(RenderText(document))) {
      EXPECT_TRUE(known.contains(number)) << number;
    }
  }
}

TEST(ExampleReportsTest, NoLineIsLongerThan80Columns) {
  using namespace npar_host;
  for (const Example& example : Examples()) {
    SCOPED_TRACE(example.parameters);
    const ResultDocument document = ReadResultDocument(ResultOf(example), "result");
    std::istringstream text(RenderText(document));
    for (std::string line; std::getline(text, line);) EXPECT_LE(DisplayWidth(line), 80u) << line;
  }
}

TEST(ExampleReportsTest, JsonFollowsItsSchemaAndHasTheFiguresOfTheDocument) {
  using namespace npar_host;
  using Json = nlohmann::json;
  const Json schema = Json::parse(std::ifstream("schema/report.schema.json"));
  for (const Example& example : Examples()) {
    SCOPED_TRACE(example.parameters);
    const std::string result = ResultOf(example);
    const ProcessResult run = RunProcess({kProgram, "report", "-", "--as", "json"}, result);
    EXPECT_EQ(run.exitCode, 0) << run.err;
    const Json report = Json::parse(run.out);
    EXPECT_EQ(SchemaBreach(report, schema), "");
    const ResultDocument document = ReadResultDocument(result, "result");
    ASSERT_EQ(report["tests"].size(), document.tests.size());
    for (std::size_t i = 0; i < document.tests.size(); ++i) {
      for (const ResultStatistic& figure : document.tests[i].statistics) {
        std::string key = figure.name;
        key[0] = static_cast<char>(std::tolower(key[0]));
        std::string group = figure.group;
        if (!group.empty()) group[0] = static_cast<char>(std::tolower(group[0]));
        const Json& figures = report["tests"][i]["statistics"];
        const Json& value = group.empty() ? figures[key] : figures[group][key];
        const auto number = FigureNumber(figure.text);
        if (number && std::isfinite(*number)) {
          EXPECT_EQ(value.get<double>(), *number) << key;
        } else {
          EXPECT_TRUE(value.is_null()) << key;
        }
      }
    }
  }
}

}  // namespace

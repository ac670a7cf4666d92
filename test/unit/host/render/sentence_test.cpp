#include "host/render/sentence.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/render/csv.h"
#include "host/render/headline.h"
#include "host/render/manuscript.h"
#include "host/render/reading_notes.h"
#include "support/process.h"

namespace npar_host {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

ResultDocument Reference(const std::string& name) {
  return ReadResultDocument(FileContent("test/support/references/results/" + name + ".xml"), name);
}

const ResultTest& Find(const ResultDocument& document, std::string_view name) {
  for (const ResultTest& test : document.tests) {
    if (test.name == name) return test;
  }
  ADD_FAILURE() << "no test " << name;
  return document.tests.front();
}

struct SentenceCase {
  const char* document;
  const char* test;
  const char* sentence;
};

// The figures are those of the documents, rounded by hand.
TEST(SentenceTest, FindingsEstimatesAndExactValuesReadAsAResultsSection) {
  const SentenceCase cases[] = {
      {"sleep_pairs", "RSign",
       "Sign test: drug1 and drug2 differed significantly, S = 9, N = 10, p = .004 (exact), r = "
       ".84."},
      {"insect_sprays_pairwise", "IKruskalWallis",
       "Kruskal-Wallis one-way analysis of variance by ranks: count differed significantly between "
       "the groups of spray, H(5) = 54.69, N = 72, p < .001, \u03b5\u00b2 = .77."},
      {"titanic_expected", "OChiSquare",
       "Chi-square test of proportions: the proportions of class differed significantly from the "
       "hypothesised ones, \u03c7\u00b2(3) = 152.88, N = 1495, p < .001, Cohen's w = 0.32."},
      {"tooth_growth_supp", "IMannWhitneyU",
       "Mann-Whitney U test: len did not differ significantly between the groups of supp, U = "
       "324.5, n = 30 and 30, p = .063, rank-biserial r = -.28."},
      {"sleep_pairs", "RHodgesLehmannEstimatePairs",
       "Hodges-Lehmann estimate of the median difference of drug1, drug2: 1.30, 95 % CI [0.90, "
       "2.70]."},
  };
  for (const SentenceCase& row : cases) {
    SCOPED_TRACE(row.test);
    const ResultDocument document = Reference(row.document);
    EXPECT_EQ(Sentence(document, Find(document, row.test)), row.sentence);
  }
}

TEST(SentenceTest, AFailedTestSaysSo) {
  ResultDocument document = Reference("sleep_pairs");
  document.tests[0].decision = "unknown";
  EXPECT_THAT(Sentence(document, document.tests[0]), HasSubstr("could not be computed."));
}

TEST(HeadlineTest, EveryTestOfTheReferencesHasAStatisticOrIsAnEstimate) {
  for (const char* name : {"approval", "discoveries", "insect_sprays_pairwise", "sleep_pairs",
                           "rounding_times_stepwise", "titanic_expected", "tooth_growth_supp"}) {
    const ResultDocument document = Reference(name);
    for (const ResultTest& test : document.tests) {
      EXPECT_EQ(StatisticText(FindHeadline(document, test)).empty(), test.decision.empty())
          << test.name;
    }
  }
}

TEST(HeadlineTest, TitlesTellDistributionsApartAndNameWhatCounts) {
  ResultDocument counts = Reference("discoveries");
  for (ResultTest& test : counts.tests) {
    if (test.name != "OKolmogorovSmirnov") continue;
    EXPECT_EQ(TestHeading(counts, test),
              "Kolmogorov-Smirnov test against the Poisson: discoveries");
    EXPECT_EQ(ShortTitle(test), "Kolmogorov-Smirnov, poisson");
    test.conditionKey = "Normal_Discoveries";
    EXPECT_THAT(TestHeading(counts, test), HasSubstr("against the normal"));
  }
  const ResultDocument answers = Reference("approval");
  EXPECT_THAT(TestHeading(answers, Find(answers, "RMcNemar")), HasSubstr("(success: "));
}

TEST(ReadingNotesTest, SayWhatTheDataShow) {
  // Quartile distances from 1.5 to 8; groups of 30 whose bins spread alike; mean and standard
  // deviation of the field itself.
  const ResultDocument sprays = Reference("insect_sprays_pairwise");
  EXPECT_THAT(ReadingNotes(sprays, sprays.tests[0]), ElementsAre(HasSubstr("test of medians")));
  ResultDocument teeth = Reference("tooth_growth_supp");
  EXPECT_THAT(ReadingNotes(teeth, teeth.tests[0]), IsEmpty());
  for (ResultStatistic& figure : teeth.tests[0].groups[1].figures) {
    if (figure.name == "N") figure.text = "4";
  }
  EXPECT_THAT(ReadingNotes(teeth, teeth.tests[0]), ElementsAre(HasSubstr("VC has 4")));
  ResultDocument discoveries = Reference("discoveries");
  for (ResultTest& test : discoveries.tests) {
    if (test.name != "OKolmogorovSmirnov") continue;
    const std::size_t field = test.ConditionFields(0, discoveries.fields.size()).at(0);
    for (const ResultStatistic& figure : discoveries.fields[field].distribution->figures) {
      if (figure.name == "Mean") test.conditionParameters.at(1) = figure.text;
    }
    EXPECT_THAT(ReadingNotes(discoveries, test), ElementsAre(HasSubstr("same data")));
    test.conditionParameters.at(1) = "1234.5";
    EXPECT_THAT(ReadingNotes(discoveries, test), IsEmpty());
  }
}

TEST(ManuscriptTest, NamesCannotLeaveTheirCells) {
  ResultDocument document = Reference("sleep_pairs");
  for (ResultField& field : document.fields) {
    if (field.name == "drug1") field.name = field.label = "a|b_c&d,\"e\"%";
  }
  EXPECT_THAT(RenderMarkdown(document),
              HasSubstr("| a\\|b\\_c&amp;d,\"e\"%, drug2 | 10 | S = 9 | .004 |"));
  EXPECT_THAT(RenderLatex(document),
              HasSubstr("Sign & a|b\\_c\\&d,\"e\"\\%, drug2 & 10 & S = 9 & .004 &"));
  EXPECT_THAT(
      RenderCsv(document),
      HasSubstr(
          "Sign test,\"a|b_c&d,\"\"e\"\"%, drug2\",,,10,S,9,,0.00390625,\"exact, 2-sided\","));
}

TEST(ManuscriptTest, CsvHasARowForEachPairAndInterval) {
  const ResultDocument sprays = Reference("insect_sprays_pairwise");
  const std::string csv = RenderCsv(sprays);
  const auto& pairs = Find(sprays, "IKruskalWallis").pairwise.content.rows;
  EXPECT_EQ(pairs.size(), 15U);
  std::size_t pairsOfAll = 0;
  for (const ResultTest& test : sprays.tests) pairsOfAll += test.pairwise.content.rows.size();
  EXPECT_EQ(std::ranges::count(csv, '\n'),
            static_cast<std::ptrdiff_t>(1 + sprays.tests.size() + pairsOfAll));
  // A and C: z and the significances as the document has them.
  EXPECT_THAT(csv, HasSubstr(",count by spray,A,C,,z,4.77407760665459,,1.80532760055089e-06,"
                             "\"asymptotic, 2-sided\",2.70799140082633e-05,Bonferroni,"));
}

}  // namespace
}  // namespace npar_host

#include "host/render/html.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <pugixml.hpp>
#include <set>
#include <sstream>

#include "host/data/number.h"
#include "host/render/adjustment.h"
#include "host/render/effect_size.h"
#include "host/render/html/drawing.h"
#include "host/render/wording.h"
#include "support/process.h"

namespace npar_host {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

// Results of real data that between them hold every kind of table.
constexpr const char* kDocuments[] = {
    "approval",    "discoveries",      "insect_sprays_pairwise", "rounding_times_stepwise",
    "sleep_pairs", "titanic_expected", "tooth_growth_supp"};

/// The text of a result document, and what it says.
std::string ReferenceText(const std::string& name) {
  return FileContent("test/support/references/results/" + name + ".xml");
}
ResultDocument Reference(const std::string& name) {
  return ReadResultDocument(ReferenceText(name), name);
}

struct Page {
  explicit Page(const ResultDocument& document) : text(RenderHtml(document)) {
    const auto parsed = xml.load_string(text.c_str(), pugi::parse_full);
    EXPECT_TRUE(parsed) << parsed.description() << " at "
                        << text.substr(static_cast<std::size_t>(parsed.offset), 200);
  }

  [[nodiscard]] std::size_t Count(const char* path) const { return xml.select_nodes(path).size(); }

  std::string text;
  pugi::xml_document xml;
};

void AddNumbers(std::set<std::string>& numbers, const std::string& text) {
  std::istringstream cells(text);
  for (std::string cell; std::getline(cells, cell, ';');) {
    if (FigureNumber(cell)) numbers.insert(cell);
  }
}

// All numbers of the document below a node, except for codes and indices.
std::set<std::string> NumbersOf(pugi::xml_node root) {
  std::set<std::string> numbers;
  for (const auto& found : root.select_nodes(
           ".//Attribute[not(@name='GroupIndex' or @name='GroupCount' or @name='GroupFieldIndex' "
           "or ancestor::*[@name='Condition' or @name='WarningMessages' or "
           "@name='CategoryFieldsComparison'])]")) {
    AddNumbers(numbers, found.node().attribute("value").as_string());
  }
  // The first two columns of comparisons are positions, their orders are codes; so are the values
  // of a categorical field.
  for (const auto& found : root.select_nodes(
           ".//SimpleTable[not(parent::*[@name='PairwiseResult' or @name='StepwiseResult'])]"
           "/Row[position()=1 or not(ancestor::*[@name='CategoricalDistribution'])]")) {
    AddNumbers(numbers, found.node().text().as_string());
  }
  for (const auto& found :
       root.select_nodes(".//SimpleTable[@name='PairwiseInfo' or @name='StepwiseInfo']/Row[2]")) {
    AddNumbers(numbers, found.node().text().as_string());
  }
  for (const auto& found :
       root.select_nodes(".//StructuredTable[@name='PairwiseResult' or @name='StepwiseResult']/"
                         "SimpleTable[@name='Content']/Row")) {
    const std::string row = found.node().text().as_string();
    AddNumbers(numbers, row.substr(row.find(';', row.find(';') + 1) + 1));
  }
  return numbers;
}

TEST(HtmlReportTest, HoldsEachNumberOfTheDocumentAndNoOther) {
  for (const char* name : kDocuments) {
    SCOPED_TRACE(name);
    const std::string text = ReferenceText(name);
    pugi::xml_document xml;
    ASSERT_TRUE(xml.load_string(text.c_str()));
    const ResultDocument document = Reference(name);
    const Page page(document);
    std::set<std::string> shown;
    for (const auto& found : page.xml.select_nodes("//data")) {
      shown.insert(found.node().attribute("value").as_string());
    }
    for (const auto& found : page.xml.select_nodes("//text[@class='value']")) {
      shown.insert(found.node().text().as_string());  // counts of categories stand in plots alone
    }
    std::set<std::string> numbers = NumbersOf(xml.document_element());
    for (const std::string& number : numbers) {
      EXPECT_EQ(shown.count(number), 1u) << number;
    }
    for (const char* count : {"totalCount", "totalFreq", "droppedCount", "badWeightCount"}) {
      numbers.insert(xml.select_node("//Counts").node().attribute(count).as_string());
    }
    numbers.insert({"0.05", "0.95"});
    for (const ResultTest& test : document.tests) {
      if (const auto effect = FindEffectSize(document, test)) {
        numbers.insert(NumberText(effect->value));
      }
      for (const Adjustment adjustment : {Adjustment::Holm, Adjustment::BenjaminiHochberg}) {
        for (const double p : AdjustedPairs(test.pairwise, adjustment)) {
          numbers.insert(NumberText(p));
        }
      }
    }
    for (const auto& found : page.xml.select_nodes("//data")) {
      const std::string value = found.node().attribute("value").as_string();
      EXPECT_EQ(numbers.count(value), 1u) << value;
      const std::string words = found.node().select_node(".//text()").node().value();
      EXPECT_THAT(words,
                  AnyOf(FigureText(value), testing::MatchesRegex("(p )?[<>=]? ?1?[.]?[0-9]*")));
    }
  }
}

TEST(HtmlReportTest, EveryPlotSaysInWordsWhatItShows) {
  for (const char* name : kDocuments) {
    SCOPED_TRACE(name);
    const Page page(Reference(name));
    EXPECT_GT(page.Count("//svg"), 0u);
    EXPECT_EQ(page.Count("//svg[@role='img'][string-length(title) > 10][string-length(desc) > 10]"),
              page.Count("//svg"));
    EXPECT_THAT(page.text, Not(HasSubstr("nan")));
  }
}

struct PlotCase {
  const char* document;
  const char* kind;
  std::size_t count;
};

TEST(HtmlReportTest, EachTestHasItsPlots) {
  const PlotCase cases[] = {
      {"sleep_pairs", "differences", 2},
      {"sleep_pairs", "intervals", 1},
      {"tooth_growth_supp", "mirrored", 4},
      {"tooth_growth_supp", "functions", 1},
      {"insect_sprays_pairwise", "pairwise", 2},
      {"insect_sprays_pairwise", "box-plots", 3},
      {"insect_sprays_pairwise", "frequencies", 1},
      {"approval", "cross", 2},
      {"rounding_times_stepwise", "ranks", 2},
      {"titanic_expected", "frequencies", 1},
      {"discoveries", "runs", 1},
      {"discoveries", "median", 1},
      {"discoveries", "functions", 1},
      {"discoveries", "histogram", 1},
      {"approval", "bars", 2},
  };
  for (const PlotCase& row : cases) {
    SCOPED_TRACE(std::string(row.document) + " " + row.kind);
    const Page page(Reference(row.document));
    EXPECT_EQ(page.Count(("//figure[@class='plot " + std::string(row.kind) + "']").c_str()),
              row.count);
  }
}

TEST(HtmlReportTest, TablesHaveCaptionsAndScopedHeadersAndIdsAreUnique) {
  for (const char* name : kDocuments) {
    SCOPED_TRACE(name);
    const Page page(Reference(name));
    EXPECT_EQ(page.Count("//table[caption]"), page.Count("//table"));
    EXPECT_EQ(page.Count("//th[@scope]"), page.Count("//th"));
    EXPECT_EQ(page.Count("//h1"), 1u);
    std::set<std::string> ids;
    for (const auto& found : page.xml.select_nodes("//@id")) {
      EXPECT_TRUE(ids.insert(found.attribute().value()).second) << found.attribute().value();
    }
    for (const auto& found : page.xml.select_nodes("//@href | //@aria-labelledby")) {
      const std::string reference = found.attribute().value();
      EXPECT_EQ(ids.count(reference.substr(reference.starts_with('#') ? 1 : 0)), 1u) << reference;
    }
  }
}

TEST(HtmlReportTest, SubsetsStandInColumnsInTheOrderOfTheirFirstSample) {
  const Page page(Reference("rounding_times_stepwise"));
  const auto table = page.xml.select_node("//table[starts-with(caption, 'Homogeneous')]").node();
  const auto row = table.child("tbody").first_child();
  EXPECT_STREQ(row.child("th").child_value(), "wide_angle");
  EXPECT_STREQ(row.select_node("td[1]//data").node().attribute("value").as_string(),
               "1.45454545454545");
  EXPECT_FALSE(row.select_node("td[2]//data"));
}

TEST(HtmlReportTest, ManySubsetsMakeTablesThatFitAPage) {
  ResultDocument document = Reference("rounding_times_stepwise");
  document.tests.resize(1);
  ResultComparison& stepwise = document.tests[0].stepwise;
  stepwise.order.assign(11, stepwise.order[0]);
  stepwise.values.assign(11, "1.5");
  stepwise.content.rows.clear();
  for (int i = 0; i < 10; ++i) {
    stepwise.content.rows.AddRow({std::to_string(i), std::to_string(i + 1), "1", "0.5", "0.5"});
  }
  const Page page(document);
  EXPECT_EQ(page.Count("//table[starts-with(caption, 'Homogeneous')]"), 2u);
  EXPECT_EQ(page.Count("//table[starts-with(caption, 'Homogeneous')]/thead/tr/th"), 2u + 10u);
  // The sixth sample belongs to subsets of both tables; a row without a member stands in neither.
  EXPECT_EQ(
      page.Count("//table[starts-with(caption, 'Homogeneous')]/tbody/tr[.//span[@class='member']]"),
      6u + 6u);
  EXPECT_EQ(
      page.Count(
          "//table[starts-with(caption, 'Homogeneous')]/tbody/tr[not(.//span[@class='member'])]"),
      page.Count("//table[starts-with(caption, 'Homogeneous')]/tbody/tr[@class='foot']"));
}

TEST(HtmlReportTest, PairsThatNoEyeCanTraceAreAMatrix) {
  ResultDocument document = Reference("insect_sprays_pairwise");
  EXPECT_EQ(Page(document).Count("//figure[contains(@class, 'pairwise-matrix')]"), 0u);
  document.tests.resize(1);
  ResultComparison& pairwise = document.tests[0].pairwise;
  pairwise.order.assign(15, pairwise.order[0]);
  pairwise.values.clear();
  pairwise.content.rows.clear();
  pairwise.content.columnNames = {"Sample1", "Sample2", "AdjSig"};
  for (int i = 0; i < 15; ++i) {
    pairwise.values.push_back(std::to_string((i * 7) % 15));  // in an order of its own
    for (int j = 0; j < i; ++j) {
      // Those at ranks 0 and 14, 0 and 13, 1 and 14 differ, the first two more clearly.
      const int distance = std::abs((i * 7) % 15 - (j * 7) % 15);
      const bool isLowest = i * 7 % 15 == 0 || j * 7 % 15 == 0;
      const char* p = distance < 13 ? "0.2" : isLowest ? "0.0001" : "0.02";
      pairwise.content.rows.AddRow({std::to_string(j), std::to_string(i), p});
    }
  }
  const Page page(document);
  EXPECT_EQ(page.Count("//figure[contains(@class, 'plot pairwise ')]"), 0u);
  const std::string matrix = "//figure[contains(@class, 'pairwise-matrix')]";
  EXPECT_EQ(page.Count((matrix + "//rect[@width!='14']").c_str()), 15u);
  // From the greatest down, the lowest stands in the last row: its two are neighbours, one box 44
  // wide; the other cell, one before, is 22 wide.
  const auto cells = [&](const char* shade) {
    return std::string(page.xml.select_node((matrix + "//path[@class='" + shade + "']").c_str())
                           .node()
                           .attribute("d")
                           .value());
  };
  EXPECT_EQ(cells("pair strong"), "M150 204h44v13h-44z");
  EXPECT_EQ(cells("pair plain"), "M150 190h22v13h-22z");
  EXPECT_EQ(cells("pair clear"), "");
  // Each first sample stands once above its pairs.
  EXPECT_EQ(page.Count("//details[@class='wide']//tr[@class='subheading']"), 14u);
  EXPECT_EQ(page.Count("//details[@class='wide']//tr[td]"), 105u);
  EXPECT_EQ(page.Count("//details[@class='wide']//tr[@class='differs']"), 3u);
}

// Two records of one group, two of the other and one without a value.
TEST(HtmlReportTest, ValuesAreDrawnWhereThereAreAny) {
  ResultDocument document = Reference("tooth_growth_supp");
  document.values = RecordValues{{{4.0, 6.0, NAN, 8.0, 8.0}, {0.0, 1.0, 1.0, 1.0, 0.0}}};
  const Page groups(document);
  const auto dots = [](const Page& page, const std::string& kind) {
    std::vector<std::size_t> counts;
    for (const auto& found : page.xml.select_nodes(
             ("//figure[contains(@class, '" + kind + "')]//path[@class='values']").c_str())) {
      const std::string path = found.node().attribute("d").value();
      counts.push_back(static_cast<std::size_t>(std::ranges::count(path, 'M')));
    }
    return counts;
  };
  const std::vector<std::size_t> drawn = dots(groups, "mirrored");
  ASSERT_GE(drawn.size(), 2u);
  EXPECT_EQ(drawn[0], 2u);
  EXPECT_EQ(drawn[1], 2u);
  ResultDocument pairs = Reference("sleep_pairs");
  EXPECT_EQ(Page(pairs).Count("//figure[contains(@class, 'profiles')]"), 0u);
  pairs.values = RecordValues{{{}, {1.0, 2.0, 3.0, NAN}, {2.0, 1.0, 5.0, 1.0}}};  // no patient
  const Page page(pairs);
  EXPECT_EQ(page.Count("//figure[contains(@class, 'profiles')]"), 2u);
  EXPECT_THAT(page.text,
              HasSubstr("In 2 records drug2 is above drug1, in 1 below, in 0 the same."));
  EXPECT_EQ(dots(page, "profiles"), (std::vector<std::size_t>{6, 6}));
}

TEST(HtmlReportTest, NamesThatBeginAlikeAreCutWhereTheyDiffer) {
  const auto shared = [](const std::vector<std::string>& names) { return SharedBeginning(names); };
  EXPECT_EQ(shared({"Department of A", "Department of Bee"}), 14u);
  EXPECT_EQ(shared({"north-1", "north-2"}), 6u);
  EXPECT_EQ(shared({"sample1", "sample2"}), 0u);  // within a word
  EXPECT_EQ(shared({"alone and long"}), 0u);
  Drawing drawing;
  const std::string name = "The long name of department twelve";
  drawing.Name(0, 0, "end", name, 80.0, "name", 28);
  EXPECT_THAT(drawing.Markup(), HasSubstr("<title>" + name + "</title>\u2026twelve<"));
}

struct HostileCase {
  const char* catches;
  std::string name;
};

TEST(HtmlReportTest, NamesOfAnyContentAreShownAsText) {
  const HostileCase cases[] = {
      {"an element", "<script>alert(1)</script>"},
      {"the end of an attribute", "\"><img src=x onerror=alert(1)>'"},
      {"an entity", "a&amp;b;&lt;"},
      {"the end of a style sheet", "</style><script>alert(1)</script>"},
      {"the end of a CDATA section", "]]>"},
      {"a comment", "--><!--"},
      {"control characters", std::string("\x1b[31m\x01\x7f\xc2\x85 end")},
      {"bytes that are no UTF-8", "\xff\xfe\xc3\x28 \xed\xa0\x80 \xc0\xaf"},
      {"what is no character of XML", "\xef\xbf\xbe\xef\xbf\xbf"},
      {"right to left", "\u05e9\u05dc\u05d5\u05dd \u202e txet"},
      {"a place of a sentence", "{0} {1} %0"},
      {"length", std::string(10000, 'x')},
      {"nothing", ""},
  };
  for (const HostileCase& row : cases) {
    SCOPED_TRACE(row.catches);
    for (const char* name : kDocuments) {
      ResultDocument document = Reference(name);
      for (ResultField& field : document.fields) {
        field.name = field.label = row.name;
        for (ResultCategory& category : field.categories) category.value = row.name;
      }
      document.application = document.modelId = row.name;
      for (ResultTest& test : document.tests) {
        test.unknownValues = {row.name};
        test.messages.push_back({220013, row.name, {row.name}, {{row.name, row.name}}});
        for (ResultInterval& interval : test.intervals) interval.method = row.name;
        for (ResultTable& table : test.tables) {
          for (std::string& title : table.rowNames) title = row.name;
          for (std::string& title : table.columnNames) title = row.name;
        }
        for (ResultBoxPlot& box : test.boxPlots) {
          for (ResultOutlier& outlier : box.outliers) outlier.caseId = row.name;
        }
        for (ResultStatistic& figure : test.statistics) figure.text = row.name;
      }
      const Page page(document);
      EXPECT_EQ(
          page.Count("//script[preceding::script] | //img | //*[@onerror] | //*[@src] | //iframe"),
          0u);
      EXPECT_EQ(page.Count("//style"), 1u);
      EXPECT_EQ(page.Count("//comment()"), 0u);
    }
  }
}

// The page's policy runs nothing else.
TEST(HtmlReportTest, ThePolicyNamesTheDigestOfTheScript) {
  const Page page(ResultDocument{});
  const std::string script = page.xml.select_node("//script").node().text().as_string();
  const ProcessResult digest =
      RunProcess({"/usr/bin/env", "python3", "-c",
                  "import base64, hashlib, sys; print('sha256-' + base64.b64encode(hashlib.sha256("
                  "sys.stdin.buffer.read()).digest()).decode(), end='')"},
                 script);
  EXPECT_THAT(page.text, HasSubstr("script-src '" + digest.out + "'"));
  EXPECT_EQ(script.find_first_of("<&"), std::string::npos);
}

TEST(HtmlReportTest, NamesThatTurnTextAreIsolated) {
  ResultDocument document = Reference("sleep_pairs");
  document.fields[1].name = "\u05e9\u05dc\u05d5\u05dd";
  EXPECT_THAT(RenderHtml(document),
              HasSubstr("drug2 - \u2068\u05e9\u05dc\u05d5\u05dd\u2069 is 0."));
}

TEST(HtmlReportTest, LongNamesAreShortenedAndToldInFullOnce) {
  ResultDocument document = Reference("sleep_pairs");
  const auto count = [&document](const std::string& part) {
    const std::string page = RenderHtml(document);
    std::size_t found = 0;
    for (auto at = page.find(part); at != std::string::npos; at = page.find(part, at + 1)) ++found;
    return found;
  };
  document.fields[1].name = std::string(80, 'x');
  EXPECT_GT(count(std::string(80, 'x')), 2u);
  EXPECT_EQ(count("Names in full"), 0u);
  document.fields[1].name = std::string(81, 'x');
  EXPECT_EQ(count(std::string(81, 'x')), 1u);
  EXPECT_GT(count(std::string(80, 'x') + "\u2026"), 2u);
}

TEST(HtmlReportTest, EmptyAndDegenerateDocumentsArePages) {
  EXPECT_THAT(Page(ResultDocument{}).text, HasSubstr("No test was run."));
  ResultDocument document;
  document.tests.resize(3);
  document.tests[0].name = "RSign";
  document.tests[0].decision = "unknown";
  document.tests[0].messages = {{220003, "error", {}, {}}};
  document.tests[1].name = "IKruskalWallis";
  document.tests[1].boxPlots.resize(2);  // groups without values
  document.tests[1].pairwise.present = true;
  document.tests[1].pairwise.order = {0, 1};
  document.tests[1].pairwise.values = {"nan", "inf"};
  document.tests[1].pairwise.content = {"Content",
                                        {},
                                        {"Sample1", "Sample2", "AdjSig"},
                                        {{"0", "9", "0.01"}, {"0"}, {"0", "1", "0.01"}}};
  document.tests[2].name = "RFriedmansTwoWayByRanks";
  document.tests[2].classification = "Related_Samples";
  document.tests[2].groups = {{{7}, {{"", "MeanOfRank", "inf"}}, {{1e300, -1e300}, {0.0, 1e300}}}};
  const Page page(document);
  EXPECT_THAT(page.text, HasSubstr("No decision"));
  EXPECT_EQ(page.Count("//*[@x = 'nan' or @x = 'inf' or @cx = 'nan' or @cy = 'nan']"), 0u);
}

}  // namespace
}  // namespace npar_host

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "catalogue/catalogue.h"
#include "host/data/csv.h"
#include "host/loader/analysis_run.h"
#include "host/request/test_request.h"
#include "support/algorithm_element.h"
#include "support/parameters_text.h"
#include "support/schema.h"

namespace {

using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

constexpr const char* kProgram = NPAR_BUILD_DIR "/bin/npar";
constexpr const char* kComponent = NPAR_BUILD_DIR "/lib/libnpar.so";
constexpr const char* kSleep = "examples/sleep.csv";

ProcessResult RunNpar(std::vector<std::string> arguments, const std::string& input = {}) {
  arguments.insert(arguments.begin(), kProgram);
  return RunProcess(arguments, input);
}

// For calls from another folder.
std::string AbsoluteProgram() { return std::filesystem::absolute(kProgram).string(); }

std::string PairParameters(const std::string& second, const std::string& rest) {
  return R"(<Parameters><Parameter name="relatedVariables"><ListValue><Value value="drug1"/>
<Value value=")" +
         second + R"("/></ListValue></Parameter>)" + rest + "</Parameters>";
}

const std::string kSignTest =
    R"(<Parameter name="isAutomaticallyRelated" value="false"/><Parameter name="RSign">
<StructuredValue><Attribute name="isSelected" value="true"/></StructuredValue></Parameter>)";

class CommandLineTest : public testing::Test {
 protected:
  TemporaryFolder folder;
};

TEST_F(CommandLineTest, RunWritesAValidResultDocument) {
  const std::string params = folder.Write("params.xml", PairParameters("drug2", kSignTest));
  const std::string out = folder.Path("result.xml");
  const ProcessResult run = RunNpar({"run", "--params", params, "--data", kSleep, "--out", out});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, IsEmpty());
  EXPECT_THAT(run.err, IsEmpty());
  EXPECT_THAT(FileContent(out), HasSubstr(R"(<Algorithm name="RSign")"));
  EXPECT_TRUE(IsValid(FileContent(out), "statxml-7.0.xsd"));
  EXPECT_THAT(folder.Names(), ElementsAre("params.xml", "result.xml"));
}

TEST_F(CommandLineTest, RunReadsDataFromStandardInputAndWritesToStandardOutput) {
  const std::string params = folder.Write("params.xml", PairParameters("drug2", kSignTest));
  const ProcessResult run =
      RunNpar({"run", "--params", params, "--data", "-"}, FileContent(kSleep));
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr(R"(<Algorithm name="RSign")"));
}

TEST_F(CommandLineTest, AnalysePrintsTheReportAndKeepsDocumentsThatRunTakes) {
  const ProcessResult analysis =
      RunNpar({"analyse", kSleep, "--related", "drug1,drug2", "--test", "sign", "--case-id",
               "patient", "--keep-documents", folder.Path("kept"), "--out", folder.Path("a.xml")});
  EXPECT_EQ(analysis.exitCode, 0) << analysis.err;
  EXPECT_THAT(analysis.out,
              AllOf(HasSubstr("1. Sign test: drug1, drug2"),
                    HasSubstr("Reject the null hypothesis at the level 0.05: p = .004")));
  EXPECT_TRUE(IsValid(FileContent(folder.Path("kept/params.xml")), "parameters.xsd"));
  EXPECT_TRUE(IsValid(FileContent(folder.Path("kept/model.xml")), "datamodel.xsd"));
  EXPECT_TRUE(IsValid(FileContent(folder.Path("a.xml")), "statxml-7.0.xsd"));

  const ProcessResult run =
      RunNpar({"run", "--params", folder.Path("kept/params.xml"), "--model",
               folder.Path("kept/model.xml"), "--data", kSleep, "--out", folder.Path("b.xml")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  // Only the number of the run differs.
  const std::regex identifier("modelID=\"[0-9]+\"");
  EXPECT_EQ(std::regex_replace(FileContent(folder.Path("a.xml")), identifier, ""),
            std::regex_replace(FileContent(folder.Path("b.xml")), identifier, ""));

  const ProcessResult report = RunNpar({"report", folder.Path("a.xml"), "--as", "text"});
  EXPECT_EQ(report.exitCode, 0) << report.err;
  EXPECT_EQ(report.out, analysis.out);
}

TEST_F(CommandLineTest, AnalyseAsksForExtendedFiguresUnlessItIsToldNotTo) {
  for (const bool isLeftOut : {false, true}) {
    std::vector<std::string> command = {"analyse",
                                        "examples/titanic.csv",
                                        "--one-sample",
                                        "class",
                                        "--weight",
                                        "freq",
                                        "--test",
                                        "chi-square",
                                        "--keep-documents",
                                        folder.Path("kept"),
                                        "--out",
                                        folder.Path("a.xml"),
                                        "--report",
                                        "json"};
    if (isLeftOut) command.push_back("--no-extended");
    const ProcessResult analysis = RunNpar(command);
    EXPECT_EQ(analysis.exitCode, 0) << analysis.err;
    for (const auto& [text, mark] :
         {std::pair{FileContent(folder.Path("kept/params.xml")), "extendedFigures"},
          {FileContent(folder.Path("a.xml")), "ExtendedFigures"},
          {analysis.out, "\"row\": \"Crew\""}}) {
      EXPECT_EQ(text.find(mark) == std::string::npos, isLeftOut) << mark;
    }
  }
}

TEST_F(CommandLineTest, AnalyseTellsTheMeasurementLevelsThatItInferred) {
  const std::vector<std::string> command = {
      "analyse", "examples/tooth_growth.csv", "--independent", "len", "--by", "supp"};
  const std::string told =
      "npar: inferred: continuous: len; nominal: supp\n"
      "npar: mann-whitney is chosen, because supp has 2 groups\n";
  EXPECT_EQ(RunNpar(command).err, told);
  auto planned = command;
  planned.insert(planned.end(), {"--plan", "--out", folder.Path("none.xml")});
  const ProcessResult plan = RunNpar(planned);
  EXPECT_EQ(std::pair(plan.err, plan.out), std::pair(told, std::string()));
  EXPECT_FALSE(std::filesystem::exists(folder.Path("none.xml")));
  auto given = command;
  given.insert(given.end(), {"--continuous", "len", "--nominal", "supp", "--test", "mann-whitney"});
  EXPECT_THAT(RunNpar(given).err, IsEmpty());
}

TEST_F(CommandLineTest, DescribeTellsProgramsOfCategoriesThatMayBeOrderedOrFormGroups) {
  std::string cells = "many,few\n";
  for (int i = 0; i < 24; ++i) {
    cells += "c" + std::to_string(i % 12) + "," + std::to_string(i % 3) + "\n";
  }
  const std::string data = folder.Write("categories.csv", cells);
  const auto fields = nlohmann::json::parse(RunNpar({"describe", data, "--json"}).out)["fields"];
  EXPECT_EQ(fields[0]["categories"].size(), 12U);
  EXPECT_EQ(fields[1]["kind"], "continuous");
  EXPECT_EQ(fields[1]["categories"][2]["value"], "2");
  EXPECT_THAT(RunNpar({"describe", data}).out,
              HasSubstr("12 categories: c0 (2), c1 (2), c2 (2), "
                        "c3 (2), c4 (2), c5 (2), c6 (2), c7 (2), ..."));
}

// What differs from the cells alone, and what nobody would look for.
TEST_F(CommandLineTest, AnalyseTellsWhatIsOddAboutAField) {
  const std::string data = folder.Write(
      "odd.csv", "x,y,item,g\n0,1,1,a\n1,1,2,A\n.,0,5,b\n1,0,inf,b\n0,1,n.d.,b\n0,1,n.d.,b\n");
  const struct {
    std::vector<std::string> options;
    const char* says;
    int exitCode;
  } rows[] = {
      {{"--related", "x,y"}, "npar: x: 1 of 6 cells is missing: 1 \".\"\n", 0},
      {{"--related", "x-y"}, "npar: inferred: nominal: x, y\n", 0},
      {{"--related", "x,y", "--test", "sign"}, "npar: inferred: continuous: x, y\n", 0},
      {{"--one-sample", "it*"},
       "item: nominal, since 2 of 6 cells are no numbers, first line 6: \"n.d.\"; --missing-token",
       0},
      {{"--one-sample", "item", "--missing-token", "n.d."},
       "npar: item: 1 of 6 cells holds an infinity, which counts as a value\n",
       3},
      {{"--one-sample", "g"}, "npar: g: \"a\" and \"A\" differ only by case or spaces", 0},
      {{"--independent", "y", "--by", "g", "--test", "mann-whitney:group1=a,group2=b"},
       "leaves out the records of g that are \"A\": they are in neither group\n",
       0},
      {{"--independent", "y", "--by", "g", "--test", "jonckheere-terpstra:order=descending"},
       "takes the groups in the order b, a, A, that of the alphabet",
       0},
      {{"--one-sample", "y", "--by", "g"}, "npar: --by g is not used", 0},
      {{"--related", "x,y,g"}, "npar: g (nominal) is in no test", 0},
      {{"--independent", "y", "--by", "g", "--test", "mann-whitney"}, "inferred", 3},
  };
  for (const auto& row : rows) {
    std::vector<std::string> command = {"analyse", data};
    command.insert(command.end(), row.options.begin(), row.options.end());
    const ProcessResult run = RunNpar(command);
    EXPECT_EQ(run.exitCode, row.exitCode) << run.err;
    EXPECT_THAT(run.err, HasSubstr(row.says));
  }
}

// Whole lines of --plan, so that a note too many is seen. Of a text 1.0 and 1 are two categories.
TEST_F(CommandLineTest, PlansKnowEveryCategoryAndWhatATestDoesWithItsRecords) {
  constexpr int kCategories = 10001;
  std::string cells = "x,g,h,n\n";
  for (int i = 0; i < kCategories; ++i) {
    const std::string number = std::to_string(i);
    for (const char* before : {"", ",g", ",g", ","}) cells.append(before).append(number);
    cells += '\n';
  }
  const std::string many = folder.Write("many.csv", cells);
  const std::string few = folder.Write("few.csv", "d,e\nu,1.0\nv,b\nu,b\nw,1\nv,1\nu,b\n");
  const std::string chosen = " is chosen, because ";
  const struct {
    std::string data, options, says;
    int exitCode = 0;
  } rows[] = {
      {many, "--one-sample g --test binomial:success=g1", "inferred: nominal: g\n"},
      {many, "--one-sample n --nominal n --test binomial:success=10000.0", ""},
      {many, "--one-sample g",
       "inferred: nominal: g\nnpar: chi-square" + chosen + "g has more than two categories\n"},
      {many, "--independent x --by g",
       "inferred: continuous: x; nominal: g\nnpar: kruskal-wallis" + chosen +
           "g has 10001 groups\n"},
      {many, "--related g,h",
       "inferred: nominal: g, h\nnpar: g (nominal) and h (nominal) are in no test: of related "
       "categories only two are compared without being asked for; --test marginal-homogeneity "
       "takes pairs of fields with more, --scores makes numbers of ordered ones\n"},
      {few, "--one-sample d --test runs:group1=u", "inferred: nominal: d\n"},
      {few, "--one-sample e --nominal e --test binomial:success=1.0", ""},
      {few, "--one-sample e --nominal e --test binomial:success=1.00",
       "option success of test binomial names \"1.00\", which e does not hold; did you mean "
       "\"1.0\"?; the categories are \"1\", \"1.0\" and \"b\"\n",
       2},
      {few, "--related d,e --nominal d,e --test cochran-q:success=u --test mcnemar:success=b",
       "option success of test cochran-q names \"u\", which e does "
       "not hold\nnpar: option success of test mcnemar names \"b\", which d does not hold\n"},
      {few, "--one-sample d --test chi-square:expected=u=1|v=2",
       "inferred: nominal: d\nnpar: test chi-square leaves out the records of d that are \"w\": "
       "expected names no proportion for them\n"},
  };
  for (const auto& row : rows) {
    std::istringstream words("analyse " + row.data + " --plan " + row.options);
    const ProcessResult run = RunNpar({std::istream_iterator<std::string>(words), {}});
    EXPECT_EQ(run.exitCode, row.exitCode) << row.options;
    EXPECT_EQ(run.err, row.says.empty() ? "" : "npar: " + row.says) << row.options;
  }
}

TEST_F(CommandLineTest, SeveralGroupFieldsMakeAnAnalysisEach) {
  const ProcessResult run =
      RunNpar({"analyse", "examples/airquality.csv", "--independent", "Ozone", "--by", "Month,Temp",
               "--test", "kruskal-wallis", "--out", folder.Path("r.xml")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("groups of Month"), HasSubstr("groups of Temp")));
  EXPECT_THAT(folder.Names(), ElementsAre("r.Month.xml", "r.Temp.xml"));
}

TEST_F(CommandLineTest, GroupFieldsOfOneFileNameHaveFilesOfTheirOwn) {
  folder.Write("d.csv", "x,a/b,a_b\n1,1,2\n2,1,1\n3,2,2\n4,2,1\n5,1,2\n");
  const ProcessResult run =
      RunShell("cd " + folder.Path("") + " && PATH=/nowhere " + AbsoluteProgram() +
               " analyse d.csv --independent x --by a/b,a_b --test kruskal-wallis --out r.xml "
               "--report json=r.json --plots plots");
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_THAT(folder.Names(), ElementsAre("d.csv", "plots", "r.a_b.json", "r.a_b.xml",
                                          "r.a_b_2.json", "r.a_b_2.xml"));
  for (const auto& [file, field] : {std::pair("r.a_b.json", "a_b"), {"r.a_b_2.json", "a/b"}}) {
    const auto report = nlohmann::json::parse(FileContent(folder.Path(file)));
    EXPECT_EQ(report.at("fields").at(1).at("name"), field);
  }
  const std::string plot = folder.Path("plots/1-kruskal-wallis-x-by-a-b-1");
  EXPECT_THAT(FileContent(plot + ".svg"), HasSubstr("<desc>1: median 2,"));
  EXPECT_THAT(FileContent(plot + "-2.svg"), HasSubstr("<desc>1: median 3,"));
}

// The host lends its columns in parts longer than those in which they are summed.
TEST_F(CommandLineTest, EstimatesAreOfAllRecordsOfALongColumn) {
  std::string data = "x\n";
  for (int x = 3000; x >= 1; --x) data += std::to_string(x) + '\n';
  const ProcessResult run = RunNpar({"analyse", folder.Write("long.csv", data), "--one-sample", "x",
                                     "--test", "ks-normal", "--test", "ks-uniform", "--out", "-"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const auto row = [](const std::string& name, const std::string& value) {
    return HasSubstr("<Attribute name=\"" + name + "\" value=\"" + value + "\"/>");
  };
  // (n + 1) / 2 and sqrt(n (n + 1) / 12).
  EXPECT_THAT(run.out, AllOf(row("Mean", "1500.5"), row("StdDev", "866.16972932561"),
                             row("Min", "1"), row("Max", "3000")));
}

TEST_F(CommandLineTest, OutliersAreNamedByTheirCase) {
  const std::string data = folder.Write(
      "cases.csv",
      "who,x,g\nann,1,a\nbob,2,a\ncy,2,a\ndee,2,a\neve,3,a\nZo\xC3\xAB,99,a\nfay,1,b\ngus,4,b\n");
  const ProcessResult run =
      RunNpar({"analyse", data, "--independent", "x", "--by", "g", "--case-id", "who", "--test",
               "kruskal-wallis", "--out", folder.Path("r.xml")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Outliers of a: 99 (case Zo\xC3\xAB)"));
  // The document has the record's number only.
  EXPECT_THAT(RunNpar({"report", folder.Path("r.xml"), "--as", "text"}).out,
              HasSubstr("Outliers of a: 99 (case 6)"));
}

TEST_F(CommandLineTest, AnalyseChoosesTestsForFieldsWithoutOne) {
  const ProcessResult run = RunNpar({"analyse", "examples/titanic.csv", "--one-sample", "class,sex",
                                     "--weight", "freq", "--out", folder.Path("r.xml")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("1. Chi-square test"), HasSubstr("2. Binomial test")));
  // 32 lines, 8 of them with the frequency 0, 2201 persons.
  EXPECT_THAT(FileContent(folder.Path("r.xml")),
              HasSubstr(R"(totalFreq="2201" totalCount="24" droppedCount="0" badWeightCount="8")"));
}

// Groups by their numbers, a trend from its last one down, and the category that counts.
TEST_F(CommandLineTest, ReportsTellWhatTheRunKnowsBesideItsDocument) {
  std::string text = "g,x,b,d\n";
  for (int i = 0; i < 36; ++i) {
    text += "g" + std::to_string(8 + i % 3) + "," + std::to_string(i * 7 % 31) +
            (i % 4 > 0 ? ",yes"
             : i == 4  ? ",NA"
                       : ",no") +
            (i % 5 > 1 ? ",yes\n" : ",no\n");
  }
  const std::string file = folder.Write("g.csv", text);
  const auto report = [&](const std::string& arguments) {
    return RunShell(NPAR_BUILD_DIR "/bin/npar analyse " + file + " " + arguments).out;
  };
  const std::string groups = report("--independent x --by g");
  EXPECT_THAT(groups, HasSubstr("Chosen because g has 3 groups."));
  EXPECT_LT(groups.find("\n  g8 "), groups.find("\n  g9 "));
  EXPECT_LT(groups.find("\n  g9 "), groups.find("\n  g10 "));
  const std::string trend =
      report("--independent x --by g --test jonckheere-terpstra:order=descending");
  EXPECT_THAT(trend, HasSubstr("order g9, g8, g10."));
  EXPECT_LT(trend.find("\n  g9 "), trend.find("\n  g8 "));
  EXPECT_THAT(report("--related b,d --test cochran-q --test mcnemar"),
              AllOf(HasSubstr("Cochran's Q test: b, d"), HasSubstr("in b and d. Success: no."),
                    HasSubstr("classes are the same in b and d. Success: no.")));
  EXPECT_THAT(report("--related b,d --test cochran-q:success=yes --sentences"),
              AllOf(HasSubstr("Success: yes."), HasSubstr("the proportions of yes in b and d"),
                    HasSubstr("Frequencies; success: yes"), HasSubstr("Wilson limits of 95 %")));
  EXPECT_THAT(report("--one-sample b --test binomial:success=yes --sentences"),
              AllOf(HasSubstr("the share of yes in b"), HasSubstr("first class: yes")));
  EXPECT_THAT(report("--related b,d --test cochran-q --report json"),
              ContainsRegex("\"name\": \"b\",\n *\"measure\": \"nominal\",\n *\"missing\": 1\n"));
}

// airquality.csv: 153 days, 111 without a missing value in any field, 116 with Ozone.
TEST_F(CommandLineTest, RecordsWithMissingValuesAreCountedAsTheTreatmentSays) {
  struct Case {
    const char* fields;
    const char* treatment;
    const char* counts;
    const char* totalN;
  };
  for (const auto& [fields, treatment, counts, totalN] :
       {Case{"Ozone,Solar.R", "analysis", R"(totalCount="153" droppedCount="0")", "116"},
        Case{"Ozone,Solar.R", "listwise", R"(totalCount="111" droppedCount="42")", "111"},
        Case{"Ozone", "listwise", R"(totalCount="116" droppedCount="37")", "116"}}) {
    SCOPED_TRACE(std::string(fields) + " " + treatment);
    const ProcessResult run =
        RunNpar({"analyse", "examples/airquality.csv", "--independent", fields, "--by", "Month",
                 "--missing", treatment, "--out", folder.Path("r.xml")});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_THAT(FileContent(folder.Path("r.xml")), HasSubstr(counts));
    EXPECT_THAT(FileContent(folder.Path("r.xml")),
                HasSubstr("<Attribute name=\"TotalN\" value=\"" + std::string(totalN) + "\"/>"));
    EXPECT_TRUE(IsValid(FileContent(folder.Path("r.xml")), "statxml-7.0.xsd"));
  }
}

// Dates stand in documents as numbers, and in requests as people write them.
TEST_F(CommandLineTest, DatesNameCategoriesInEveryTest) {
  const std::string data = folder.Write(
      "d.csv",
      "x,d,e\n1,2020-01-01,2020-01-01\n2,2020-01-02,2020-01-01\n4,2020-01-01,2020-01-02\n"
      "3,2020-01-02,2020-01-02\n5,2020-01-01,2020-01-01\n7,2020-01-02,2020-01-01\n");
  const std::string model =
      folder.Write("m.xml",
                   "<DataModel><Field name='d' measure='nominal' storage='date'/>"
                   "<Field name='e' measure='nominal' storage='date'/></DataModel>");
  const std::string day = "2020-01-02";
  const std::string expected =
      "<Attribute name='classFormation' value='custom'/><Attribute name='custom'><ListValue>"
      "<StructuredValue><Attribute name='categoryValue' value='2020-01-01'/>"
      "<Attribute name='expectedValue' value='2'/></StructuredValue><StructuredValue>"
      "<Attribute name='categoryValue' value='2020-01-02'/>"
      "<Attribute name='expectedValue' value='1'/></StructuredValue></ListValue></Attribute>";
  const std::string success = Attribute("classFormation", "givenCategoryList");
  const std::string classes = Attribute("catVarClassFormation", "givenCategoryList") +
                              ListAttribute("givenCategoryList", {day});
  const std::string params = folder.Write(
      "p.xml", "<Parameters>" + ListParameter("oneSampleVariables", {"d"}) +
                   ListParameter("relatedVariables", {"d", "e"}) +
                   ListParameter("independentVariables", {"x"}) +
                   ListParameter("groupVariable", {"d"}) + Family("OneSample") +
                   Selected("OChiSquare", expected) + Selected("OBinomial", classes) +
                   Selected("ORuns", classes) + Family("Related") +
                   Selected("RMcNemar", success + ListAttribute("categoriesList", {day})) +
                   Selected("RCochransQ", success + ListAttribute("successCategoryList", {day})) +
                   Family("Independent") +
                   Selected("IMannWhitneyU", Attribute("userSpecifyGroupList", "true") +
                                                 ListAttribute("group1List", {day}) +
                                                 ListAttribute("group2List", {"2020-01-01"})) +
                   "</Parameters>");
  const ProcessResult run = RunNpar({"run", "--params", params, "--data", data, "--model", model});
  ASSERT_EQ(run.exitCode, 0) << run.err;
  const std::vector<AlgorithmElement> elements = AlgorithmElement::AllOf(run.out);
  ASSERT_EQ(elements.size(), 6u);
  for (const AlgorithmElement& element : elements) {
    EXPECT_TRUE(element.Has("StatisticsResult")) << element.Xml();
  }
}

TEST_F(CommandLineTest, ReportsGoToSeveralPlacesInOneCall) {
  std::vector<std::string> command = {"analyse",   kSleep,
                                      "--related", "drug1,drug2",
                                      "--test",    "sign",
                                      "--report",  "text",
                                      "--report",  "text=" + folder.Path("report.txt"),
                                      "--plots",   folder.Path("plots")};
  const ProcessResult run = RunNpar(command);
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("Sign test"));
  // A file tells where it comes from, unless it is to be the same each time.
  EXPECT_THAT(FileContent(folder.Path("report.txt")),
              AllOf(StartsWith(run.out), HasSubstr("--related drug1,drug2")));
  command.emplace_back("--no-trace");
  EXPECT_EQ(RunNpar(command).out, run.out);
  EXPECT_EQ(FileContent(folder.Path("report.txt")), run.out);
  EXPECT_THAT(FileContent(folder.Path("plots/1-sign-drug1-drug2-1.svg")),
              AllOf(StartsWith("<?xml"), Not(HasSubstr("var("))));
}

TEST_F(CommandLineTest, ASourceDateMakesRunsTheSameToTheLastByte) {
  const std::vector<std::string> command = {"/usr/bin/env",
                                            "SOURCE_DATE_EPOCH=86399",
                                            kProgram,
                                            "analyse",
                                            kSleep,
                                            "--related",
                                            "drug1,drug2",
                                            "--out",
                                            folder.Path("result.xml"),
                                            "--report",
                                            "html=" + folder.Path("report.html")};
  std::vector<std::string> results;
  for (int run = 0; run < 2; ++run) {
    ASSERT_EQ(RunProcess(command).exitCode, 0);
    results.push_back(FileContent(folder.Path("result.xml")) +
                      FileContent(folder.Path("report.html")));
  }
  EXPECT_EQ(results[0], results[1]);
  EXPECT_THAT(results[0], AllOf(HasSubstr("modelID=\"1\""), HasSubstr("1970-01-01 23:59:59 UTC")));
  const ProcessResult numbered = RunNpar({"analyse", kSleep, "--related", "drug1,drug2", "--out",
                                          folder.Path("result.xml"), "--model-id", "17"});
  EXPECT_THAT(FileContent(folder.Path("result.xml")), HasSubstr("modelID=\"17\"")) << numbered.err;
}

TEST_F(CommandLineTest, PlotsArePngTooWhereAConverterIs) {
  const std::string program = NPAR_BUILD_DIR "/bin/npar analyse " + std::string(kSleep) +
                              " --related drug1,drug2 --test sign --plots " + folder.Path("plots");
  const std::string plot = folder.Path("plots/1-sign-drug1-drug2-1");
  EXPECT_EQ(RunShell("PATH=/nowhere " + program).exitCode, 0);
  EXPECT_EQ(FileContent(plot + ".png"), "");
  // A converter that writes what it is asked for.
  folder.Write("rsvg-convert", "#!/bin/sh\necho \"$@\"\n");
  const ProcessResult run = RunShell("chmod +x " + folder.Path("rsvg-convert") +
                                     "; PATH=" + folder.Path("") + ":$PATH " + program);
  EXPECT_EQ(run.exitCode, 0) << run.out;
  EXPECT_THAT(FileContent(plot + ".png"), AllOf(StartsWith("--zoom=2"), HasSubstr(plot + ".svg")));
  folder.Write("rsvg-convert", "#!/bin/sh\necho half an image\nexit 1\n");
  EXPECT_THAT(RunShell("PATH=" + folder.Path("") + ":$PATH " + program).out,
              HasSubstr("rsvg-convert could not turn " + plot + ".svg into PNG"));
  EXPECT_THAT(FileContent(plot + ".png"), StartsWith("--zoom=2")) << "the old image stays";

  std::string groups = "x,g\n";
  for (int i = 0; i < 2400; ++i) {
    groups += std::to_string(i * 7 % 1000) + ",g" + std::to_string(i / 2) + "\n";
  }
  const ProcessResult high =
      RunShell("PATH=" + folder.Path("") + ":$PATH " NPAR_BUILD_DIR "/bin/npar analyse " +
               folder.Write("groups.csv", groups) +
               " --independent x --by g --test kruskal-wallis --plots " + folder.Path("high"));
  EXPECT_EQ(high.exitCode, 0);
  EXPECT_THAT(high.out, HasSubstr("-1.svg is too large to be written as PNG too"));
}

struct BadInput {
  const char* catches;
  std::string command;  // @NAME: a file of the table below
  int exitCode;
  const char* says;
};

TEST_F(CommandLineTest, BadInputIsRefusedWithPlaceAndRemedyAndNothingIsWritten) {
  folder.Write("empty.csv", "");
  folder.Write("heavy.csv", "a,b,n\n1,2,1\n3,4,3000000000\n");
  folder.Write("missing.csv", "a,b\nNA,NA\nNA,NA\n");
  folder.Write("comma.csv", "x;g\n1,5;a\n2;b\n");
  folder.Write("stray.csv", "x,g\n1,a\n2,Yes\n3,b\nn.d.,b\n");
  folder.Write("broken.xml", "<Parameters>\n <Parameter name=\"x\"");
  folder.Write("type.xml", "<!DOCTYPE a><a/>");
  folder.Write("nofield.xml", "<Parameters/>");
  folder.Write("notest.xml", PairParameters("drug2", ""));
  folder.Write("unknown.xml", PairParameters("drug9", kSignTest));
  folder.Write("nogroup.xml",
               R"(<Parameters><Parameter name="independentVariables"><ListValue>
<Value value="drug1"/></ListValue></Parameter></Parameters>)");
  folder.Write("sign.xml", PairParameters("drug2", kSignTest));
  const auto files = folder.Names();

  const BadInput rows[] = {
      {"broken XML", "run --params @broken.xml --data examples/sleep.csv", 2, "broken.xml:2:"},
      {"no field", "run --params @nofield.xml --data examples/sleep.csv", 1, "error 220010: "},
      {"no test", "run --params @notest.xml --data examples/sleep.csv", 1, "error 220001: "},
      {"unknown field is named", "run --params @unknown.xml --data examples/sleep.csv", 1,
       R"(unknown.xml:2:1: the data have no field "drug9"; did you mean "drug)"},
      {"no group", "run --params @nogroup.xml --data examples/sleep.csv", 1, "error 220009: "},
      {"absent document", "run --params @absent.xml --data examples/sleep.csv", 2, "absent.xml: "},
      {"absent data", "run --params @sign.xml --data @absent.csv", 2, "absent.csv: "},
      {"document type in the parameters", "run --params @type.xml --data examples/sleep.csv", 2,
       "type.xml:1:1: a document type"},
      {"document type in the model",
       "run --params @sign.xml --data examples/sleep.csv --model @type.xml", 2,
       "type.xml:1:1: a document type"},
      {"document type in a result", "report @type.xml --as text", 2,
       "type.xml:1:1: a document type"},
      {"broken data model", "run --params @sign.xml --data examples/sleep.csv --model @broken.xml",
       2, "broken.xml:2:"},
      {"component that is none",
       "run --params @sign.xml --data examples/sleep.csv --component examples/sleep.csv", 2,
       "cannot load the component examples/sleep.csv"},
      {"no thread", "run --params @sign.xml --data examples/sleep.csv --threads 0", 2,
       "--threads: "},
      {"threads in words", "analyse examples/sleep.csv --threads all", 2, "--threads: "},
      {"library that is no component", "info --component " NPAR_BUILD_DIR "/lib/libqdcommon700r.so",
       2, "does not export hb_create_component"},
      {"empty file", "analyse @empty.csv --related a,b", 2, "empty.csv:1:1: "},
      {"weight above 2147483647", "analyse @heavy.csv --related a,b --weight n", 1,
       "error 220026: "},
      {"all records missing", "analyse @missing.csv --related a,b --missing listwise", 1,
       "error 240037: "},
      {"decimal commas", "analyse @comma.csv --independent x --by g", 2,
       "comma.csv:2:1: x: could only be nominal, since 1 of 2 cells is no number, first line 2: "
       "\"1,5\"; these are numbers with decimal commas: add --decimal ,"},
      {"a stray cell", "analyse @stray.csv --one-sample x", 2,
       "stray.csv:5:1: x: could only be nominal, since 1 of 4 cells is no number"},
      {"unknown category", "analyse @stray.csv --one-sample g --test binomial:success=yes", 2,
       "names \"yes\", which g does not hold; did you mean \"Yes\"?"},
      {"unknown encoding", "analyse examples/sleep.csv --one-sample drug1 --encoding utf-7", 2,
       "--encoding is utf-8, utf-16, utf-16be or latin1"},
      {"unknown group variable", "analyse examples/sleep.csv --independent drug1 --by drug3", 2,
       R"(no field "drug3"; did you mean)"},
      {"no data", "analyse --related a,b", 2, "DATA is required"},
      {"unknown report form", "analyse examples/sleep.csv --related drug1,drug2 --report pdf", 2,
       R"(no report as "pdf")"},
      {"unknown separator", "analyse examples/sleep.csv --related drug1,drug2 --separator colons",
       2, "comma, semicolon, tab or one character"},
      {"unknown missing-value treatment",
       "analyse examples/sleep.csv --related drug1,drug2 --missing pairwise", 2, "--missing"},
      {"no number", "analyse examples/sleep.csv --significance five", 2, "--significance"},
      {"unknown option", "analyse examples/sleep.csv --relatd=a", 2,
       R"(there is no option --relatd; did you mean "--related"?)"},
      {"a word too many", "tests sign runs", 2, "runs"},
      {"unknown command", "analyze examples/sleep.csv", 2, R"(did you mean "analyse"?)"},
      {"no command", "", 2, "no command is given; there is run, analyse, "},
      {"groups of itself", "analyse examples/sleep.csv --independent drug1 --by drug1", 2,
       "between its own groups"},
      {"no result document", "report @sign.xml --as text", 2, "no result document"},
      {"unknown code", "explain 1234567", 2, "1234567"},
      {"code that is no number", "explain abc", 2, "a number is wanted: CODE = abc"},
      {"unknown test to describe", "tests medin", 2, R"(did you mean "median"?)"},
  };
  for (const BadInput& row : rows) {
    SCOPED_TRACE(row.catches);
    std::istringstream words(row.command);
    std::vector<std::string> arguments{std::istream_iterator<std::string>(words), {}};
    for (std::string& argument : arguments) {
      if (argument.starts_with('@')) argument = folder.Path(argument.substr(1));
    }
    const bool hasOut = !arguments.empty() && (arguments[0] == "run" || arguments[0] == "analyse");
    if (hasOut) arguments.insert(arguments.end(), {"--out", folder.Path("result.xml")});
    const ProcessResult run = RunNpar(arguments);
    EXPECT_EQ(run.exitCode, row.exitCode) << run.err;
    EXPECT_THAT(run.err, HasSubstr(row.says));
    EXPECT_THAT(run.out, IsEmpty());
    EXPECT_EQ(folder.Names(), files);
  }
}

TEST_F(CommandLineTest, AFailedRunLeavesTheOldResultAlone) {
  const std::string params = folder.Write("params.xml", PairParameters("drug9", kSignTest));
  const std::string out = folder.Write("result.xml", "old");
  const ProcessResult run = RunNpar({"run", "--params", params, "--data", kSleep, "--out", out});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(FileContent(out), "old");
}

TEST_F(CommandLineTest, WhatCannotBeWrittenIsAnError) {
  const std::string params = folder.Write("params.xml", PairParameters("drug2", kSignTest));
  for (const std::string& out : {std::string("/dev/full"), folder.Path("absent/result.xml")}) {
    const ProcessResult run = RunNpar({"run", "--params", params, "--data", kSleep, "--out", out});
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_THAT(run.err, HasSubstr("cannot write " + out));
  }
  const ProcessResult full =
      RunProcess({"/bin/sh", "-c", std::string(kProgram) + " tests > /dev/full"});
  EXPECT_EQ(full.exitCode, 2);
  EXPECT_THAT(full.err, HasSubstr("cannot write standard output: No space left"));
  const ProcessResult closed = RunProcess(
      {"/bin/bash", "-c", std::string(kProgram) + " tests | true; exit ${PIPESTATUS[0]}"});
  EXPECT_THAT(closed.exitCode, testing::AnyOf(0, 2));  // 0 where the pipe took all before it closed
  EXPECT_THAT(closed.err, testing::AnyOf(IsEmpty(), HasSubstr("Broken pipe")));
}

// A file that is opened would take the place of a closed descriptor.
TEST_F(CommandLineTest, ClosedStandardDescriptorsAreNotTakenByFiles) {
  const auto run = [](const std::string& arguments) {
    return RunProcess({"/bin/sh", "-c", std::string(kProgram) + " " + arguments});
  };
  const ProcessResult input = run("analyse - --related a,b 0<&-");
  EXPECT_EQ(input.exitCode, 2);
  EXPECT_THAT(input.err, HasSubstr("standard input: cannot be read"));
  const ProcessResult output = run("tests 1>&-");
  EXPECT_EQ(output.exitCode, 2);
  EXPECT_THAT(output.err, HasSubstr("cannot write standard output"));
  const std::string out = folder.Path("r.xml");
  const std::string analysis = std::string("analyse ") + kSleep + " --related drug1,drug2 --out " +
                               out + " --report text=" + folder.Path("r.txt");
  for (const char* closed : {" 0<&-", " 0<&- 1>&-", " 0<&- 1>&- 2>&-"}) {
    EXPECT_EQ(run(analysis + closed).exitCode, 0) << closed;
    EXPECT_TRUE(IsValid(FileContent(out), "statxml-7.0.xsd")) << closed;
  }
}

TEST_F(CommandLineTest, NoFileIsWrittenTwiceOrOverWhatIsRead) {
  const std::string data = "a,b,a.b\n1,2,1\n2,4,1\n3,5,2\n5,4,2\n";
  const std::string params = PairParameters("drug2", kSignTest);
  folder.Write("d.csv", data);
  folder.Write("p.xml", params);
  folder.Write("f", "");
  const std::string start = "cd " + folder.Path("") + " && ln -sf none.x link.x && ln -sf d.csv " +
                            "1-sign-a-b-2.svg && PATH=/nowhere " + AbsoluteProgram() + " ";
  const std::string analysis = "analyse d.csv --related a,b --test sign ";
  const std::string read = "it is read in the same call";
  const std::string written = "it is written twice";
  const struct {
    std::string call, says;
    std::vector<std::string> leaves = {};
  } rows[] = {
      {analysis + "--out none.x --report json=./none.x", written},
      {analysis + "--out none.x --report json=link.x", written},
      {analysis + "--keep-documents . --out model.xml", written},
      {analysis + "--out d.csv", read},
      {analysis + ">> d.csv", read},
      {analysis + "--out f > f", written},
      {analysis + "--out ''", "--out: the name of the file or folder is empty"},
      {"analyse - --related a,b --out d.csv < d.csv", read},
      {"run --params - --data d.csv --out p.xml < p.xml", read},
      {"report - --as html --out p.xml < p.xml", read},
      {"analyse d.csv --independent a --by b,a.b --out r.x --report json=r.a.x", written},
      {analysis + "--plots .", "1-sign-a-b-2.svg: " + read},
      {analysis + "--plots . --out 1-sign-a-b-1.svg", written, {"1-sign-a-b-1.svg"}},
  };
  for (const auto& row : rows) {
    const ProcessResult run = RunShell(start + row.call);
    EXPECT_EQ(run.exitCode, 2) << row.call;
    EXPECT_THAT(run.out, HasSubstr(row.says)) << row.call;
    EXPECT_EQ(FileContent(folder.Path("d.csv")), data) << row.call;
    EXPECT_EQ(FileContent(folder.Path("p.xml")), params) << row.call;
    std::vector<std::string> names = {"1-sign-a-b-2.svg", "d.csv", "f", "link.x", "p.xml"};
    names.insert(names.begin(), row.leaves.begin(), row.leaves.end());
    EXPECT_EQ(folder.Names(), names) << row.call;
  }
  EXPECT_THAT(FileContent(folder.Path("1-sign-a-b-1.svg")), HasSubstr("<StatXML"));
}

TEST_F(CommandLineTest, WhatIsOpenAlreadyIsWrittenBehindWhatItHolds) {
  const std::string params = folder.Write("p.xml", PairParameters("drug2", kSignTest));
  const std::string run = NPAR_BUILD_DIR "/bin/npar run --model-id 1 --data " +
                          std::string(kSleep) + " --params " + params + " --out ";
  const std::string document = RunShell(run + "-").out;
  const std::string log = folder.Path("log");
  const std::string open = "exec 7>>" + log + "; " + run;
  for (const char* out :
       {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1", "/dev/fd/7", "/proc/$$/fd/7"}) {
    folder.Write("log", "old\n");
    EXPECT_EQ(RunShell(open + std::string(out).append(" >&7")).exitCode, 0) << out;
    EXPECT_EQ(FileContent(log), "old\n" + document) << out;
  }
  EXPECT_EQ(RunShell(NPAR_BUILD_DIR "/bin/npar analyse " + std::string(kSleep) +
                     " --related drug1,drug2 --out /dev/stdout > " + log)
                .exitCode,
            0);
  EXPECT_THAT(FileContent(log), AllOf(StartsWith("<?xml"), HasSubstr("\nNonparametric tests\n")));
}

TEST_F(CommandLineTest, MessagesAreWholeAndShortWhateverTheDataHold) {
  const std::string zero = folder.Write("zero.csv", std::string("a,b\n1,2\n3,4\0\033[2J\n", 17));
  EXPECT_THAT(RunNpar({"analyse", zero, "--related", "a,b", "--continuous", "b"}).err,
              AllOf(HasSubstr("this cell is \"4\\x00\\x1b[2J\"; correct it")));
  const std::string wide = folder.Write("wide.csv", std::string(10 << 20, 'x') + ",b\n1,2\n3,4\n");
  const ProcessResult run = RunNpar({"analyse", wide, "--related", "a,b"});
  EXPECT_EQ(run.exitCode, 2);
  EXPECT_THAT(run.err, HasSubstr("the data have no field \"a\""));
  EXPECT_LT(run.err.size(), 10000u);
}

TEST_F(CommandLineTest, CtrlCWhileReadingEndsWith130AndWritesNothing) {
  const std::string params = folder.Write("params.xml", PairParameters("drug2", kSignTest));
  const ProcessResult run = SignalWaitingProcess(
      {kProgram, "run", "--params", params, "--data", "-", "--out", folder.Path("result.xml")},
      "drug1,drug2\n1,2\n", SIGINT);
  EXPECT_EQ(run.exitCode, 130);
  EXPECT_THAT(folder.Names(), ElementsAre("params.xml"));
}

// Ctrl-C while the component runs calls Cancel from another thread; here the run's own progress
// does, so that it comes at a known time.
TEST_F(CommandLineTest, ACancelledRunFailsWithTheMessageCode1) {
  using namespace npar_host;
  const ComponentLibrary library(kComponent);
  CsvReader reader(kSleep);
  AnalysisRun run(library, PairParameters("drug2", kSignTest), LoadData(reader, {}));
  run.ListenToProgress({[&](double, double) { run.Cancel(); }, {}});
  run.Prepare();
  const RunResult result = run.Execute();
  EXPECT_FALSE(result.Succeeded());
  EXPECT_THAT(result.document, IsEmpty());
  ASSERT_EQ(result.messages.size(), 1u);
  EXPECT_TRUE(result.messages[0].isError);
  EXPECT_EQ(result.messages[0].code, 1);
}

TEST_F(CommandLineTest, InfoTellsWhatTheComponentSays) {
  const ProcessResult run = RunNpar({"info"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, AllOf(HasSubstr("name: NPAR\n"), HasSubstr("provider: LYRA\n"),
                             HasSubstr("version: 1.0.0.0\n"), HasSubstr("libnpar.so\n")));
}

TEST_F(CommandLineTest, TestsListsEachTestWithItsOptions) {
  const ProcessResult all = RunNpar({"tests"});
  EXPECT_EQ(all.exitCode, 0) << all.err;
  for (const std::string& name : npar_host::TestNames()) {
    EXPECT_THAT(all.out, HasSubstr("\n" + name + "\n"));
  }
  const ProcessResult one = RunNpar({"tests", "moses"});
  EXPECT_THAT(one.out, AllOf(StartsWith("moses\n"), HasSubstr("outliers=COUNT"),
                             HasSubstr("group1="), Not(HasSubstr("median"))));
}

// For programs that write functions from it: every option with what it sets in the document.
TEST_F(CommandLineTest, TestsAsJsonNamesEachOptionAndWhatItSets) {
  const ProcessResult run = RunNpar({"tests", "--json"});
  const auto tests = nlohmann::json::parse(run.out).at("tests");
  ASSERT_EQ(tests.size(), catalogue::kTests.size());
  for (std::size_t i = 0; i < tests.size(); ++i) {
    const catalogue::Card& card = *catalogue::kTests[i];
    EXPECT_EQ(tests[i].at("name"), card.name.c_str());
    EXPECT_FALSE(tests[i].at("codes").empty());
    const auto& options = tests[i].at("options");
    ASSERT_EQ(options.size(), card.options.size());
    for (std::size_t k = 0; k < options.size(); ++k) {
      EXPECT_EQ(options[k].at("name"), card.options[k].name.c_str());
      EXPECT_TRUE(options[k].at("key").is_string() || !options[k].at("words").empty());
    }
  }
  const auto binomial = nlohmann::json::parse(RunNpar({"tests", "binomial", "--json"}).out);
  const auto& p = binomial.at("tests").at(0).at("options").at(0);
  EXPECT_EQ(p.at("key"), "testProbability");
  EXPECT_EQ(p.at("range"), nlohmann::json({{"above", 0.0}, {"below", 1.0}}));
}

TEST_F(CommandLineTest, RunRefusesLevelsThatNobodyMeans) {
  for (const char* level :
       {"name='sigLevel' value='0'", "name='sigLevel' value='1'", "name='sigLevel' value='5%'",
        "name='confidenceLevel' value='0.95'", "name='confidenceLevel' value='100'"}) {
    const std::string params = folder.Write(
        "params.xml", "<Parameters>\n  <Parameter " + std::string(level) + "/></Parameters>");
    const ProcessResult run = RunNpar({"run", "--params", params, "--data", kSleep});
    EXPECT_EQ(run.exitCode, 2) << level;
    EXPECT_THAT(run.err, AllOf(HasSubstr("params.xml:2:"), HasSubstr("Level is \"")));
  }
}

TEST_F(CommandLineTest, ExplainTellsTextAndRemedy) {
  const ProcessResult run = RunNpar({"explain", "220010"});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("no field is selected"));
}

TEST_F(CommandLineTest, MessagesCarryTheirText) {
  const std::string params = folder.Write("params.xml", "<Parameters/>");
  const ProcessResult run = RunNpar({"run", "--params", params, "--data", kSleep});
  EXPECT_THAT(run.err, HasSubstr("error 220010: no field is selected\n"));
}

TEST_F(CommandLineTest, EachCommandHasHelpWithExamples) {
  for (const char* command :
       {"run", "analyse", "describe", "report", "explain", "tests", "info", "completion"}) {
    const ProcessResult help = RunNpar({command, "--help"});
    EXPECT_EQ(help.exitCode, 0);
    EXPECT_THAT(help.out, HasSubstr(std::string("\n  npar ") + command));
    EXPECT_THAT(help.err, IsEmpty());
  }
}

// Both ways: an option that one of them lacks, and one that is gone.
TEST_F(CommandLineTest, TheManPageNamesTheOptionsOfTheHelpAndNoOther) {
  const auto optionsOf = [](const std::string& text) {
    const std::regex option("(^|[ ,\n])(--[a-z][a-z-]*)");
    std::set<std::string> names;
    for (std::sregex_iterator it(text.begin(), text.end(), option), end; it != end; ++it) {
      names.insert((*it)[2]);
    }
    return names;
  };
  std::string help;
  for (const char* command :
       {"run", "analyse", "describe", "report", "explain", "tests", "info", "completion"}) {
    help += RunNpar({command, "--help"}).out;
  }
  const std::string page =
      std::regex_replace(FileContent("docs/npar.1"), std::regex(R"(\\-)"), "-");
  EXPECT_EQ(optionsOf(page), optionsOf(help));
}

// Names may hold anything that XML can carry.
TEST_F(CommandLineTest, OddNamesGoThroughUnharmed) {
  const std::string data =
      folder.Write("odd.csv", "\"a \"\"<&;'\",\"b,\n\xC3\xA9\"\n1,2\n2,3\n3,5\n4,3\n");
  const ProcessResult run = RunNpar({"analyse", data, "--related", "a \"<&;',b\\,\n\xC3\xA9",
                                     "--test", "sign", "--out", folder.Path("r.xml")});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  EXPECT_THAT(run.out, HasSubstr("b,\\x0a\xC3\xA9 - a \"<&;'"));
  EXPECT_TRUE(IsValid(FileContent(folder.Path("r.xml")), "statxml-7.0.xsd"));
}

}  // namespace

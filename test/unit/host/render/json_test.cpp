#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "host/render/renderers.h"
#include "support/json_schema.h"

namespace npar_host {
namespace {

using Json = nlohmann::json;

Json Schema() { return Json::parse(std::ifstream("schema/report.schema.json")); }

std::string Text(const ResultDocument& document) {
  return Rendered(*FindRenderer("json"), document);
}

Json Report(const ResultDocument& document) {
  Json report = Json::parse(Text(document));
  EXPECT_EQ(SchemaBreach(report, Schema()), "");
  return report;
}

ResultDocument GroupDocument() {
  ResultDocument document;
  document.totalCount = 3.0;
  document.fields.resize(2);
  document.fields[0].name = "x";
  document.fields[1].name = "g";
  document.fields[1].label = "Group";
  document.fields[1].isCategorical = true;
  document.fields[1].categories = {{"a", "Alpha"}, {"b", ""}, {"c", ""}};
  ResultTest test;
  test.name = "IKruskalWallis";
  test.type = "hypothesis_test";
  test.classification = "Independent_Samples";
  test.decision = "reject";
  test.conditionParameters = {"0", "1"};
  test.statistics = {{"", "TestStatistic", "4.11456228134595e-05"}, {"", "TotalN", "12"}};
  document.tests = {test};
  return document;
}

TEST(JsonReportTest, NumbersAreThoseOfTheDocument) {
  const Json test = Report(GroupDocument())["tests"][0];
  EXPECT_EQ(test["statistics"]["testStatistic"].get<double>(), 4.11456228134595e-05);
  EXPECT_TRUE(test["statistics"]["totalN"].is_number_integer());
  EXPECT_EQ(test["statistics"]["totalN"], 12);
  EXPECT_EQ(test["fields"], Json({"x"}));
  EXPECT_EQ(test["groupField"], "g");
  EXPECT_EQ(test["hypothesis"], "The distribution of x is the same in all groups of Group.");
}

struct FigureCase {
  const char* text;  // of the document
  Json number;
  Json sibling;  // under the key with "Text" added; null for no such key
};

TEST(JsonReportTest, WhatIsNoFiniteNumberIsNullAndTellsWhy) {
  const FigureCase cases[] = {
      {"0.1", 0.1, nullptr},
      {"1e300", 1e300, nullptr},  // whole, but no exact integer
      {"9007199254740991", 9007199254740991, nullptr},
      {"nan", nullptr, "nan"},
      {"inf", nullptr, "inf"},
      {"-inf", nullptr, "-inf"},
      {"__MISSING__", nullptr, nullptr},
      {"", nullptr, nullptr},
  };
  for (const FigureCase& row : cases) {
    SCOPED_TRACE(row.text);
    ResultDocument document = GroupDocument();
    document.tests[0].statistics = {{"", "StandardTestStatistic", row.text},
                                    {"MinimumRuns", "TestStatistic", row.text}};
    const Json figures = Report(document)["tests"][0]["statistics"];
    EXPECT_EQ(figures["standardTestStatistic"], row.number);
    EXPECT_EQ(figures.value("standardTestStatisticText", Json()), row.sibling);
    EXPECT_EQ(figures["minimumRuns"]["testStatistic"], row.number);
  }
}

TEST(JsonReportTest, ComparisonsNameTheirSamples) {
  ResultDocument document = GroupDocument();
  ResultTest& test = document.tests[0];
  const std::vector<std::string> figures = {"TestStatistic", "StandardError",
                                            "StandardTestStatistic", "Sig", "AdjSig"};
  auto columns = figures;
  columns.insert(columns.begin(), {"Sample1", "Sample2"});
  test.pairwise = {
      true, {2, 0}, {"1.5", "2.5"}, {"", {}, columns, {{"0", "1", "7", "", "", "0.5", "1"}}}};
  test.stepwise = {
      true,
      {1, 0, 2},
      {"1", "2", "3"},
      {"", {}, columns, {{"1", "2", "7", "", "", "0.5", "1"}, {"0", "0", "__MISSING__"}}}};
  test.messages = {{220013, "warning", {}, {{"group", "0;0"}}}};
  const Json result = Report(document)["tests"][0];
  EXPECT_EQ(result["pairwise"]["comparisons"][0]["first"], "c");
  EXPECT_EQ(result["pairwise"]["comparisons"][0]["second"], "Alpha");
  EXPECT_EQ(result["pairwise"]["comparisons"][0]["sig"], 0.5);
  EXPECT_EQ(result["stepwise"]["samples"][0]["label"], "b");
  EXPECT_EQ(result["stepwise"]["subsets"][0]["samples"], Json({"Alpha", "c"}));
  EXPECT_EQ(result["stepwise"]["subsets"][1]["samples"], Json({"b"}));
  EXPECT_THAT(result["messages"][0]["text"].get<std::string>(), testing::HasSubstr("(b)"));
}

TEST(JsonReportTest, OutliersCarryTheirCase) {
  ResultDocument document = GroupDocument();
  document.tests[0].boxPlots = {
      {0, "2.5", {"1", "2", "3", "4", "5"}, {{"9", "7", ""}, {"8", "", ""}}}};
  NameCases(document, [](double identifier) { return identifier == 7.0 ? "Zo\xc3\xab" : ""; });
  const Json plot = Report(document)["tests"][0]["boxPlots"][0];
  EXPECT_EQ(plot["label"], "Alpha");
  EXPECT_EQ(plot["upperQuartile"], 4);
  EXPECT_EQ(plot["outliers"][0]["case"], "Zo\xc3\xab");
  EXPECT_EQ(plot["outliers"][0]["caseId"], 7);
  EXPECT_EQ(plot["outliers"][1]["case"], nullptr);
}

TEST(JsonReportTest, ExtendedTablesNameTheirRows) {
  ResultDocument document = GroupDocument();
  EXPECT_FALSE(Report(document)["tests"][0].contains("extended"));
  ResultTest& test = document.tests[0];
  test.extended = {{{"", "TotalN", "12"}, {"", "EtaSquaredH", "0.25"}},
                   {{"Groups", {"0", "2"}, {"N", "MeanRank"}, {{"5", "2.5"}, {"7", ""}}},
                    {"Fields", {"1"}, {"N"}, {{"9"}}},
                    {"Pairs", {}, {"Sample1", "EffectR"}, {{"1", "-0.5"}}}}};
  EXPECT_EQ(Report(document)["tests"][0]["extended"], Json::parse(R"({
      "totalN": 12, "etaSquaredH": 0.25,
      "groups": [{"row": "Alpha", "n": 5, "meanRank": 2.5}, {"row": "c", "n": 7, "meanRank": null}],
      "fields": [{"row": "g", "n": 9}],
      "pairs": [{"sample1": 1, "effectR": -0.5}]})"));

  test.extended->tables = {{"Groups", {"Group0", "Group1"}, {"N"}, {{"5"}, {"7"}}}};
  const auto rows = [&] {
    const Json groups = Report(document)["tests"][0]["extended"]["groups"];
    return groups[0]["row"].get<std::string>() + " and " + groups[1]["row"].get<std::string>();
  };
  EXPECT_EQ(rows(), "group 1 and group 2");
  document.fields[1].categories.pop_back();
  test.conditionKey = "DefaultAllDistinctValuesUsed_I_HodgesLehmann_2";
  EXPECT_EQ(rows(), "Alpha and b");
  test.groups = {{{0, 1}, {}, {}}, {{0}, {}, {}}};
  EXPECT_EQ(rows(), "Alpha, b and Alpha");
}

TEST(JsonReportTest, AnyNameMakesValidJson) {
  for (const std::string& name : {std::string("quote \" back\\slash"), std::string("\x1b[31m\n\t"),
                                  std::string("no \xff UTF-8"), std::string(10000, 'x')}) {
    ResultDocument document = GroupDocument();
    document.fields[0].name = name;
    const Json report = Report(document);
    if (name.find('\xff') == std::string::npos) {
      EXPECT_EQ(report["fields"][0]["name"], name);
    }
  }
}

TEST(JsonReportTest, TheSchemaRefusesWhatIsNoReport) {
  const Json schema = Schema();
  const Json report = Json::parse(Text(GroupDocument()));
  Json lacks = report;
  lacks["tests"][0].erase("decision");
  EXPECT_EQ(SchemaBreach(lacks, schema), "/tests/0: lacks decision");
  Json more = report;
  more["surprise"] = 1;
  EXPECT_EQ(SchemaBreach(more, schema), "/surprise: not allowed");
  Json text = report;
  text["tests"][0]["statistics"]["totalN"] = true;
  EXPECT_NE(SchemaBreach(text, schema), "");
}

}  // namespace
}  // namespace npar_host

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <npar/analysis.h>

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <thread>

#include "host/data/csv.h"
#include "host/data/reshape.h"
#include "support/analysis_handle.h"
#include "support/arrow_data.h"
#include "support/process.h"

namespace {

using nlohmann::json;
using testing::HasSubstr;

struct RoadCase {
  const char* file;
  std::vector<std::pair<std::string, std::string>> options;
};

/// The columns of an example that the options name.
npar_host::Dataset ReadExample(const RoadCase& row) {
  npar_host::CsvReader reader(std::string("examples/") + row.file + ".csv");
  std::vector<npar_host::CellReading> readings;
  for (const std::string& name : reader.Names()) {
    const bool isNamed =
        std::ranges::any_of(row.options, [&](const auto& option) { return option.second == name; });
    readings.push_back(isNamed ? npar_host::CellReading::Detect : npar_host::CellReading::Skip);
  }
  return reader.Read(readings);
}

/// Cells as Arrow columns: floats, and texts as a dictionary or as they are.
std::vector<ArrowData> AsArrow(const npar_host::Dataset& data, bool asDictionary) {
  std::vector<ArrowData> columns;
  for (std::size_t i = 0; i < data.columns.size(); ++i) {
    const npar_host::Column& column = data.columns[i];
    ArrowData& made = columns.emplace_back();
    made.name = column.name;
    made.format = !column.isText ? "g" : asDictionary ? "i" : "vu";
    if (column.isText && asDictionary) {
      made.dictionary = std::make_shared<ArrowData>(ArrowData{"", "U", {"no record has it"}});
      for (std::size_t code = 0; code < column.texts.Size(); ++code) {
        made.dictionary->records.emplace_back(column.texts[code]);
      }
    }
    for (std::size_t record = 0; record < data.records; ++record) {
      const double cell = column.Cell(record);
      auto& value = made.records.emplace_back();
      if (column.IsMissing(cell)) continue;
      const auto code = static_cast<std::int32_t>(column.isText ? cell : 0);
      if (!column.isText) value = BytesOf<double>({cell}).front();
      if (made.format == "i") value = BytesOf<std::int32_t>({code + 1}).front();
      if (made.format == "vu") value = std::string(column.texts[static_cast<std::size_t>(code)]);
    }
  }
  return columns;
}

/// What is told of a run, but for the number that names it.
json Report(const std::string& text) {
  json report = json::parse(text);
  report.erase("modelId");
  return report;
}

// Every family, with weights, cases, missing values, numbers that are groups and texts.
TEST(AnalysisLibraryTest, TellsWhatTheCommandLineTells) {
  const RoadCase rows[] = {
      {"sleep", {{"related", "drug1"}, {"related", "drug2"}, {"case-id", "patient"}}},
      {"insect_sprays", {{"independent", "count"}, {"by", "spray"}, {"adjust", "holm"}}},
      {"insect_sprays",
       {{"independent", "count"}, {"by", "spray"}, {"test", "jonckheere-terpstra"}}},
      {"airquality",
       {{"one-sample", "Ozone"},
        {"independent", "Ozone"},
        {"by", "Month"},
        {"missing", "listwise"}}},
      {"titanic", {{"one-sample", "class"}, {"one-sample", "survived"}, {"weight", "freq"}}},
      {"tooth_growth",
       {{"independent", "len"},
        {"by", "supp"},
        {"test", "moses:outliers=2"},
        {"significance", "0.01"},
        {"confidence", "0.9"},
        {"extended", "false"}}},
  };
  for (const RoadCase& row : rows) {
    const npar_host::Dataset data = ReadExample(row);
    const std::string program = NPAR_BUILD_DIR "/bin/npar";
    std::vector<std::string> command = {program, "analyse", "-", "--no-trace", "--report", "json"};
    for (const auto& [option, value] : row.options) {
      const bool isFlag = option == "extended";
      command.push_back(isFlag ? "--no-extended" : "--" + option);
      if (!isFlag) command.push_back(value);
    }
    const ProcessResult told = RunProcess(command, npar_host::WriteCsv(data));
    ASSERT_EQ(told.exitCode, 0) << told.err;
    for (const bool asDictionary : {false, true}) {
      SCOPED_TRACE(std::string(row.file) + (asDictionary ? ", dictionaries, batches" : ""));
      AnalysisHandle analysis;
      analysis.Set(row.options);
      analysis.Read(AsArrow(data, asDictionary),
                    asDictionary ? ArrowCut{{3, 0, 2}, 5, 1} : ArrowCut{});
      ASSERT_EQ(analysis.Run(), NPAR_A_OK) << analysis.Error();
      EXPECT_EQ(json::diff(Report(told.out), Report(analysis.Result("json"))), json::array());
    }
  }
}

TEST(AnalysisLibraryTest, ColumnsByPointersAndAStreamGiveTheSame) {
  const std::vector<double> scores = {3, 1, 2, 5, 4, 7, 8, 6, 9, 12};
  const std::vector<std::int8_t> groups = {1, 1, 1, 1, 1, 2, 2, 2, 2, 2};
  const char bytes[] = "nonebeforeafter";
  const std::int32_t offsets[] = {0, 4, 10, 15};
  const auto entries = std::make_shared<ArrowData>(ArrowData{"", "u", {"none", "before", "after"}});
  AnalysisHandle streamed;
  AnalysisHandle given;
  for (AnalysisHandle* analysis : {&streamed, &given}) {
    analysis->Set({{"independent", "score"}, {"by", "time"}, {"test", "jonckheere-terpstra"}});
  }
  streamed.Read({{"score", "g", BytesOf(scores)}, {"time", "c", BytesOf(groups), entries, true}});
  const NparColumn dictionary = {.size = sizeof(NparColumn),
                                 .name = nullptr,
                                 .format = "u",
                                 .length = 3,
                                 .validity = nullptr,
                                 .values = bytes,
                                 .offsets = offsets,
                                 .dictionary = nullptr,
                                 .ordered = 0};
  const NparColumn score = {.size = sizeof(NparColumn),
                            .name = "score",
                            .format = "g",
                            .length = 10,
                            .validity = nullptr,
                            .values = scores.data(),
                            .offsets = nullptr,
                            .dictionary = nullptr,
                            .ordered = 0};
  const NparColumn time = {.size = sizeof(NparColumn),
                           .name = "time",
                           .format = "c",
                           .length = 10,
                           .validity = nullptr,
                           .values = groups.data(),
                           .offsets = nullptr,
                           .dictionary = &dictionary,
                           .ordered = 1};
  EXPECT_EQ(npar_analysis_add_column(given.Get(), &score), NPAR_A_OK);
  EXPECT_EQ(npar_analysis_add_column(given.Get(), &time), NPAR_A_OK);
  EXPECT_EQ(streamed.Run(), NPAR_A_OK) << streamed.Error();
  EXPECT_EQ(given.Run(), NPAR_A_OK) << given.Error();
  const json report = Report(streamed.Result("json"));
  const json figures = json::parse(given.Result("figures"));  // of a document not yet read
  for (const auto& [key, value] : figures.at(0).items()) EXPECT_EQ(report["tests"][0][key], value);
  EXPECT_EQ(json::diff(report, Report(given.Result("json"))), json::array());
  json tests = report["tests"];
  for (json& test : tests) {
    for (json& group : test["groups"]) group.erase("bins");
  }
  EXPECT_EQ(json::diff(tests, json::parse(streamed.Result("tests"))), json::array());
  // The order is the dictionary's; an entry without a record is no group.
  const json& field = report["fields"][1];
  EXPECT_EQ(field["categories"][0]["value"], "before");
  EXPECT_EQ(field["categories"].size(), 2);
}

struct FailureCase {
  const char* catches;
  std::vector<std::pair<std::string, std::string>> options;
  uint32_t code;
  json field;
  const char* message;
  const char* remedy;  // empty: none
};

TEST(AnalysisLibraryTest, FailuresTellCodeFieldAndRemedy) {
  const FailureCase rows[] = {
      {"nothing asked", {}, NPAR_A_USAGE, nullptr, "no field to analyse", ""},
      {"a field that is not there", {{"one-sample", "y"}}, NPAR_A_USAGE, "y", "no field \"y\"", ""},
      {"two measures",
       {{"one-sample", "x"}, {"nominal", "x"}, {"ordinal", "x"}},
       NPAR_A_USAGE,
       "x",
       "two measurement levels",
       ""},
      {"a level out of range",
       {{"one-sample", "x"}, {"significance", "2"}},
       NPAR_A_USAGE,
       nullptr,
       "--significance",
       ""},
      {"a category that no record has",
       {{"independent", "x"}, {"by", "t"}, {"test", "mann-whitney:group1=a,group2=c"}},
       NPAR_A_USAGE,
       nullptr,
       "\"c\"",
       "the categories are \"a\" and \"b\""},
      {"texts that are to be numbers",
       {{"one-sample", "t"}, {"continuous", "t"}},
       NPAR_A_INPUT,
       "t",
       "its cells are no numbers",
       "--scores gives categories numbers"},
      {"a type",
       {{"one-sample", "z"}},
       NPAR_A_INPUT,
       "z",
       "column \"z\" (binary)",
       "convert the column, or name another"},
  };
  for (const FailureCase& row : rows) {
    SCOPED_TRACE(row.catches);
    AnalysisHandle analysis;
    analysis.Set(row.options);
    analysis.Read({{"x", "g", BytesOf<double>({1, 2, 3})},
                   {"t", "u", {"a", "b", "a"}},
                   {"z", "z", {"1", "2", "3"}}});
    EXPECT_EQ(analysis.Run(), row.code);
    const json error = analysis.Error();
    EXPECT_EQ(error["code"], row.code);
    EXPECT_EQ(error["field"], row.field);
    EXPECT_THAT(error["message"].get<std::string>(), HasSubstr(row.message));
    EXPECT_EQ(error["remedy"], *row.remedy == '\0' ? json() : json(row.remedy));
  }
}

TEST(AnalysisLibraryTest, OptionsThatAreNoneAreRefusedAtOnce) {
  AnalysisHandle analysis;
  for (const auto& [option, value] :
       std::vector<std::pair<const char*, const char*>>{{"independnt", "x"},
                                                        {"test", "man-whitney"},
                                                        {"missing", "pairwise"},
                                                        {"significance", "half"},
                                                        {"adjust", "fisher"},
                                                        {"threads", "-1"},
                                                        {"extended", "yes"},
                                                        {nullptr, "x"},
                                                        {"by", nullptr}}) {
    EXPECT_EQ(npar_analysis_set(analysis.Get(), option, value), NPAR_A_USAGE) << option;
  }
  EXPECT_EQ(npar_analysis_set(nullptr, "by", "g"), NPAR_A_USAGE);
  EXPECT_THAT(npar_analysis_error(nullptr), HasSubstr("there is no analysis"));
}

TEST(AnalysisLibraryTest, ARefusedRunTellsTheComponentsMessages) {
  AnalysisHandle analysis;
  analysis.Set({{"one-sample", "x"}, {"weight", "n"}});
  analysis.Read({{"x", "g", BytesOf<double>({1, 2})}, {"n", "g", BytesOf<double>({1, 1e10})}});
  EXPECT_EQ(analysis.Run(), NPAR_A_REFUSED);
  const json error = analysis.Error();
  EXPECT_EQ(error["messages"][0]["code"], 220026);
  EXPECT_EQ(error["messages"][0]["kind"], "error");
  EXPECT_FALSE(error["remedy"].is_null());
  analysis.Read({{"x", "g", {}}, {"n", "g", {}}});
  EXPECT_EQ(analysis.Run(), NPAR_A_REFUSED);
  EXPECT_EQ(analysis.Error()["messages"][0]["code"], 240037) << "no records";
}

TEST(AnalysisLibraryTest, CallsOutOfOrderAreRefusedAndHurtNothing) {
  AnalysisHandle analysis;
  const char* text = nullptr;
  EXPECT_EQ(analysis.Run(), NPAR_A_STATE) << "no data";
  EXPECT_EQ(npar_analysis_result(analysis.Get(), "json", &text, nullptr), NPAR_A_STATE);
  analysis.Set({{"one-sample", "x"}});
  const std::vector<ArrowData> data = {{"x", "g", BytesOf<double>({1, 2, 4})}};
  analysis.Read(data);
  ArrowStreamOfData second(data);
  EXPECT_EQ(npar_analysis_read_stream(analysis.Get(), second.Stream()), NPAR_A_STATE);
  EXPECT_EQ(second.Held(), 0) << "released, whatever is answered";
  EXPECT_EQ(analysis.Run(), NPAR_A_OK);
  EXPECT_EQ(npar_analysis_result(analysis.Get(), "pdf", &text, nullptr), NPAR_A_USAGE);
  EXPECT_THAT(analysis.Result("notes"), HasSubstr("inferred: continuous: x"));
  EXPECT_EQ(analysis.Run(), NPAR_A_STATE) << "the data are used up";
  analysis.Read(data);
  EXPECT_EQ(analysis.Run(), NPAR_A_OK);
}

std::vector<double> ManyNumbers() {
  std::vector<double> numbers(300000);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    numbers[i] = static_cast<double>(i * 7919 % numbers.size());
  }
  return numbers;
}

TEST(AnalysisLibraryTest, ACancelEndsTheRunUnderWayOrTheNext) {
  AnalysisHandle analysis;
  analysis.Set({{"one-sample", "x"}, {"test", "wilcoxon:median=3"}});
  const std::vector<ArrowData> data = {{"x", "g", BytesOf(ManyNumbers())}};
  npar_analysis_cancel(analysis.Get());
  analysis.Read(data);
  EXPECT_EQ(analysis.Run(), NPAR_A_CANCELLED) << "before";
  analysis.Read(data);
  const auto stop = [](double, double, void* own) {
    const auto handle = static_cast<NparAnalysis*>(own);
    EXPECT_EQ(npar_analysis_set(handle, "by", "x"), NPAR_A_STATE) << "a run is under way";
    npar_analysis_cancel(handle);
  };
  EXPECT_EQ(npar_analysis_run(analysis.Get(), stop, analysis.Get()), NPAR_A_CANCELLED);
  analysis.Read(data);
  EXPECT_EQ(analysis.Run(), NPAR_A_OK) << "a cancel is good for one run";
}

TEST(AnalysisLibraryTest, ThreadsRunAnalysesOfTheirOwn) {
  const RoadCase sprays = {"insect_sprays", {{"independent", "count"}, {"by", "spray"}}};
  std::vector<std::string> statistics(4);
  std::vector<std::thread> threads;
  threads.reserve(statistics.size());
  for (std::string& statistic : statistics) {
    threads.emplace_back([&statistic, &sprays] {
      for (int run = 0; run < 5; ++run) {
        AnalysisHandle analysis;
        analysis.Set(sprays.options);
        analysis.Read(AsArrow(ReadExample(sprays), true));
        if (analysis.Run() != NPAR_A_OK) return;
        statistic = json::parse(analysis.Result("json"))["tests"][0]["statistics"].dump();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_THAT(statistics[0], HasSubstr("testStatistic"));
  EXPECT_THAT(statistics, testing::Each(statistics[0]));
}

TEST(AnalysisLibraryTest, TheCatalogueIsThatOfTheCommandLine) {
  size_t length = 0;
  const std::string catalogue = npar_catalogue(&length);
  EXPECT_EQ(catalogue.size(), length);
  EXPECT_EQ(catalogue, RunProcess({NPAR_BUILD_DIR "/bin/npar", "tests", "--json"}).out);
  EXPECT_EQ(std::string("npar ") + npar_version() + "\n",
            RunProcess({NPAR_BUILD_DIR "/bin/npar", "--version"}).out);
}

TEST(AnalysisLibraryTest, TheExamplePrintsThePOfTheSignTest) {
  const ProcessResult outcome = RunProcess({NPAR_BUILD_DIR "/bin/example_analysis"});
  EXPECT_EQ(outcome.exitCode, 0) << outcome.err;
  // Nine positive differences, none negative: 2 / 2^9.
  EXPECT_EQ(outcome.out, "\"exactSig2Tailed\": 0.00390625\n");
}

}  // namespace

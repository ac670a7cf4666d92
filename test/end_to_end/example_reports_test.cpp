#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <set>
#include <sstream>

#include "host/data/number.h"
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

struct TextReport {
  const char* file;  // of references/reports
  std::string command;
};

const TextReport kTextReports[] = {
    {"pair.txt",
     "examples/sleep.csv --related drug1,drug2 --case-id patient --test sign --test "
     "wilcoxon-pairs"},
    {"groups.txt",
     "examples/insect_sprays.csv --independent count --by spray --test "
     "kruskal-wallis:compare=stepwise"},
    {"ascii_groups.txt",
     "examples/tooth_growth.csv --independent len --by supp --test mann-whitney --ascii"},
    {"categories.txt",
     "examples/titanic.csv --one-sample sex --weight freq --test "
     "binomial:intervals=clopper-pearson|jeffreys"},
};

TEST(TextReportOfExamples, AreThoseOfTheReferences) {
  for (const TextReport& row : kTextReports) {
    std::istringstream words(row.command);
    EXPECT_EQ(Analyse({std::istream_iterator<std::string>(words), {}}),
              FileContent(std::string("test/support/references/reports/") + row.file))
        << row.command;
  }
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

std::string ResultOf(const Example& example, bool isExtended = false) {
  std::string parameters = FileContent("examples/" + example.parameters);
  if (isExtended) {
    parameters.insert(parameters.find("</Parameters>"),
                      R"(<Parameter name="extendedFigures" value="true"/>)");
  }
  std::vector<std::string> command = {kProgram, "run",    "--params",
                                      "-",      "--data", "examples/" + example.data};
  if (!example.model.empty()) {
    command.insert(command.end(), {"--model", "examples/" + example.model});
  }
  const ProcessResult run = RunProcess(command, parameters);
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

void ExpectEveryNumberOfTheDocument(const Example& example, bool isExtended) {
  using namespace npar_host;
  SCOPED_TRACE(example.parameters);
  const std::string result = ResultOf(example, isExtended);
  const ResultDocument document = ReadResultDocument(result, "result");
  // Columns "25 %" and "75 %", intervals of 95 %, the numbers of tests and subsets.
  std::set<std::string> known = {"25", "75", "95", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
  for (const std::string& text : NumbersOf(std::regex_replace(result, std::regex(";"), " ; "))) {
    known.insert({text, FigureText(text)});  // messages have theirs unrounded
    std::array<char, 32> digits{};
    std::snprintf(digits.data(), digits.size(), "%.3f", std::strtod(text.c_str(), nullptr));
    known.insert(digits.data() + 1);  // "p = .004"
    // "95.12 %": a level that limits attain
    known.insert(
        FigureText(NumberText(std::round(1e4 * std::strtod(text.c_str(), nullptr)) / 100)));
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

TEST(ExampleReportsTest, EveryNumberOfATextReportIsInTheDocument) {
  const std::vector<Example> examples = Examples();
  ASSERT_GE(examples.size(), 20u);
  for (const Example& example : examples) {
    ExpectEveryNumberOfTheDocument(example, false);
    ExpectEveryNumberOfTheDocument(example, true);
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

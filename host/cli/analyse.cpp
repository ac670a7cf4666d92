#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <optional>
#include <set>

#include "host/analysis/request_facts.h"
#include "host/cli/analyse_options.h"
#include "host/cli/analysis_cells.h"
#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/cli/execution.h"
#include "host/cli/output.h"
#include "host/cli/plot_files.h"
#include "host/cli/report_request.h"
#include "host/cli/trace.h"
#include "host/data/reshape.h"
#include "host/os/utf8_path.h"
#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"
#include "host/request/field_inference.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kExamples =
    R"(A family of fields without a --test of its own gets the tests that fit the fields'
measurement levels: without --continuous and its like, a column of numbers is continuous
(one of no more than two different numbers nominal, where no test needs it otherwise) and
any other nominal, and so is the field of --by. npar tests lists the tests and their
options. A list of fields takes ranges and patterns. A backslash takes the character after
it as it stands, and quotes a whole name, where a name holds a separator.

Examples:
  npar analyse examples/sleep.csv --related drug1,drug2 --test sign
  npar analyse scores.csv --independent score --by class --test 'mann-whitney:group1=a,group2=b|c'
  npar analyse survey.csv --one-sample answer --test 'chi-square:expected=yes=2|no=1'
  npar analyse survey.csv --related before,after --ordinal 'before=low<high,after=low<high'
  npar analyse answers.csv --related q1-q5 --scores 'q*=never<sometimes<often'
  npar analyse export.csv.gz --independent score --by sex --decimal , --missing-token n.d.
  npar analyse counts.csv --one-sample sex --weight n --report text --report text=report.txt
)";

constexpr const char* kKeptParameters = "params.xml";
constexpr const char* kKeptModel = "model.xml";
constexpr const char* kKeptData = "data.csv";

void KeepDocuments(const std::string& folder, const NamedText& parameters, const NamedText& model) {
  MakeFolder(folder);
  const std::filesystem::path path = Utf8Path(folder);
  Publish(Utf8Name(path / kKeptParameters), parameters.text);
  Publish(Utf8Name(path / kKeptModel), model.text);
}

// npar run takes the cells as they stand in its file.
void KeepData(const std::string& folder, const Dataset& data) {
  Publish(Utf8Name(Utf8Path(folder) / kKeptData), WriteCsv(data));
}

std::vector<ReportRequest> Reports(const AnalyseOptions& options) {
  std::vector<ReportRequest> reports;
  for (const std::string& report : options.reports) reports.push_back(ParseReportRequest(report));
  if (reports.empty() && options.out != "-") reports.push_back(ParseReportRequest("text"));
  return reports;
}

void AddOutputs(const AnalyseOptions& options, std::vector<std::string>& files) {
  if (!options.out.empty()) files.push_back(options.out);
  for (const ReportRequest& report : Reports(options)) files.push_back(report.path);
  if (options.keepDocuments.empty()) return;
  for (const char* name : {kKeptParameters, kKeptModel, kKeptData}) {
    files.push_back(Utf8Name(Utf8Path(options.keepDocuments) / name));
  }
}

int ExitCodeOf(const ResultDocument& document) {
  const bool isAllFailed =
      !document.tests.empty() && std::ranges::all_of(document.tests, &ResultTest::Failed);
  return isAllFailed ? kExitAllFailed : kExitSuccess;
}

// Tells what the fields are taken for, and what is odd about them.
RequestFacts InferFields(const Execution& execution, AnalysisCells& analysis) {
  FieldInference inference(execution.Reader(), *analysis.cells);
  inference.Infer(analysis.request);
  for (const std::string& note : analysis.notes) Tell("npar: " + note);
  for (const std::string& note : inference.Notes(analysis.request)) Tell("npar: " + note);
  return FindRequestFacts(analysis.request, inference);
}

int Analyse(const AnalyseOptions& options, PlotWriter& plots) {
  Execution execution(options.execution);
  AnalysisCells analysis = ReadAnalysisCells(options, execution);
  RequestFacts facts = InferFields(execution, analysis);
  const AnalysisRequest& request = analysis.request;
  const auto model = [&] { return NamedText{"the data model", DataModelDocument(request)}; };
  const NamedText parameters{"the parameter document", ParameterDocument(request)};
  if (!options.keepDocuments.empty()) {
    KeepDocuments(options.keepDocuments, parameters, model());
    if (analysis.isReshaped) KeepData(options.keepDocuments, *analysis.cells);
  }
  if (options.isPlan) return kExitSuccess;
  execution.FindModel(model());
  auto text = execution.Run(parameters);
  if (!text) return execution.ExitCode();

  if (!options.out.empty()) Publish(options.out, *text);
  ResultDocument document = ReadResultDocument(*std::move(text), "the result document");
  NameCases(document, [&](double identifier) { return execution.CaseText(identifier); });
  Adjust(document, options.adjust);
  if (const PreparedData* records = execution.Records()) {
    facts.values = CollectValues(*records);
    TellRequest(document, request, facts);
    TellSuccesses(document, request, *records);
  }
  if (!options.noTrace) {
    document.trace = MakeTrace(options.execution.dataPath, document, facts.fields);
  }
  for (const ReportRequest& report : Reports(options)) {
    Publish(report.path, [&](const TextSink& sink) {
      report.renderer->render(document, StyleFor(report.path, options.choices), sink);
    });
  }
  if (!options.plots.empty()) plots.Write(options.plots, document);
  return ExitCodeOf(document);
}

// What the files of each group field's analysis are called by, in words for file names. Names that
// are such words stay; others that would be the same get a number.
std::vector<std::string> FileWords(const std::vector<std::string>& groups) {
  std::vector<std::string> words;
  std::set<std::string> taken;
  for (const std::string& group : groups) {
    std::string& word = words.emplace_back(Unescape(group));
    if (word.find('/') == std::string::npos) taken.insert(word);
  }
  for (std::string& word : words) {
    if (word.find('/') == std::string::npos) continue;
    std::ranges::replace(word, '/', '_');
    const std::string plain = word;
    for (int number = 2; !taken.insert(word).second; ++number) {
      word = plain + "_" + std::to_string(number);
    }
  }
  return words;
}

// "out.sex.xml": where each of several analyses writes.
std::string PathOf(const std::string& path, const std::string& word) {
  if (path.empty() || path == "-") return path;
  const std::filesystem::path whole = Utf8Path(path);
  return Utf8Name(whole.parent_path() / whole.stem()) + "." + word + Utf8Name(whole.extension());
}

AnalyseOptions OptionsFor(const AnalyseOptions& options, const std::string& group,
                          const std::string& word) {
  AnalyseOptions one = options;
  one.group = group;
  one.out = PathOf(options.out, word);
  one.keepDocuments = PathOf(options.keepDocuments, word);
  for (std::string& report : one.reports) {
    const std::size_t sign = report.find('=');
    if (sign == std::string::npos) continue;
    report = report.substr(0, sign + 1) + PathOf(report.substr(sign + 1), word);
  }
  return one;
}

// An analysis for each group field.
std::vector<AnalyseOptions> AnalysesOf(const AnalyseOptions& options) {
  const std::vector<std::string> groups = FieldItems(options.groups);
  std::vector<AnalyseOptions> analyses;
  if (groups.size() < 2) {
    analyses.push_back(options);
    if (!groups.empty()) analyses.back().group = groups.front();
    return analyses;
  }
  if (options.execution.dataPath == "-") {
    throw UsageError("several --by read the data once for each: give a file instead of -");
  }
  const std::vector<std::string> words = FileWords(groups);
  for (std::size_t i = 0; i < groups.size(); ++i) {
    analyses.push_back(OptionsFor(options, groups[i], words[i]));
  }
  return analyses;
}

int AnalyseAll(const AnalyseOptions& options) {
  const std::vector<AnalyseOptions> analyses = AnalysesOf(options);
  CallFiles files{{options.execution.dataPath}, {}};
  for (const AnalyseOptions& one : analyses) AddOutputs(one, files.written);
  CheckOutputs(files);
  PlotWriter plots(files);
  int worst = kExitSuccess;
  for (const AnalyseOptions& one : analyses) {
    const int code = Analyse(one, plots);
    if (code == kExitCancelled) return code;
    if (worst == kExitSuccess) worst = code;
  }
  return worst;
}

}  // namespace

void AddAnalyseCommand(CLI::App& program, int& exitCode) {
  auto* command =
      program.add_subcommand("analyse", "Tests fields of a CSV file and prints a report.");
  const auto options = std::make_shared<AnalyseOptions>();
  AddAnalyseOptions(*command, *options);
  command->footer(kExamples);
  command->callback([options, &exitCode] { exitCode = AnalyseAll(*options); });
}

}  // namespace npar_host

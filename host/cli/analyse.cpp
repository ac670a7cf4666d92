#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <memory>

#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/cli/execution.h"
#include "host/cli/output.h"
#include "host/cli/report_request.h"
#include "host/cli/trace.h"
#include "host/render/adjustment.h"
#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

constexpr const char* kExamples =
    R"(A family of fields without a --test of its own gets the tests that fit the fields'
measurement levels: without --continuous and its like, a column of numbers is continuous
and any other nominal, and so is the field of --by. npar tests lists the tests and their
options. A backslash takes the character after it as it stands, where a name holds a
separator.

Examples:
  npar analyse examples/sleep.csv --related drug1,drug2 --test sign
  npar analyse scores.csv --independent score --by class --test 'mann-whitney:group1=a,group2=b|c'
  npar analyse survey.csv --one-sample answer --test 'chi-square:expected=yes=2|no=1'
  npar analyse survey.csv --related before,after --ordinal 'before=low<high,after=low<high'
  npar analyse counts.csv --one-sample sex --weight n --report text --report text=report.txt
)";

struct AnalyseOptions {
  ExecutionOptions execution;
  std::vector<std::string> oneSample, related, independent;
  std::vector<std::string> continuous, nominal, ordinal;
  std::string group, weight, caseId;
  std::vector<std::string> tests;
  double significance = 0.05;
  double confidence = 95.0;
  std::string missing = "analysis";
  bool noExtended = false;
  std::string keepDocuments;
  std::string out;
  std::vector<std::string> reports;
  TextChoices choices;
  bool noTrace = false;
  std::string plots;
  std::string adjust = "none";
};

// "a,b" and repeated options make one list.
std::vector<std::string> FieldList(const std::vector<std::string>& texts) {
  std::vector<std::string> fields;
  for (const std::string& text : texts) {
    for (const std::string& field : SplitWords(text, ',')) fields.push_back(Unescape(field));
  }
  return fields;
}

void AddMeasures(AnalysisRequest& request, const std::vector<std::string>& texts,
                 const char* measure) {
  for (const std::string& text : texts) {
    for (const std::string& field : SplitWords(text, ',')) {
      request.measures.push_back(ParseFieldMeasure(field, measure));
    }
  }
}

AnalysisRequest MakeRequest(const AnalyseOptions& options) {
  AnalysisRequest request;
  request.oneSampleFields = FieldList(options.oneSample);
  request.relatedFields = FieldList(options.related);
  request.independentFields = FieldList(options.independent);
  request.groupField = Unescape(options.group);
  for (const std::string& test : options.tests) request.tests.push_back(TestRequest::Parse(test));
  AddMeasures(request, options.continuous, "continuous");
  AddMeasures(request, options.nominal, "nominal");
  AddMeasures(request, options.ordinal, "ordinal");
  request.weightField = Unescape(options.weight);
  request.caseIdField = Unescape(options.caseId);
  request.significance = options.significance;
  request.confidencePercent = options.confidence;
  request.extendedFigures = !options.noExtended;
  request.listwise = options.missing == "listwise";
  return request;
}

constexpr const char* kKeptParameters = "params.xml";
constexpr const char* kKeptModel = "model.xml";

void KeepDocuments(const std::string& folder, const NamedText& parameters, const NamedText& model) {
  MakeFolder(folder);
  const std::filesystem::path path(folder);
  Publish((path / kKeptParameters).string(), parameters.text);
  Publish((path / kKeptModel).string(), model.text);
}

std::vector<std::string> OutputFiles(const AnalyseOptions& options,
                                     const std::vector<ReportRequest>& reports) {
  std::vector<std::string> files = {options.out};
  for (const ReportRequest& report : reports) files.push_back(report.path);
  if (!options.keepDocuments.empty()) {
    for (const char* name : {kKeptParameters, kKeptModel}) {
      files.push_back((std::filesystem::path(options.keepDocuments) / name).string());
    }
  }
  return files;
}

// Tests are chosen and refused by measurement levels, so those that nobody gave are told.
void TellInferredMeasures(const AnalysisRequest& request, const Execution& execution) {
  std::vector<std::string> fields;
  for (const std::string& name : request.NamedFields()) {
    const bool isGiven =
        name == request.weightField || name == request.caseIdField ||
        std::ranges::find(request.measures, name, &FieldMeasure::field) != request.measures.end();
    if (!isGiven) fields.push_back(name);
  }
  const std::string inferred = execution.InferredMeasures(fields);
  if (!inferred.empty()) Tell("npar: inferred: " + inferred);
}

int Analyse(const AnalyseOptions& options) {
  const AnalysisRequest request = MakeRequest(options);
  CheckRequest(request);
  std::vector<ReportRequest> reports;
  for (const std::string& report : options.reports) reports.push_back(ParseReportRequest(report));
  if (reports.empty() && options.out != "-") reports.push_back(ParseReportRequest("text"));

  CheckOutputs(OutputFiles(options, reports), {options.execution.dataPath});

  Execution execution(options.execution);
  CheckFields(request, execution.Columns());
  const NamedText parameters{"the parameter document", ParameterDocument(request)};
  const NamedText model{"the data model", DataModelDocument(request)};
  if (!options.keepDocuments.empty()) KeepDocuments(options.keepDocuments, parameters, model);
  auto text = execution.Run(parameters, model);
  TellInferredMeasures(request, execution);
  if (!text) return execution.ExitCode();

  if (!options.out.empty()) {
    execution.PublishResult(options.out, [&](const TextSink& sink) { sink(*text); });
  }
  ResultDocument document = ReadResultDocument(*std::move(text), "the result document");
  NameCases(document, [&](double identifier) { return execution.CaseText(identifier); });
  AdjustOverTests(document, FindAdjustment(options.adjust));
  if (!options.noTrace) document.trace = MakeTrace(options.execution.dataPath, document);
  for (const ReportRequest& report : reports) {
    execution.PublishResult(report.path, [&](const TextSink& sink) {
      report.renderer->render(document, StyleFor(report.path, options.choices), sink);
    });
  }
  if (!options.plots.empty()) WritePlots(options.plots, document);
  return kExitSuccess;
}

}  // namespace

void AddAnalyseCommand(CLI::App& program, int& exitCode) {
  auto* command =
      program.add_subcommand("analyse", "Tests fields of a CSV file and prints a report.");
  const auto options = std::make_shared<AnalyseOptions>();
  const auto addList = [&](const char* name, std::vector<std::string>& list, const char* type,
                           const char* help) {
    command->add_option(name, list, help)->allow_extra_args(false)->type_name(type);
  };
  command->add_option("DATA", options->execution.dataPath, "CSV file, - for standard input")
      ->type_name("FILE")
      ->required();
  addList("--one-sample", options->oneSample, "F,..", "fields to be tested each on its own");
  addList("--related", options->related, "F,..", "fields measured on the same records");
  addList("--independent", options->independent, "F,..", "fields compared between groups");
  command->add_option("--by", options->group, "the field that divides the records into groups")
      ->type_name("G");
  addList("--test", options->tests, "NAME[:key=value,..]", "a test, with options (npar tests)");
  addList("--continuous", options->continuous, "F,..", "fields that hold measurements");
  addList("--nominal", options->nominal, "F,..", "fields that hold categories");
  addList("--ordinal", options->ordinal, "F[=a<b<c],..", "fields that hold ordered categories");
  command
      ->add_option("--weight", options->weight, "the field that counts how often a record stands")
      ->type_name("F");
  command->add_option("--case-id", options->caseId, "the field that names the records")
      ->type_name("F");
  command->add_option("--significance", options->significance, "significance level")
      ->type_name("NUMBER")
      ->capture_default_str();
  command->add_option("--confidence", options->confidence, "confidence level in percent")
      ->type_name("NUMBER")
      ->capture_default_str();
  command
      ->add_option("--missing", options->missing,
                   "records with missing values: left out of the "
                   "tests that need them (analysis), or of all (listwise)")
      ->check(CLI::IsMember({"analysis", "listwise"}).description(""))
      ->type_name("analysis|listwise")
      ->capture_default_str();
  command->add_flag("--no-extended", options->noExtended,
                    "leave out the figures beside the results: exact values with ties, effect "
                    "sizes, intervals, quartiles");
  command->add_option("--out", options->out, "keep the result document, - for standard output")
      ->type_name("FILE");
  addList("--report", options->reports, "FORM[=FILE]",
          "a report as text, html, json, markdown, latex or csv, to standard output or a file "
          "(default: "
          "text)");
  AddAdjustOption(*command, options->adjust);
  AddTextOptions(*command, options->choices);
  command->add_flag("--no-trace", options->noTrace,
                    "leave file, times and command line out of reports: same input, same bytes");
  AddPlotsOption(*command, options->plots);
  command
      ->add_option("--keep-documents", options->keepDocuments,
                   "write the parameter document and the data model to this folder")
      ->type_name("DIR");
  AddExecutionOptions(*command, options->execution);
  command->footer(kExamples);
  command->callback([options, &exitCode] { exitCode = Analyse(*options); });
}

}  // namespace npar_host

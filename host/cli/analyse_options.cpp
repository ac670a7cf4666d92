#include "host/cli/analyse_options.h"

#include <CLI/CLI.hpp>

#include "host/request/field_list.h"
#include "host/request/scores.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

void AddMeasures(AnalysisRequest& request, const std::vector<std::string>& texts,
                 const char* measure, const std::vector<std::string>& columns) {
  for (const std::string& item : FieldItems(texts)) {
    std::string fields, categories;
    CutAt(item, '=', fields, categories);
    FieldMeasure given = ParseFieldMeasure(item, measure);
    for (const std::string& field : ExpandField(fields, columns)) {
      given.field = field;
      request.measures.push_back(given);
    }
  }
}

std::string OneField(const std::string& text) { return Unescape(EscapeQuoted(text)); }

}  // namespace

std::vector<std::string> FieldItems(const std::vector<std::string>& texts) {
  std::vector<std::string> items;
  for (const std::string& text : texts) {
    for (std::string& item : SplitWords(EscapeQuoted(text), ',')) items.push_back(std::move(item));
  }
  return items;
}

AnalysisRequest MakeRequest(const AnalyseOptions& options, const std::vector<std::string>& columns,
                            const std::vector<std::string>& times) {
  AnalysisRequest request;
  request.oneSampleFields = ExpandFields(FieldItems(options.oneSample), columns);
  request.relatedFields = ExpandFields(FieldItems(options.related), columns);
  request.independentFields = ExpandFields(FieldItems(options.independent), columns);
  const bool hasFields = !request.oneSampleFields.empty() || !request.relatedFields.empty() ||
                         !request.independentFields.empty();
  if (!hasFields) request.relatedFields = times;
  request.groupField = Unescape(options.group);
  for (const std::string& test : options.tests) request.tests.push_back(TestRequest::Parse(test));
  AddMeasures(request, options.continuous, "continuous", columns);
  AddMeasures(request, options.nominal, "nominal", columns);
  AddMeasures(request, options.ordinal, "ordinal", columns);
  for (const std::string& text : options.scores) {
    for (Scoring& scoring : ParseScores(text, columns)) {
      request.measures.push_back({scoring.field, "continuous", {}});
      request.scorings.push_back(std::move(scoring));
    }
  }
  request.weightField = OneField(options.weight);
  request.caseIdField = OneField(options.caseId);
  request.significance = options.significance;
  request.confidencePercent = ConfidencePercent(options.confidence);
  request.extendedFigures = !options.noExtended;
  request.listwise = options.missing == "listwise";
  CheckRequest(request);
  return request;
}

void AddAnalyseOptions(CLI::App& command, AnalyseOptions& options) {
  const auto addList = [&](const char* name, std::vector<std::string>& list, const char* type,
                           const char* help) {
    command.add_option(name, list, help)->allow_extra_args(false)->type_name(type);
  };
  command.add_option("DATA", options.execution.dataPath, "CSV file, - for standard input")
      ->type_name("FILE")
      ->required();
  addList("--one-sample", options.oneSample, "F,..", "fields to be tested each on its own");
  addList("--related", options.related, "F,..", "fields measured on the same records");
  addList("--independent", options.independent, "F,..", "fields compared between groups");
  addList("--by", options.groups, "G,..",
          "the field that divides the records into groups; an analysis for each of several");
  addList("--test", options.tests, "NAME[:key=value,..]", "a test, with options (npar tests)");
  addList("--continuous", options.continuous, "F,..", "fields that hold measurements");
  addList("--nominal", options.nominal, "F,..", "fields that hold categories");
  addList("--ordinal", options.ordinal, "F[=a<b<c],..", "fields that hold ordered categories");
  addList("--scores", options.scores, "F=a<b<c",
          "numbers for ordered categories, 1, 2, 3 or as given: F=a=0,b=2.5");
  command
      .add_option("--long", options.longFields,
                  "a record is one value of a subject at a time; the times become related fields")
      ->type_name("SUBJECT,TIME,VALUE");
  command.add_option("--weight", options.weight, "the field that counts how often a record stands")
      ->type_name("F");
  command.add_option("--case-id", options.caseId, "the field that names the records")
      ->type_name("F");
  command.add_option("--significance", options.significance, "significance level")
      ->type_name("NUMBER")
      ->capture_default_str();
  command
      .add_option("--confidence", options.confidence,
                  "confidence level, in percent or as a proportion")
      ->type_name("NUMBER")
      ->capture_default_str();
  command
      .add_option("--missing", options.missing,
                  "records with missing values: left out of the "
                  "tests that need them (analysis), or of all (listwise)")
      ->check(CLI::IsMember({"analysis", "listwise"}).description(""))
      ->type_name("analysis|listwise")
      ->capture_default_str();
  command.add_flag("--no-extended", options.noExtended,
                   "leave out the figures beside the results: exact values with ties, effect "
                   "sizes, intervals, quartiles");
  command.add_option("--out", options.out, "keep the result document, - for standard output")
      ->type_name("FILE");
  addList("--report", options.reports, "FORM[=FILE]",
          "a report as text, html, json, markdown, latex or csv, to standard output or a file "
          "(default: text)");
  AddAdjustOptions(command, options.adjust);
  command.add_flag("--plan", options.isPlan,
                   "run no test: tell which would run and why, and what the fields are taken for");
  AddTextOptions(command, options.choices);
  command.add_flag("--no-trace", options.noTrace,
                   "leave file, times and command line out of reports: same input, same bytes");
  AddPlotsOption(command, options.plots);
  command
      .add_option("--keep-documents", options.keepDocuments,
                  "write the parameter document and the data model to this folder")
      ->type_name("DIR");
  AddExecutionOptions(command, options.execution);
}

}  // namespace npar_host

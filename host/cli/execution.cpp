#include "host/cli/execution.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <map>
#include <utility>

#include "host/cli/command_line.h"
#include "host/cli/interrupt.h"
#include "host/cli/output.h"
#include "host/cli/progress_bar.h"
#include "host/data/csv.h"
#include "host/data/input_error.h"
#include "host/data/text_source.h"
#include "host/loader/analysis_run.h"
#include "host/messages/messages.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

char SeparatorOf(const std::string& text) {
  if (text.empty()) return 0;
  if (text == "comma") return ',';
  if (text == "semicolon") return ';';
  if (text == "tab" || text == "\\t") return '\t';
  if (text.size() == 1 && text != "\"" && text != "\n" && text != "\r") return text.front();
  throw UsageError("--separator is comma, semicolon, tab or one character, not " + Quoted(text));
}

CsvOptions ReadingOptions(const ExecutionOptions& options) {
  return {SeparatorOf(options.separator), options.missingTokens};
}

std::filesystem::path ComponentPath(const ExecutionOptions& options) {
  return options.component.empty() ? ComponentLibrary::DefaultPath()
                                   : std::filesystem::path(options.component);
}

void PrintMessages(const std::vector<RunMessage>& messages) {
  for (const RunMessage& message : messages) {
    Tell((message.isError ? "error " : "warning ") + std::to_string(message.code) + ": " +
         FillMessage(message.code, message.parameters));
  }
}

}  // namespace

// The watch comes first, so that Ctrl-C is heeded while the data are read too; the component is
// loaded before the data, so that a wrong path is told at once.
struct Execution::State {
  explicit State(const ExecutionOptions& options)
      : library(ComponentPath(options)), reader(options.dataPath, ReadingOptions(options)) {}

  InterruptWatch watch;
  ComponentLibrary library;
  CsvReader reader;
  std::map<std::string, Measure> measures;  // of the data's fields
  std::optional<AnalysisRun> run;           // outlives the run for the names of its cases
};

Execution::Execution(const ExecutionOptions& options) : state(std::make_unique<State>(options)) {}
Execution::~Execution() = default;

const std::vector<std::string>& Execution::Columns() const { return state->reader.Names(); }

std::optional<std::string> Execution::Run(const NamedText& parameters, const NamedText& model) {
  std::optional<ProgressBar> bar(std::in_place);
  bar->Name("reading " + state->reader.SourceName());
  ModelledData data = LoadData(state->reader, ParseModel(model.text, model.name));
  for (const Field& field : data.model.fields) state->measures[field.name] = field.measure;
  AnalysisRun& run = state->run.emplace(state->library, parameters.text, std::move(data));
  run.Prepare();  // up to here Ctrl-C ends the process
  RunResult result;
  {
    run.ListenToProgress({[&](double done, double total) {
                            bar->Show(done, total);
                            // A Ctrl-C that came before the component had begun is not lost.
                            if (state->watch.Interrupted()) run.Cancel();
                          },
                          [&](const PassInHand& pass) { bar->Name(PassTitle(pass)); }});
    const InterruptWatch::Cancelling cancelling(state->watch, [&] { run.Cancel(); });
    result = run.Execute();
  }
  bar.reset();
  if (!result.Succeeded() && state->watch.Interrupted()) {
    std::fputs("npar: cancelled\n", stderr);
    exitCode = kExitCancelled;
    return std::nullopt;
  }
  PrintMessages(result.messages);
  if (result.Succeeded()) return std::move(result.document);
  if (result.messages.empty()) {
    std::fprintf(stderr, "npar: the component failed with code %u and gave no message\n",
                 result.code);
  }
  exitCode = kExitRefused;
  return std::nullopt;
}

std::string Execution::InferredMeasures(const std::vector<std::string>& fields) const {
  std::string text;
  for (const auto& [measure, word] :
       {std::pair(Measure::Continuous, "continuous"), std::pair(Measure::Nominal, "nominal"),
        std::pair(Measure::Ordinal, "ordinal")}) {
    std::vector<std::string> names;
    for (const std::string& name : fields) {
      const auto found = state->measures.find(name);
      if (found != state->measures.end() && found->second == measure) names.push_back(name);
    }
    if (names.empty()) continue;
    text += (text.empty() ? "" : "; ") + std::string(word) + ": " + JoinWords(names, ", ");
  }
  return text;
}

std::string Execution::CaseText(double number) const {
  return state->run ? std::string(state->run->CaseText(number)) : std::string();
}

void Execution::PublishResult(const std::string& path, const TextWriter& write) {
  if (path == "-") {
    Publish(path, write);
    return;
  }
  const InterruptWatch::Cancelling unharmed(state->watch, [] {});
  Publish(path, write);
}

void AddExecutionOptions(CLI::App& command, ExecutionOptions& options) {
  command
      .add_option("--separator", options.separator,
                  "between cells: comma, semicolon, tab or a character (default: detected)")
      ->type_name("S");
  command
      .add_option("--missing-token", options.missingTokens,
                  "cells that are missing besides empty ones; instead of NA")
      ->allow_extra_args(false)
      ->type_name("TEXT");
  command
      .add_option("--component", options.component,
                  "another component than the one installed with npar")
      ->type_name("libnpar.so");
}

NamedText ReadDocument(const std::string& path) {
  const TextSource source(path);
  NamedText document{source.Name(), std::string(source.Text())};
  source.CheckIsWhole();
  return document;
}

}  // namespace npar_host

#include "host/cli/execution.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <utility>

#include "host/cli/command_line.h"
#include "host/cli/output.h"
#include "host/cli/progress_bar.h"
#include "host/cli/trace.h"
#include "host/data/csv.h"
#include "host/data/text_source.h"
#include "host/loader/analysis_run.h"
#include "host/messages/messages.h"
#include "host/os/interrupt.h"
#include "host/os/processors.h"
#include "host/os/utf8_path.h"

namespace npar_host {
namespace {

// Components keep it in 32 bits.
constexpr std::int64_t kLargestModelId = 0x7FFFFFFF;

std::filesystem::path ComponentPath(const ExecutionOptions& options) {
  return options.component.empty() ? ComponentLibrary::DefaultPath() : Utf8Path(options.component);
}

std::int64_t ModelIdOf(const ExecutionOptions& options) {
  return options.modelId == 0 && SourceDate() ? 1 : options.modelId;
}

CsvOptions CsvOptionsFor(const ExecutionOptions& options) {
  CsvOptions csv = CsvOptionsOf(options.reading);
  csv.threads = options.threads.value_or(0);
  return csv;
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
      : modelId(ModelIdOf(options)),
        library(ComponentPath(options)),
        reader(options.dataPath, CsvOptionsFor(options)),
        threads(options.threads.value_or(static_cast<std::uint32_t>(MachineThreads()))) {}

  std::int64_t modelId;  // 0: one at random
  InterruptWatch watch;
  ComponentLibrary library;
  CsvReader reader;
  std::uint32_t threads;
  std::optional<ProgressBar> bar;
  Dataset cells;
  ModelledData data;
  std::optional<AnalysisRun> run;  // outlives the run for the names of its cases
};

Execution::Execution(const ExecutionOptions& options) : state(std::make_unique<State>(options)) {}
Execution::~Execution() = default;

const CsvReader& Execution::Reader() const { return state->reader; }

Dataset& Execution::ReadData(const NamedText& model) {
  state->bar.emplace();
  state->bar->Name("reading " + state->reader.SourceName());
  state->cells = ReadCells(state->reader, ParseModel(model.text, model.name));
  state->bar.reset();
  return state->cells;
}

const DataModel& Execution::FindModel(const NamedText& model) {
  state->data = npar_host::FindModel(std::move(state->cells), ParseModel(model.text, model.name));
  return state->data.model;
}

std::optional<std::string> Execution::Run(const NamedText& parameters) {
  std::optional<ProgressBar>& bar = state->bar;
  bar.emplace();
  AnalysisRun& run = state->run.emplace(state->library, parameters.text, std::move(state->data));
  if (const std::int64_t identifier = state->modelId) run.SetIdentifier(identifier);
  run.AllowThreads(state->threads);
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
  // Also one that the component, which was writing its result by then, no longer heard.
  if (state->watch.Interrupted()) {
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

std::string Execution::CaseText(double number) const {
  return state->run ? std::string(state->run->CaseText(number)) : std::string();
}

const PreparedData* Execution::Records() const {
  return state->run ? &state->run->Records() : nullptr;
}

void AddExecutionOptions(CLI::App& command, ExecutionOptions& options) {
  AddReadingOptions(command, options.reading);
  command
      .add_option("--component", options.component,
                  "another component than the one installed with npar")
      ->type_name("libnpar.so");
  command
      .add_option("--model-id", options.modelId,
                  "the run's number in the result document (default: at random)")
      ->check(CLI::Range(std::int64_t{1}, kLargestModelId).description(""))
      ->type_name("N");
  constexpr std::uint32_t kMostThreads = 1024;
  command
      .add_option("--threads", options.threads,
                  "how many threads to compute with; by default as many as the machine has")
      ->type_name("N")
      ->check(CLI::Range(std::uint32_t{1}, kMostThreads));
}

NamedText ReadDocument(const std::string& path) {
  const TextSource source(path);
  NamedText document{source.Name(), std::string(source.Text())};
  source.CheckIsWhole();
  return document;
}

}  // namespace npar_host

#include <CLI/CLI.hpp>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/execution.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar run --params params.xml --data data.csv --model model.xml --out result.xml
  gzip -dc data.csv.gz | npar run --params params.xml --data - > result.xml
)";

struct RunOptions {
  ExecutionOptions execution;
  std::string parameters;
  std::string model;
  std::string out = "-";
};

int Run(const RunOptions& options) {
  const NamedText parameters = ReadDocument(options.parameters);
  const NamedText model =
      options.model.empty() ? NamedText{"", "<DataModel/>"} : ReadDocument(options.model);
  Execution execution(options.execution);
  if (const auto document = execution.Run(parameters, model)) {
    execution.PublishResult(options.out, *document);
  }
  return execution.ExitCode();
}

}  // namespace

void AddRunCommand(CLI::App& program, int& exitCode) {
  auto* command = program.add_subcommand(
      "run", "Runs a parameter document on data and writes the result document.");
  const auto options = std::make_shared<RunOptions>();
  command->add_option("--params", options->parameters, "parameter document (schema/parameters.xsd)")
      ->required();
  command->add_option("--data", options->execution.dataPath, "CSV file, - for standard input")
      ->required();
  command->add_option("--model", options->model,
                      "data model (schema/datamodel.xsd); what it leaves out is inferred");
  command->add_option("--out", options->out, "result document, - for standard output")
      ->capture_default_str();
  AddExecutionOptions(*command, options->execution);
  command->footer(kExamples);
  command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace npar_host

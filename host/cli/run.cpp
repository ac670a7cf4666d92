#include "catalogue/run.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "host/cli/command_line.h"
#include "host/cli/commands.h"
#include "host/cli/execution.h"
#include "host/cli/output.h"
#include "host/data/input_error.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/data/xml_reader.h"
#include "host/request/analysis_documents.h"

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

pugi::xml_node Parameter(const pugi::xml_document& xml, const catalogue::Setting& setting) {
  return xml.first_child().find_child_by_attribute("Parameter", "name", setting.key.c_str());
}

// The component takes any number as it stands, and 0.95 percent is what nobody means.
void CheckLevels(const NamedText& parameters, const pugi::xml_document& xml) {
  const auto check = [&](const catalogue::Setting& setting, auto isLevel, const char* wanted) {
    const pugi::xml_attribute value = Parameter(xml, setting).attribute("value");
    double level = 0.0;
    if (!value || (ParseNumber(value.value(), level) && isLevel(level))) return;
    throw InputError(PlaceOf(Parameter(xml, setting), parameters.text, parameters.name) + ": " +
                     setting.key + " is " + Quoted(value.value()) + "; " + wanted);
  };
  check(catalogue::run::kSigLevel, IsSignificanceLevel, "give a number between 0 and 1, as 0.05");
  check(catalogue::run::kConfidenceLevel, IsConfidencePercentage,
        "give a percentage from 1 to below 100, as 95");
}

// The component says that a field does not exist, but not which.
void NameUnknownFields(const NamedText& parameters, const pugi::xml_document& xml,
                       const std::vector<std::string>& columns) {
  using namespace catalogue::run;
  for (const catalogue::Setting* setting :
       {&kOneSampleVariables, &kRelatedVariables, &kIndependentVariables, &kGroupVariable,
        &kCaseIdField}) {
    const auto parameter = Parameter(xml, *setting);
    for (const pugi::xpath_node found : parameter.select_nodes("@value | ListValue/Value/@value")) {
      const std::string field = found.attribute().value();
      if (std::ranges::find(columns, field) != columns.end()) continue;
      Tell("npar: " + PlaceOf(found.parent(), parameters.text, parameters.name) +
           ": the data have no field " + Quoted(field) + NearMiss(field, columns));
    }
  }
}

int Run(const RunOptions& options) {
  CheckOutputs({{options.parameters, options.model, options.execution.dataPath}, {options.out}});
  const NamedText parameters = ReadDocument(options.parameters);
  // The component would refuse it too, but does not know the file's name.
  pugi::xml_document parametersXml;
  ReadXml(parametersXml, parameters.text, parameters.name);
  CheckLevels(parameters, parametersXml);
  const NamedText model =
      options.model.empty() ? NamedText{"", "<DataModel/>"} : ReadDocument(options.model);
  Execution execution(options.execution);
  execution.ReadData(model);
  execution.FindModel(model);
  if (const auto document = execution.Run(parameters)) {
    Publish(options.out, *document);
  } else if (execution.ExitCode() == kExitRefused) {
    NameUnknownFields(parameters, parametersXml, execution.Reader().Names());
  }
  return execution.ExitCode();
}

}  // namespace

void AddRunCommand(CLI::App& program, int& exitCode) {
  auto* command = program.add_subcommand(
      "run", "Runs a parameter document on data and writes the result document.");
  const auto options = std::make_shared<RunOptions>();
  command->add_option("--params", options->parameters, "parameter document (schema/parameters.xsd)")
      ->type_name("FILE")
      ->required();
  command->add_option("--data", options->execution.dataPath, "CSV file, - for standard input")
      ->type_name("FILE")
      ->required();
  command
      ->add_option("--model", options->model,
                   "data model (schema/datamodel.xsd); what it leaves out is inferred")
      ->type_name("FILE");
  command->add_option("--out", options->out, "result document, - for standard output")
      ->type_name("FILE")
      ->capture_default_str();
  AddExecutionOptions(*command, options->execution);
  command->footer(kExamples);
  command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace npar_host

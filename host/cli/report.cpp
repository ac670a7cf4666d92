#include <CLI/CLI.hpp>
#include <memory>

#include "host/cli/commands.h"
#include "host/cli/execution.h"
#include "host/cli/output.h"
#include "host/cli/plot_files.h"
#include "host/cli/report_request.h"
#include "host/render/result_model.h"

namespace npar_host {
namespace {

constexpr const char* kExamples = R"(Examples:
  npar report result.xml --as text
  npar report result.xml --as html --out report.html
  npar run --params params.xml --data data.csv | npar report - --as text --out report.txt
)";

struct ReportOptions {
  std::string result;
  std::string form;
  std::string out = "-";
  TextChoices choices;
  std::string plots;
  AdjustChoices adjust;
};

}  // namespace

void AddReportCommand(CLI::App& program) {
  auto* command = program.add_subcommand("report", "Shows a result document as a report.");
  const auto options = std::make_shared<ReportOptions>();
  command->add_option("RESULT", options->result, "result document, - for standard input")
      ->type_name("FILE")
      ->required();
  command->add_option("--as", options->form, "what to show it as")
      ->type_name("text|html|json|markdown|latex|csv")
      ->required();
  command->add_option("--out", options->out, "the report, - for standard output")
      ->type_name("FILE")
      ->capture_default_str();
  AddAdjustOptions(*command, options->adjust);
  AddTextOptions(*command, options->choices);
  AddPlotsOption(*command, options->plots);
  command->footer(kExamples);
  command->callback([options] {
    const Renderer& renderer = RequireRenderer(options->form);
    const CallFiles files{{options->result}, {options->out}};
    CheckOutputs(files);
    NamedText result = ReadDocument(options->result);
    ResultDocument document = ReadResultDocument(std::move(result.text), result.name);
    Adjust(document, options->adjust);
    Publish(options->out, [&](const TextSink& sink) {
      renderer.render(document, StyleFor(options->out, options->choices), sink);
    });
    if (!options->plots.empty()) PlotWriter(files).Write(options->plots, document);
  });
}

}  // namespace npar_host

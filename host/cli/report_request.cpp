#include "host/cli/report_request.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <vector>

#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/os/terminal.h"
#include "host/render/adjustment.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

// Tables are hard to read above, and impossible to lay out below.
constexpr std::size_t kNarrowest = 40;
constexpr std::size_t kWidest = 120;

}  // namespace

const Renderer& RequireRenderer(std::string_view name) {
  if (const Renderer* found = FindRenderer(name)) return *found;
  std::vector<std::string> names;
  for (const Renderer& renderer : AllRenderers()) names.emplace_back(renderer.name);
  throw UsageError("there is no report as " + Quoted(name) + "; there is " +
                   JoinWords(names, " and "));
}

ReportRequest ParseReportRequest(std::string_view text) {
  const std::size_t sign = text.find('=');
  ReportRequest request;
  request.renderer = &RequireRenderer(text.substr(0, sign));
  if (sign != std::string_view::npos) {
    request.path = text.substr(sign + 1);
    if (request.path.empty()) throw UsageError("--report " + std::string(text) + " names no file");
  }
  return request;
}

void AddAsciiOption(CLI::App& command, bool& ascii) {
  command.add_flag("--ascii", ascii, "draw the text report in ASCII alone");
}

void AddTextOptions(CLI::App& command, TextChoices& choices) {
  AddAsciiOption(command, choices.ascii);
  command.add_flag("--sentences", choices.sentences,
                   "add each test as a sentence for a results section to the text report");
}

void AddAdjustOptions(CLI::App& command, AdjustChoices& choices) {
  const auto add = [&command](const char* name, std::string& value, const char* help) {
    command.add_option(name, value, help)
        ->check(CLI::IsMember({"none", "bonferroni", "holm", "bh"}).description(""))
        ->type_name("none|bonferroni|holm|bh")
        ->capture_default_str();
  };
  add("--adjust", choices.tests, "show significances adjusted over all tests of the run");
  add("--adjust-pairs", choices.pairs,
      "by which significances pairs of samples are said to differ, adjusted over the pairs");
}

void Adjust(ResultDocument& document, const AdjustChoices& choices) {
  AdjustOverTests(document, FindAdjustment(choices.tests));
  AdjustPairs(document, FindAdjustment(choices.pairs));
}

void AddPlotsOption(CLI::App& command, std::string& folder) {
  command
      .add_option(
          "--plots", folder,
          "write each plot of the tests as SVG to this folder, with rsvg-convert as PNG too")
      ->type_name("DIR");
}

TextStyle StyleFor(std::string_view path, const TextChoices& choices) {
  TextStyle style;
  style.ascii = choices.ascii;
  style.sentences = choices.sentences;
  style.trace = path != "-";
  if (path != "-" || !IsTerminal(kStandardOutput)) return style;
  style.width = std::clamp(TerminalColumns(kStandardOutput), kNarrowest, kWidest);
  style.ascii = choices.ascii || !LocaleIsUtf8();
  style.colour = !IsInEnvironment("NO_COLOR") && TerminalKnowsEscapes();
  return style;
}

}  // namespace npar_host

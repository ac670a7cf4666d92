#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <memory>
#include <nlohmann/json.hpp>

#include "host/cli/commands.h"
#include "host/cli/field_description.h"
#include "host/cli/output.h"
#include "host/cli/reading_options.h"
#include "host/cli/report_request.h"
#include "host/data/join_words.h"
#include "host/data/model.h"
#include "host/data/number.h"
#include "host/render/text_layout.h"
#include "host/request/field_inference.h"
#include "host/request/field_list.h"

namespace npar_host {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kExamples = R"(Examples:
  npar describe examples/airquality.csv
  npar describe export.csv.gz --separator semicolon --decimal ,
  npar describe examples/sleep.csv --json
)";

struct DescribeOptions {
  std::string path;
  ReadingOptions reading;
  bool asJson = false;
  bool ascii = false;
};

std::string PrintableLines(std::string_view text, bool ascii) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    shown += Printable(text.substr(0, end), ascii) + '\n';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return shown;
}

std::string Count(std::size_t count, const char* one, const char* many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// A character for each class, as high as the class is full.
std::string Sparkline(const std::vector<std::size_t>& histogram, bool ascii) {
  constexpr std::array<const char*, 8> kBlocks = {"\u2581", "\u2582", "\u2583", "\u2584",
                                                  "\u2585", "\u2586", "\u2587", "\u2588"};
  constexpr std::array<const char*, 8> kLetters = {"_", ".", ":", "-", "=", "+", "*", "#"};
  const auto& signs = ascii ? kLetters : kBlocks;
  std::size_t most = 1;
  for (const std::size_t count : histogram) most = std::max(most, count);
  std::string line;
  for (const std::size_t count : histogram) {
    const std::size_t height = (count * (signs.size() - 1) + most - 1) / most;
    line += count == 0 ? " " : signs[height];
  }
  return line;
}

std::string ValuesLine(const FieldDescription& field, bool ascii) {
  if (field.IsContinuous()) {
    std::string line = Count(field.different, "value", "different values");
    if (field.hasRange) {
      line += " from " + NumberText(field.lowest) + " to " + NumberText(field.highest);
    }
    if (field.findings.infinite > 0)
      line += ", and " + Count(field.findings.infinite, "infinity", "infinities");
    return line + "  |" + Sparkline(field.histogram, ascii) + "|";
  }
  std::vector<std::string> told;
  constexpr std::size_t kMostTold = 8;
  for (const auto& [category, count] : field.categories) {
    if (told.size() == kMostTold) break;
    told.push_back(category + " (" + std::to_string(count) + ")");
  }
  if (told.size() < field.different) told.emplace_back("...");
  return Count(field.different, "category", "categories") +
         (told.empty() ? "" : ": " + JoinWords(told, ", "));
}

std::string FieldText(const FieldDescription& field, bool ascii) {
  std::string text = field.name + ": " + field.kind;
  if (!field.why.empty()) text += ", " + field.why;
  text += "\n  N " + std::to_string(field.findings.Cells());
  const std::string missing = MissingText(field.findings);
  if (!missing.empty()) text += "; " + missing;
  text += "\n  " + ValuesLine(field, ascii) + "\n";
  for (const std::string& group : field.nearlyEqual) {
    text += "  " + group + " differ only by case or spaces\n";
  }
  return text;
}

std::string AsText(const std::vector<FieldDescription>& fields, const CsvReader& reader,
                   std::size_t records, const std::vector<std::string>& commands, bool ascii) {
  std::string text = reader.SourceName() + ": " + Count(records, "record", "records") + ", " +
                     Count(fields.size(), "field", "fields") + "\n";
  if (const std::string hint = SeparatorHint(reader.Names()); !hint.empty()) text += hint + "\n";
  for (const FieldDescription& field : fields) text += "\n" + FieldText(field, ascii);
  if (!commands.empty()) text += "\nTo begin with:\n";
  for (const std::string& command : commands) text += "  npar " + command + "\n";
  return PrintableLines(text, ascii);
}

Json FieldJson(const FieldDescription& field) {
  Json missing = Json::object();
  for (const auto& [token, count] : field.findings.tokens) missing[token] = count;
  Json categories = Json::array();
  for (const auto& [category, count] : field.categories) {
    categories.push_back({{"value", category}, {"count", count}});
  }
  return {{"name", field.name},
          {"kind", field.kind},
          {"why", field.why.empty() ? Json() : Json(field.why)},
          {"n", field.findings.Cells()},
          {"missing", missing},
          {"infinite", field.findings.infinite},
          {"different", field.different},
          {"lowest", field.hasRange ? Json(field.lowest) : Json()},
          {"highest", field.hasRange ? Json(field.highest) : Json()},
          {"histogram", field.histogram},
          {"categories", categories},
          {"nearlyEqual", field.nearlyEqual}};
}

std::string AsJson(const std::vector<FieldDescription>& fields, std::size_t records,
                   const std::vector<std::string>& commands) {
  Json list = Json::array();
  for (const FieldDescription& field : fields) list.push_back(FieldJson(field));
  return Json{{"records", records}, {"fields", list}, {"commands", commands}}.dump(2) + "\n";
}

void Describe(const DescribeOptions& options) {
  CsvReader reader(options.path, CsvOptionsOf(options.reading));
  const Dataset data = ReadCells(reader, {});
  const std::vector<FieldDescription> fields = DescribeFields(data, reader);
  const std::vector<std::string> commands = SuggestCommands(fields, options.path);
  const std::size_t records = data.records;
  const bool ascii = StyleFor("-", {.ascii = options.ascii}).ascii;
  Publish("-", options.asJson ? AsJson(fields, records, commands)
                              : AsText(fields, reader, records, commands, ascii));
}

}  // namespace

void AddDescribeCommand(CLI::App& program) {
  auto* command = program.add_subcommand(
      "describe", "Shows what the fields of a CSV file hold, and where to begin.");
  const auto options = std::make_shared<DescribeOptions>();
  command->add_option("DATA", options->path, "CSV file, - for standard input")
      ->type_name("FILE")
      ->required();
  command->add_flag("--json", options->asJson, "for programs");
  AddAsciiOption(*command, options->ascii);
  AddReadingOptions(*command, options->reading);
  command->footer(kExamples);
  command->callback([options] { Describe(*options); });
}

}  // namespace npar_host

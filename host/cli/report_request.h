#pragma once

#include <string>
#include <string_view>

#include "host/render/renderers.h"

namespace CLI {
class App;
}

namespace npar_host {

/// A report as asked for: FORM or FORM=FILE.
struct ReportRequest {
  const Renderer* renderer = nullptr;
  std::string path = "-";
};

/// Throws UsageError for an unknown form or an empty file name.
[[nodiscard]] ReportRequest ParseReportRequest(std::string_view text);
/// The renderer of that name; throws UsageError for an unknown one.
[[nodiscard]] const Renderer& RequireRenderer(std::string_view name);

/// What a user may choose of a text report.
struct TextChoices {
  bool ascii = false;
  bool sentences = false;
};

void AddAsciiOption(CLI::App& command, bool& ascii);
/// Adds --ascii and --sentences.
void AddTextOptions(CLI::App& command, TextChoices& choices);
/// Adds --adjust, a name that FindAdjustment knows.
void AddAdjustOption(CLI::App& command, std::string& name);
/// Adds --plots.
void AddPlotsOption(CLI::App& command, std::string& folder);
/// Writes each plot of the tests to a file of the folder. Throws OutputError.
void WritePlots(const std::string& folder, const ResultDocument& document);

/// How a text is drawn that goes to `path`. Where that is standard output ("-") and a terminal: as
/// wide as it, in colour unless NO_COLOR is set, in ASCII where its locale is not UTF-8. A file
/// tells where the report comes from.
[[nodiscard]] TextStyle StyleFor(std::string_view path, const TextChoices& choices);

}  // namespace npar_host

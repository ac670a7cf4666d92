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
/// How significances are adjusted, by names that FindAdjustment knows.
struct AdjustChoices {
  std::string tests = "none";
  std::string pairs = "bonferroni";
};
/// Adds --adjust and --adjust-pairs.
void AddAdjustOptions(CLI::App& command, AdjustChoices& choices);
/// Adjusts the significances of a document.
void Adjust(ResultDocument& document, const AdjustChoices& choices);
/// Adds --plots.
void AddPlotsOption(CLI::App& command, std::string& folder);

/// How a text is drawn that goes to `path`. Where that is standard output ("-") and a terminal: as
/// wide as it, in colour unless NO_COLOR is set, in ASCII where its locale is not UTF-8. A file
/// tells where the report comes from.
[[nodiscard]] TextStyle StyleFor(std::string_view path, const TextChoices& choices);

}  // namespace npar_host

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

/// Adds --ascii.
void AddAsciiOption(CLI::App& command, bool& ascii);
/// How a text is drawn that goes to `path`. Where that is standard output ("-") and a terminal: as
/// wide as it, in colour unless NO_COLOR is set, in ASCII where its locale is not UTF-8.
[[nodiscard]] TextStyle StyleFor(std::string_view path, bool ascii);

}  // namespace npar_host

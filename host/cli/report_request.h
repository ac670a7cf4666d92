#pragma once

#include <string>
#include <string_view>

#include "host/render/renderers.h"

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

}  // namespace npar_host

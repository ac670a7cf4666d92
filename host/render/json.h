#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The report as JSON (UTF-8, indented by two): schema/report.schema.json describes it,
/// docs/json.md shows it in use. Figures are numbers; one that is not finite is null and stands as
/// text under its key with "Text" added, a missing one is null.
[[nodiscard]] std::string RenderJson(const ResultDocument& document);

}  // namespace npar_host

#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The report as one page of XHTML that is HTML too: no script, nothing that it loads, plots as
/// inline SVG. Names and texts of any content are shown as text.
[[nodiscard]] std::string RenderHtml(const ResultDocument& document);

}  // namespace npar_host

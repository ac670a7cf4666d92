#pragma once

#include <string>

#include "host/render/result_model.h"
#include "host/render/text_layout.h"

namespace npar_host {

/// The report as plain text, UTF-8. Control characters in names are shown as escapes, so that they
/// do nothing to a terminal.
[[nodiscard]] std::string RenderText(const ResultDocument& document, const TextStyle& style = {});

}  // namespace npar_host

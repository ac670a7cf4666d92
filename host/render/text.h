#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The report as plain text, UTF-8, lines of at most 80 characters as far as names allow. Control
/// characters in names are shown as escapes, so that they do nothing to a terminal.
[[nodiscard]] std::string RenderText(const ResultDocument& document);

/// The text with control characters shown as \xNN or \uNNNN.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace npar_host

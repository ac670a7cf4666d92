#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/render/result_model.h"

namespace npar_host {

/// How a text report is drawn.
struct TextStyle {
  std::size_t width = 80;  // no line is longer
  bool ascii = false;      // plots and names in ASCII alone
  bool colour = false;     // with the escape sequences of a terminal
};

/// The report as plain text, UTF-8. Control characters in names are shown as escapes, so that they
/// do nothing to a terminal.
[[nodiscard]] std::string RenderText(const ResultDocument& document, const TextStyle& style = {});

/// The text with control characters shown as \xNN or \uNNNN.
[[nodiscard]] std::string Printable(std::string_view text);

}  // namespace npar_host

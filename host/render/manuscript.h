#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The tests as tables and sentences for a manuscript: GitHub's Markdown, or LaTeX with booktabs.
[[nodiscard]] std::string RenderMarkdown(const ResultDocument& document);
[[nodiscard]] std::string RenderLatex(const ResultDocument& document);

}  // namespace npar_host

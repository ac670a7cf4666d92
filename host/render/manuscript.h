#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// The tests as tables and sentences for a manuscript: GitHub's Markdown, or LaTeX with booktabs.
[[nodiscard]] std::string RenderMarkdown(const ResultDocument& document);
[[nodiscard]] std::string RenderLatex(const ResultDocument& document);
/// One row for each test or estimate, with figures as the document writes them (RFC 4180).
[[nodiscard]] std::string RenderCsv(const ResultDocument& document);

}  // namespace npar_host

#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// One line for each test, each further interval and each pair of a pairwise comparison, with
/// figures as the document writes them (RFC 4180).
[[nodiscard]] std::string RenderCsv(const ResultDocument& document);

}  // namespace npar_host

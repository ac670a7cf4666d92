#pragma once

#include <string>

#include "host/render/result_model.h"

namespace npar_host {

/// What a report tells of its origin: the data file ("-" is standard input) and this process.
[[nodiscard]] ReportTrace MakeTrace(const std::string& dataPath, const ResultDocument& document);

}  // namespace npar_host

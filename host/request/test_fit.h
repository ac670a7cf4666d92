#pragma once

#include <string>
#include <vector>

#include "host/request/analysis_documents.h"
#include "host/request/category_checks.h"

namespace npar_host {

/// Why a test that is asked for can't act on the fields that are named, why a field that is named
/// is in no test, and what would change it; sentence by sentence.
[[nodiscard]] std::vector<std::string> ExplainMisfits(const AnalysisRequest& request,
                                                      const ContentOf& contentOf);

}  // namespace npar_host

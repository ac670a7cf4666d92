#pragma once

#include <string>
#include <vector>

#include "host/cli/analyse_options.h"
#include "host/cli/execution.h"
#include "host/data/dataset.h"
#include "host/request/analysis_documents.h"

namespace npar_host {

/// The cells that an analysis is made of, and the request that fits them.
struct AnalysisCells {
  Dataset* cells = nullptr;  // of the execution
  AnalysisRequest request;
  std::vector<std::string> notes;  // what a person should know of the way here
  bool isReshaped = false;         // the cells are not those of the file
};

/// Reads the cells; makes long data wide; puts scores in the place of categories. Throws InputError
/// and UsageError.
[[nodiscard]] AnalysisCells ReadAnalysisCells(const AnalyseOptions& options, Execution& execution);

}  // namespace npar_host

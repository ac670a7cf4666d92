#pragma once

#include <vector>

#include "host/cli/execution.h"
#include "host/cli/field_inference.h"
#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"

namespace npar_host {

/// What reports tell of a request and its data beside the result document.
struct RequestFacts {
  std::vector<Choice> choices;
  std::vector<TracedField> fields;
};

/// After the inference, while it still has its cells.
[[nodiscard]] RequestFacts FindRequestFacts(const AnalysisRequest& request,
                                            FieldInference& inference);

/// Tells the document of its run why tests were chosen, what counts as success, in which order
/// groups stand, and which fields are nominal. After the run.
void TellRequest(ResultDocument& document, const AnalysisRequest& request,
                 const RequestFacts& facts, const Execution& execution);

}  // namespace npar_host

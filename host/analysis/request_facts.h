#pragma once

#include <vector>

#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"
#include "host/request/field_inference.h"
#include "host/requirements/requirements.h"

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
/// groups stand, which fields are nominal, and the values of few enough records to be drawn one by
/// one. The records as the component got them.
void TellRequest(ResultDocument& document, const AnalysisRequest& request,
                 const RequestFacts& facts, const PreparedData& records);

}  // namespace npar_host

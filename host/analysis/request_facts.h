#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"
#include "host/request/field_inference.h"
#include "host/requirements/requirements.h"

namespace npar_host {

/// One field's values by record: numbers or categories' codes; not a number where one is missing.
struct FieldValues {
  std::string field;
  std::vector<double> values;
};

/// What reports tell of a request and its data beside the result document.
struct RequestFacts {
  std::vector<Choice> choices;
  std::vector<TracedField> fields;
  std::vector<FieldValues> values;  // of CollectValues, once the records are prepared
};

/// After the inference, while it still has its cells.
[[nodiscard]] RequestFacts FindRequestFacts(const AnalysisRequest& request,
                                            FieldInference& inference);

/// The values of few enough records to be drawn one by one, as the component got them, for
/// TellRequest.
[[nodiscard]] std::vector<FieldValues> CollectValues(const PreparedData& records);

/// Tells the document of its run why tests were chosen, in which order groups stand, which fields
/// are nominal, and the collected values.
void TellRequest(ResultDocument& document, const AnalysisRequest& request,
                 const RequestFacts& facts);

/// Tells it what counts as success where the records decide. The records as the component got them.
void TellSuccesses(ResultDocument& document, const AnalysisRequest& request,
                   const PreparedData& records);
/// May it have something to tell?
[[nodiscard]] bool MayTellSuccesses(std::string_view document);

}  // namespace npar_host

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/request/analysis_documents.h"

namespace npar_host {

/// Is there a test in the request, or a family, that takes the field only where it is continuous?
[[nodiscard]] bool NeedsContinuous(const AnalysisRequest& request, const std::string& field);

/// The different values of a column of numbers, none where they are many; null for one of texts.
using FewValuesOf = std::function<const std::vector<double>*(const std::string& field)>;

/// The fields of numbers that are nominal, since they have no more than two different values and no
/// test needs them continuous. Related fields are so together, or not at all.
[[nodiscard]] std::vector<FieldMeasure> InferNominal(const AnalysisRequest& request,
                                                     const FewValuesOf& valuesOf);

}  // namespace npar_host

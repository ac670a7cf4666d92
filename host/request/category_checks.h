#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/request/analysis_documents.h"

namespace npar_host {

/// What a field of the data holds.
struct FieldContent {
  bool isCategorical = false;
  bool isText = false;
  // All different ones of a categorical field, numbers ascending, texts by bytes.
  std::vector<std::string> values;
};
using ContentOf = std::function<const FieldContent&(const std::string& field)>;

/// "continuous", "ordinal" or "nominal": as given, or else by what the field holds.
[[nodiscard]] std::string MeasureOf(const AnalysisRequest& request, const ContentOf& contentOf,
                                    const std::string& field);

/// Do the fields hold no more than two different categories together?
[[nodiscard]] bool HoldTwoCategories(const std::vector<std::string>& fields,
                                     const ContentOf& contentOf);

/// Compares the categories that options name with those of the data, and answers with what a person
/// should know of them, sentence by sentence: categories left out or absent, the order of groups
/// that nobody gave. UsageError for a category that the data do not have.
[[nodiscard]] std::vector<std::string> CheckCategories(const AnalysisRequest& request,
                                                       const ContentOf& contentOf);

}  // namespace npar_host

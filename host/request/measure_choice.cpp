#include "host/request/measure_choice.h"

#include <algorithm>
#include <set>

namespace npar_host {
namespace {

constexpr std::size_t kMostOfTwoClasses = 2;

bool Has(const std::vector<std::string>& fields, const std::string& field) {
  return std::ranges::find(fields, field) != fields.end();
}

bool TakesContinuousOnly(const TestRequest& asked) {
  const unsigned measures = asked.Test().fields.measures;
  return (measures & catalogue::kCategorical) == 0 || asked.HasOption("cut");
}

}  // namespace

bool NeedsContinuous(const AnalysisRequest& request, const std::string& field) {
  if (Has(request.independentFields, field)) return true;
  return std::ranges::any_of(request.tests, [&](const TestRequest& asked) {
    return Has(request.FieldsOf(asked.Test().family), field) && TakesContinuousOnly(asked);
  });
}

std::vector<FieldMeasure> InferNominal(const AnalysisRequest& request,
                                       const FewValuesOf& valuesOf) {
  const auto isOpen = [&](const std::string& field) {
    return request.MeasureOf(field) == nullptr && field != request.groupField &&
           field != request.weightField && field != request.caseIdField &&
           !NeedsContinuous(request, field);
  };
  const auto isOfTwo = [&](const std::string& field) {
    const std::vector<double>* const values = valuesOf(field);
    return isOpen(field) && values != nullptr && !values->empty() &&
           values->size() <= kMostOfTwoClasses;
  };
  std::set<double> relatedValues;
  bool areRelatedOfTwo = true;
  for (const std::string& field : request.relatedFields) {
    const FieldMeasure* const given = request.MeasureOf(field);
    const std::vector<double>* const values = valuesOf(field);
    if (values != nullptr) relatedValues.insert(values->begin(), values->end());
    const bool isNominal = given != nullptr && given->measure == "nominal" && values != nullptr;
    areRelatedOfTwo = areRelatedOfTwo && (isNominal || isOfTwo(field));
  }
  areRelatedOfTwo = areRelatedOfTwo && relatedValues.size() <= kMostOfTwoClasses;

  std::vector<FieldMeasure> nominal;
  const auto add = [&](const std::string& field) {
    if (std::ranges::find(nominal, field, &FieldMeasure::field) != nominal.end()) return;
    nominal.push_back({field, "nominal", {}, true});
  };
  for (const std::string& field : request.oneSampleFields) {
    const bool isKept = Has(request.relatedFields, field) && !areRelatedOfTwo;
    if (isOfTwo(field) && !isKept) add(field);
  }
  for (const std::string& field : request.relatedFields) {
    if (areRelatedOfTwo && isOfTwo(field)) add(field);
  }
  return nominal;
}

}  // namespace npar_host

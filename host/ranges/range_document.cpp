#include "host/ranges/range_document.h"

#include <algorithm>

#include "host/data/model.h"
#include "host/ranges/range_plan.h"
#include "host/ranges/range_tests.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

/// UsageError for a category of a given order that no record has.
void CheckOrder(const RangePlan& plan, const ResultField& field) {
  for (const std::string& text : plan.groupOrder) {
    if (std::ranges::find(field.categories, text, &ResultCategory::value) !=
        field.categories.end()) {
      continue;
    }
    throw UsageError("--ordinal " + plan.group + " names " + Quoted(text) +
                         ", which the field does not hold; name the categories that it has",
                     plan.group);
  }
}

void AddFields(ResultDocument& document, const RangePiece& whole, const RangePlan& plan,
               const AnalysisRequest& request) {
  for (const std::string& name : plan.fields) {
    ResultField& field = document.fields.emplace_back();
    field.name = name;
    field.dataType = "double";
  }
  if (plan.group.empty()) return;
  ResultField& field = document.fields.emplace_back();
  field.name = plan.group;
  field.isCategorical = true;
  const Storage storage = whole.GroupStorage();
  field.dataType =
      storage == Storage::Real || storage == Storage::Infer ? "double" : WordOf(storage);
  const FieldMeasure* const measure = request.MeasureOf(plan.group);
  field.isNominal = measure == nullptr || measure->measure == "nominal";
  for (const Category& group : whole.Groups()) {
    field.categories.push_back({group.text, group.label});
  }
  CheckOrder(plan, field);
}

}  // namespace

ResultDocument DocumentOf(const RangePiece& whole, const AnalysisRequest& request) {
  const RangePlan plan = PlanRanges(request);
  ResultDocument document;
  document.application = "npar";
  document.applicationVersion = NPAR_VERSION;
  const RecordCounts& counts = whole.Counts();
  document.totalCount = static_cast<double>(counts.kept);
  document.totalFreq = static_cast<double>(counts.weighted);
  document.droppedCount = static_cast<double>(counts.dropped);
  document.droppedFreq = static_cast<double>(counts.weightedDropped);
  document.badWeightCount = static_cast<double>(counts.badWeight);
  document.sigLevel = request.significance;
  constexpr double kPercent = 100.0;
  document.confidenceLevel = request.confidencePercent / kPercent;
  document.listwise = request.listwise;
  AddFields(document, whole, plan, request);
  const SummedRanges summed{whole, whole.Total(), whole.Fits().Totals(), plan, request};
  for (const TestRequest& asked : request.tests) {
    document.tests.push_back(MakeRangeTest(summed, asked));
  }
  return document;
}

}  // namespace npar_host

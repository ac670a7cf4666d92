#include "host/request/analysis_documents.h"

#include <algorithm>
#include <set>

#include "catalogue/run.h"
#include "host/data/input_error.h"
#include "host/data/join_words.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/data/xml_writer.h"
#include "host/request/field_list.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

namespace run = catalogue::run;

struct FamilyKeys {
  catalogue::Family family;
  const catalogue::Setting* fields;
  const catalogue::Setting* automatic;
};
constexpr FamilyKeys kFamilies[] = {
    {catalogue::Family::OneSample, &run::kOneSampleVariables, &run::kIsAutomaticallyOneSample},
    {catalogue::Family::Related, &run::kRelatedVariables, &run::kIsAutomaticallyRelated},
    {catalogue::Family::Independent, &run::kIndependentVariables,
     &run::kIsAutomaticallyIndependent},
};

std::string DocumentText(const pugi::xml_document& document) {
  return TextOfXml(document, "  ", pugi::format_indent | pugi::format_no_declaration);
}

void CheckTests(const AnalysisRequest& request) {
  std::set<std::string> seen;
  for (const TestRequest& asked : request.tests) {
    const catalogue::Card& test = asked.Test();
    if (!seen.insert(std::string(test.name)).second) {
      throw UsageError("test " + test.name + " is asked for twice; one run holds each test once");
    }
    if (request.FieldsOf(test.family).empty()) {
      throw UsageError("test " + test.name + " needs fields: give them with --" +
                       FamilyName(test.family));
    }
  }
}

void CheckMeasures(const AnalysisRequest& request) {
  std::set<std::string> seen;
  for (const FieldMeasure& measure : request.measures) {
    if (!seen.insert(measure.field).second) {
      throw UsageError("field " + Quoted(measure.field) + " is given two measurement levels",
                       measure.field);
    }
    if (measure.measure != "continuous" && measure.field == request.weightField) {
      throw UsageError(
          "field " + Quoted(measure.field) + " is the weight and can't be " + measure.measure,
          measure.field);
    }
  }
}

}  // namespace

const std::vector<std::string>& AnalysisRequest::FieldsOf(catalogue::Family family) const {
  switch (family) {
    case catalogue::Family::OneSample:
      return oneSampleFields;
    case catalogue::Family::Related:
      return relatedFields;
    case catalogue::Family::Independent:
      break;
  }
  return independentFields;
}

bool AnalysisRequest::HasTests(catalogue::Family family) const {
  return std::ranges::any_of(tests, [&](const auto& test) { return test.Test().family == family; });
}

const FieldMeasure* AnalysisRequest::MeasureOf(std::string_view field) const {
  const auto found = std::ranges::find(measures, field, &FieldMeasure::field);
  return found == measures.end() ? nullptr : &*found;
}

std::vector<std::string> AnalysisRequest::NamedFields() const {
  std::vector<std::string> names;
  const auto add = [&](const std::string& name) {
    if (!name.empty() && std::ranges::find(names, name) == names.end()) names.push_back(name);
  };
  for (const FamilyKeys& keys : kFamilies) std::ranges::for_each(FieldsOf(keys.family), add);
  add(groupField);
  for (const FieldMeasure& measure : measures) add(measure.field);
  for (const Scoring& scoring : scorings) add(scoring.field);
  add(weightField);
  add(caseIdField);
  return names;
}

double ConfidencePercent(double level) {
  constexpr double kPercent = 100.0;
  const bool isProportion = level > 0.0 && level < 1.0;
  return level * (isProportion ? kPercent : 1.0);
}

FieldMeasure ParseFieldMeasure(std::string_view text, const char* measure) {
  FieldMeasure result;
  std::string name, categories;
  if (CutAt(text, '=', name, categories)) {
    for (const std::string& category : SplitWords(categories, '<')) {
      result.categories.push_back(Unescape(category));
    }
  }
  result.field = Unescape(name);
  result.measure = measure;
  return result;
}

void CheckRequest(const AnalysisRequest& request) {
  if (std::ranges::all_of(
          kFamilies, [&](const auto& keys) { return request.FieldsOf(keys.family).empty(); })) {
    throw UsageError(
        "no field to analyse: give some with --one-sample, --related or --independent");
  }
  if (!request.independentFields.empty() && request.groupField.empty()) {
    throw UsageError("independent fields need a group field: give it with --by");
  }
  if (std::ranges::find(request.independentFields, request.groupField) !=
      request.independentFields.end()) {
    throw UsageError("field " + Quoted(request.groupField) +
                         " can't be compared between its own groups: give another to --by",
                     request.groupField);
  }
  if (!IsSignificanceLevel(request.significance)) {
    throw UsageError("--significance must lie between 0 and 1, as 0.05 does");
  }
  if (!IsConfidencePercentage(request.confidencePercent)) {
    throw UsageError("--confidence is a percentage from 1 to below 100, as 95 is");
  }
  CheckTests(request);
  CheckMeasures(request);
}

void CheckFields(const AnalysisRequest& request, const std::vector<std::string>& columns) {
  for (const std::string& name : request.NamedFields()) {
    if (std::ranges::find(columns, name) == columns.end()) {
      const std::string hint = SeparatorHint(columns);
      if (!hint.empty())
        throw UsageError("the data have no field " + Quoted(name) + ": " + hint, name);
      throw UsageError("the data have no field " + Quoted(name) + NearMiss(name, columns) +
                           " (fields: " + JoinWords(columns, ", ") + ")",
                       name);
    }
  }
}

std::string ParameterDocument(const AnalysisRequest& request) {
  pugi::xml_document document;
  pugi::xml_node parameters = AddElement(document, "Parameters");
  AddParameter(parameters, run::kMissingTreatment.key, request.listwise ? "listwise" : "analysis");
  AddParameter(parameters, run::kSigLevel.key, NumberText(request.significance));
  AddParameter(parameters, run::kConfidenceLevel.key, NumberText(request.confidencePercent));
  if (request.extendedFigures) AddParameter(parameters, run::kExtendedFigures.key, "true");
  if (!request.caseIdField.empty())
    AddParameter(parameters, run::kCaseIdField.key, request.caseIdField);
  for (const FamilyKeys& keys : kFamilies) {
    const auto& fields = request.FieldsOf(keys.family);
    if (!fields.empty()) AddListParameter(parameters, keys.fields->key, fields);
  }
  if (!request.groupField.empty()) {
    AddListParameter(parameters, run::kGroupVariable.key, {request.groupField});
  }
  // A family's flag is followed at once by its tests: the component reads them up to the first
  // other key.
  for (const FamilyKeys& keys : kFamilies) {
    if (request.FieldsOf(keys.family).empty()) continue;
    AddParameter(parameters, keys.automatic->key, request.HasTests(keys.family) ? "false" : "true");
    for (const TestRequest& test : request.tests) {
      if (test.Test().family == keys.family) test.WriteTo(parameters);
    }
  }
  return DocumentText(document);
}

std::string DataModelDocument(const AnalysisRequest& request) {
  pugi::xml_document document;
  pugi::xml_node model = AddElement(document, "DataModel");
  const auto field = [&](const std::string& name) {
    pugi::xml_node found = model.find_child_by_attribute("Field", "name", name.c_str());
    if (!found) {
      found = AddElement(model, "Field");
      AddAttribute(found, "name", name.c_str());
    }
    return found;
  };
  for (const FieldMeasure& measure : request.measures) {
    pugi::xml_node node = field(measure.field);
    AddAttribute(node, "measure", measure.measure.c_str());
    for (const std::string& category : measure.categories) {
      AddAttribute(AddElement(node, "Value"), "value", category.c_str());
    }
  }
  if (!request.groupField.empty()) {
    // Groups are categories, also where numbers name them.
    pugi::xml_node node = field(request.groupField);
    if (!node.attribute("measure")) AddAttribute(node, "measure", "nominal");
  }
  if (!request.weightField.empty()) {
    pugi::xml_node node = field(request.weightField);
    if (!node.attribute("measure")) AddAttribute(node, "measure", "continuous");
    AddAttribute(node, "role", "frequencyWeight");
  }
  if (!request.caseIdField.empty()) {
    AddAttribute(field(request.caseIdField), "role", "caseId");
  }
  for (const std::string& name : request.unusedFields) {
    pugi::xml_node node = AddElement(model, "Field");
    AddAttribute(node, "name", name.c_str());
    AddAttribute(node, "role", "none");
  }
  return DocumentText(document);
}

}  // namespace npar_host

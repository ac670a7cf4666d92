#include "frame/requirements.h"

#include "catalogue/run.h"

using HbHelperV1::XMLAttributes;
using HbHelperV1::XMLDocument;
using HbHelperV1::XMLElements;
using HbHelperV1::XMLEntities;
using Element = HbHelperV1::XMLElement;

namespace {

constexpr std::int32_t kMissingOperation = 1;
constexpr std::int32_t kEncodingOperation = 2;

/// Appends an operation and returns its parameters.
Element AddOperation(XMLDocument& document, std::int32_t id, const std::string& component,
                     const std::string& module) {
  Element operation = document.addElement(XMLElements::Operation);
  operation.addAttribute(XMLAttributes::Id, id);
  operation.addAttribute(XMLAttributes::ComponentId, component);
  operation.addAttribute(XMLAttributes::ModuleId, module);
  operation.addAttribute(XMLAttributes::InputIds, std::string());
  operation.addAttribute(XMLAttributes::DependencyIds, std::string());
  return operation.addElement(XMLElements::Parameters);
}

/// Appends a parameter and returns its value of that form.
Element AddParameter(Element& parameters, const std::string& name, const char* form) {
  Element parameter = parameters.addElement(XMLElements::Parameter);
  parameter.addAttribute(XMLAttributes::Name, name);
  return parameter.addElement(form);
}

void AddValue(Element& list, const std::string& value) {
  list.addElement(XMLElements::Value).addAttribute(XMLAttributes::Value, value);
}

void AddAttribute(Element& structure, const std::string& name, const std::string& value) {
  Element attribute = structure.addElement(XMLElements::Attribute);
  attribute.addAttribute(XMLAttributes::Name, name);
  attribute.addAttribute(XMLAttributes::Value, value);
}

void AddListParameter(Element& parameters, const std::string& name,
                      const std::vector<std::string>& values) {
  Element list = AddParameter(parameters, name, XMLElements::ListValue);
  for (const std::string& value : values) AddValue(list, value);
}

/// The frequency weight's name; empty without one.
std::string WeightName(const QDVarList& variables) {
  const IQDVariable* weight = variables.GetVarAt(variables.GetFreqWeightVariable());
  return weight == nullptr ? std::string() : weight->GetName();
}

bool HasText(const QDSettings& settings, const catalogue::WordKey& setting, const char* text) {
  std::string value;
  return settings.GetSettingValByName(setting.key, value) && value == text;
}

/// The way a field's values are wanted; null for a field that does not exist.
const char* GetFieldEncoding(const QDVarList& variables, const std::string& name) {
  const IQDVariable* variable = variables.GetVarAt(variables.FindVariable(name));
  if (variable == nullptr) return nullptr;
  const VariableKind kind = variable->GetType();
  if (kind != VariableKind::NumericCategory && kind != VariableKind::StringCategory) {
    return XMLEntities::None;
  }
  const auto* categorical = dynamic_cast<const QDCatVar*>(variable);
  return categorical != nullptr && categorical->GetOrdinalFlag() ? XMLEntities::Ordinal
                                                                 : XMLEntities::Nominal;
}

void AddEncoding(Element& list, const std::string& name, const char* encoding) {
  Element field = list.addElement(XMLElements::StructuredValue);
  AddAttribute(field, XMLEntities::Field_Name, name);
  AddAttribute(field, XMLEntities::CatEncode, encoding);
}

}  // namespace

void AddMissingOperation(XMLDocument& document, const QDSettings& settings,
                         const QDVarList& variables, const RequestedFields& requested) {
  Element parameters = AddOperation(document, kMissingOperation, XMLEntities::MissingID,
                                    XMLEntities::MissingModuleID);
  const std::string weight = WeightName(variables);
  if (HasText(settings, catalogue::run::kUserMissing, "exclude")) {
    std::vector<std::string> names = requested.fields;
    if (!requested.caseIdField.empty()) names.push_back(requested.caseIdField);
    AddListParameter(parameters, XMLEntities::ExcludeUMissField, names);
  }
  if (!weight.empty()) {
    Element adjustment =
        AddParameter(parameters, XMLEntities::WeightFeild, XMLElements::StructuredValue);
    AddAttribute(adjustment, XMLEntities::Field_Name, weight);
    AddAttribute(adjustment, XMLEntities::FreqWeightAdj, XMLEntities::Round);
  }
  const bool isListwise = HasText(settings, catalogue::run::kMissingTreatment, "listwise");
  std::vector<std::string> deleted = isListwise ? requested.fields : std::vector<std::string>();
  if (!weight.empty()) deleted.push_back(weight);
  if (!requested.caseIdField.empty()) deleted.push_back(requested.caseIdField);
  if (isListwise || !deleted.empty()) {
    AddListParameter(parameters, XMLEntities::ListwiseDelete, deleted);
  }
}

QDStatus AddEncodingOperation(XMLDocument& document, const QDVarList& variables,
                              const RequestedFields& requested) {
  Element parameters = AddOperation(document, kEncodingOperation, XMLEntities::EncodingID,
                                    XMLEntities::EncodingModuleID);
  Element list = AddParameter(parameters, XMLEntities::RequiredFields, XMLElements::ListValue);
  for (const std::string& field : requested.fields) {
    const char* encoding = GetFieldEncoding(variables, field);
    if (encoding == nullptr) return QDStatus(catalogue::run::kUnknownField);
    AddEncoding(list, field, encoding);
  }
  const std::string weight = WeightName(variables);
  if (!weight.empty()) AddEncoding(list, weight, XMLEntities::None);
  if (!requested.caseIdField.empty()) AddEncoding(list, requested.caseIdField, XMLEntities::None);
  return QDStatus();
}

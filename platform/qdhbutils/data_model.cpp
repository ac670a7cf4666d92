#include "qdhbutils/data_model.h"

#include <charconv>
#include <limits>

#include "qdhbutils/document_check.h"

namespace QDHB_700 {
namespace {

using HbHelperV1::XMLElement;
using QDXML_700::StorageKind;
using QDXML_700::VariableKind;
using QDXML_700::VariableRole;

template <typename Meaning>
struct Word {
  std::string_view word;
  Meaning meaning;
};

enum class Measure { Continuous, Ordinal, Nominal, Other };
constexpr Word<Measure> kMeasures[] = {{"continuous", Measure::Continuous},
                                       {"ordinal", Measure::Ordinal},
                                       {"nominal", Measure::Nominal},
                                       {"other", Measure::Other}};
constexpr Word<StorageKind> kStorages[] = {
    {"real", StorageKind::Real},     {"integer", StorageKind::Integer},
    {"string", StorageKind::String}, {"date", StorageKind::Date},
    {"time", StorageKind::Time},     {"timestamp", StorageKind::Timestamp}};
constexpr Word<std::optional<VariableRole>> kRoles[] = {
    {"input", VariableRole::Input},
    {"frequencyWeight", VariableRole::FrequencyWeight},
    {"caseId", VariableRole::CaseId},
    {"none", std::nullopt}};

/// The meaning of an attribute's word, or the fallback where the attribute is left out.
template <typename Meaning, std::size_t size>
bool ReadWord(DocumentCheck& check, const XMLElement& element, const char* attribute,
              const Word<Meaning> (&words)[size], Meaning fallback, Meaning& out) {
  out = fallback;
  if (!element.hasAttribute(attribute)) return true;
  for (const Word<Meaning>& each : words) {
    if (element.attribute(attribute) != each.word) continue;
    out = each.meaning;
    return true;
  }
  return check.RefuseValue(element, attribute);
}

bool ReadCount(DocumentCheck& check, const XMLElement& root, const char* attribute, bool isWanted,
               double& count) {
  if (!root.hasAttribute(attribute)) return !isWanted || check.Has(root, attribute);
  const std::string_view text = root.attribute(attribute);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  const bool isCount = error == std::errc() && end == text.data() + text.size() && count >= 0.0 &&
                       count <= std::numeric_limits<double>::max();
  return isCount || check.RefuseValue(root, attribute);
}

bool ReadCounts(DocumentCheck& check, const XMLElement& root, bool isWanted,
                QDXML_700::QDRecordCounts& counts) {
  return ReadCount(check, root, "recordCount", isWanted, counts.unweighted) &&
         ReadCount(check, root, "weightedCount", isWanted, counts.weighted) &&
         ReadCount(check, root, "droppedCount", isWanted, counts.dropped) &&
         ReadCount(check, root, "badWeightCount", isWanted, counts.badWeight) &&
         ReadCount(check, root, "weightedDroppedCount", isWanted, counts.weightedDropped);
}

VariableKind KindOf(Measure measure, StorageKind storage) {
  switch (measure) {
    case Measure::Continuous:
      return VariableKind::Continuous;
    case Measure::Ordinal:
    case Measure::Nominal:
      return storage == StorageKind::String ? VariableKind::StringCategory
                                            : VariableKind::NumericCategory;
    case Measure::Other:
      break;
  }
  return VariableKind::Other;
}

bool ReadCategories(DocumentCheck& check, const XMLElement& element,
                    DataModelParser::Model::Field& field) {
  const bool isNumeric = field.storage != StorageKind::String;
  const QDXML_700::QDContVar numbers(field.name, {}, VariableKind::Continuous, field.storage,
                                     VariableRole::Input, 0);
  for (XMLElement value = element.firstChild(); value; value = value.nextSibling()) {
    if (value.name() != "Value") return check.RefuseUnknown(value);
    if (!check.IsPlain(value, {"value", "label", "missing"}) || !check.Has(value, "value")) {
      return false;
    }
    if (value.firstChild()) return check.RefuseUnknown(value.firstChild());
    QDXML_700::QDCategory category{std::string(value.attribute("value")),
                                   std::numeric_limits<double>::quiet_NaN(),
                                   std::string(value.attribute("label"))};
    if (isNumeric && !numbers.TextToNumber(category.text, category.number)) {
      return check.RefuseValue(value, "value");
    }
    if (value.hasAttribute("missing")) {
      if (value.attribute("missing") != "user") return check.RefuseValue(value, "missing");
      continue;
    }
    field.categories.push_back(std::move(category));
  }
  return true;
}

bool ReadField(DocumentCheck& check, const XMLElement& element,
               DataModelParser::Model::Field& field) {
  if (element.name() != "Field") return check.RefuseUnknown(element);
  if (!check.IsPlain(element, {"name", "label", "measure", "storage", "role"}) ||
      !check.Has(element, "name")) {
    return false;
  }
  field.name = element.attribute("name");
  field.label = element.attribute("label");
  Measure measure{};
  const bool isText = element.attribute("storage") == "string";
  if (!ReadWord(check, element, "measure", kMeasures,
                isText ? Measure::Nominal : Measure::Continuous, measure)) {
    return false;
  }
  const bool isCategorical = measure == Measure::Nominal || measure == Measure::Ordinal;
  if (!ReadWord(check, element, "storage", kStorages,
                isCategorical ? StorageKind::String : StorageKind::Real, field.storage) ||
      !ReadWord(check, element, "role", kRoles, {VariableRole::Input}, field.role)) {
    return false;
  }
  if (measure == Measure::Continuous && field.storage == StorageKind::String) {
    return check.Refuse(element, "a continuous field cannot be stored as string");
  }
  field.kind = KindOf(measure, field.storage);
  field.isOrdinal = measure == Measure::Ordinal;
  return ReadCategories(check, element, field);
}

bool ReadModel(DocumentCheck& check, const XMLElement& root, bool withCounts,
               DataModelParser::Model& model) {
  if (!check.IsPlain(root, {"recordCount", "weightedCount", "droppedCount", "badWeightCount",
                            "weightedDroppedCount"}) ||
      !ReadCounts(check, root, withCounts, model.counts)) {
    return false;
  }
  bool hasWeight = false;
  for (XMLElement element = root.firstChild(); element; element = element.nextSibling()) {
    DataModelParser::Model::Field& field = model.fields.emplace_back();
    if (!ReadField(check, element, field)) return false;
    if (field.role != VariableRole::FrequencyWeight) continue;
    if (hasWeight) return check.Refuse(element, "a second field of role 'frequencyWeight'");
    hasWeight = true;
  }
  return true;
}

}  // namespace

DataModelParser::DataModelParser() : model(std::make_unique<Model>()) {}

DataModelParser::~DataModelParser() = default;

bool DataModelParser::Parse(const HbHelperV1::XMLDocument& document, bool withCounts,
                            std::string& problem) {
  model = std::make_unique<Model>();
  DocumentCheck check(document, problem);
  if (check.HasRoot("DataModel") && ReadModel(check, document.root(), withCounts, *model)) {
    return true;
  }
  model = std::make_unique<Model>();
  return false;
}

std::size_t DataModelParser::FieldCount() const { return model->fields.size(); }

}  // namespace QDHB_700

#include <algorithm>
#include <array>
#include <initializer_list>
#include <unordered_set>
#include <utility>

#include "host/data/input_error.h"
#include "host/data/model.h"
#include "host/data/near_miss.h"
#include "host/data/number.h"
#include "host/data/xml_reader.h"
#include "host/data/xml_writer.h"

namespace npar_host {
namespace {

template <class Value>
struct Word {
  const char* text;
  Value value;
};

constexpr std::array kMeasures = {
    Word<Measure>{"continuous", Measure::Continuous}, Word<Measure>{"ordinal", Measure::Ordinal},
    Word<Measure>{"nominal", Measure::Nominal}, Word<Measure>{"other", Measure::Other}};
constexpr std::array kStorages = {
    Word<Storage>{"real", Storage::Real},     Word<Storage>{"integer", Storage::Integer},
    Word<Storage>{"string", Storage::String}, Word<Storage>{"date", Storage::Date},
    Word<Storage>{"time", Storage::Time},     Word<Storage>{"timestamp", Storage::Timestamp}};
constexpr std::array kRoles = {Word<Role>{"input", Role::Input},
                               Word<Role>{"frequencyWeight", Role::FrequencyWeight},
                               Word<Role>{"caseId", Role::CaseId}, Word<Role>{"none", Role::None}};
constexpr std::array kMissings = {Word<bool>{"user", true}};

constexpr std::array kCountNames = {"recordCount", "weightedCount", "droppedCount",
                                    "badWeightCount", "weightedDroppedCount"};

/// Reads one document; knows where each element stands.
class ModelReader {
 public:
  ModelReader(std::string_view text, const std::string& name)
      : text(text), name(name), locations(name, text) {}

  std::vector<FieldSpec> Read() {
    pugi::xml_document document;
    ReadXml(document, text, name);
    const pugi::xml_node root = document.document_element();
    if (std::string_view(root.name()) != "DataModel") {
      Fail(root, "the document is a " + Quoted(root.name()) + "; a data model is a \"DataModel\"");
    }
    CheckAttributes(
        root, {kCountNames[0], kCountNames[1], kCountNames[2], kCountNames[3], kCountNames[4]});
    std::vector<FieldSpec> specs;
    std::unordered_set<std::string> known;
    std::array<bool, 2> hasRole{};
    for (const pugi::xml_node node : root.children()) {
      CheckElement(node, "Field");
      FieldSpec spec = ReadField(node);
      if (!known.insert(spec.name).second) {
        Fail(node, "field " + Quoted(spec.name) + " stands twice; describe it once");
      }
      if (spec.role == Role::FrequencyWeight || spec.role == Role::CaseId) {
        bool& isTaken = hasRole[spec.role == Role::CaseId ? 1 : 0];
        if (isTaken) Fail(node, "a second field has this role; give it to one field");
        isTaken = true;
      }
      specs.push_back(std::move(spec));
    }
    return specs;
  }

 private:
  FieldSpec ReadField(const pugi::xml_node& node) const {
    CheckAttributes(node, {"name", "label", "measure", "storage", "role"});
    FieldSpec spec;
    spec.location = Location(node);
    spec.name = Required(node, "name");
    spec.label = node.attribute("label").value();
    ReadWord(node, "measure", kMeasures, spec.measure);
    ReadWord(node, "storage", kStorages, spec.storage);
    ReadWord(node, "role", kRoles, spec.role);
    const bool needsNumbers = spec.measure == Measure::Continuous ||
                              spec.measure == Measure::Other || spec.role == Role::FrequencyWeight;
    if (spec.storage == Storage::String && needsNumbers && spec.role != Role::CaseId) {
      Fail(node, "field " + Quoted(spec.name) +
                     " is to hold numbers and has the storage \"string\"; change one of the two");
    }
    for (const pugi::xml_node child : node.children()) {
      CheckElement(child, "Value");
      CheckAttributes(child, {"value", "label", "missing"});
      ValueSpec value;
      value.location = Location(child);
      value.value = Required(child, "value");
      value.label = child.attribute("label").value();
      ReadWord(child, "missing", kMissings, value.isUserMissing);
      CheckLeaf(child);
      spec.values.push_back(std::move(value));
    }
    return spec;
  }

  template <class Value, std::size_t count>
  void ReadWord(const pugi::xml_node& node, const char* attribute,
                const std::array<Word<Value>, count>& words, Value& value) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    if (!found) return;
    std::string choice;
    for (const Word<Value>& word : words) {
      if (std::string_view(found.value()) == word.text) {
        value = word.value;
        return;
      }
      choice.append(choice.empty() ? "" : ", ").append(word.text);
    }
    Fail(node, std::string(attribute) + " is " + Quoted(found.value()) + "; take " +
                   (count > 1 ? "one of " : "") + choice);
  }

  const char* Required(const pugi::xml_node& node, const char* attribute) const {
    const pugi::xml_attribute found = node.attribute(attribute);
    if (!found) {
      Fail(node, Quoted(node.name()) + " has no attribute " + Quoted(attribute) + "; add it");
    }
    return found.value();
  }

  void CheckAttributes(const pugi::xml_node& node, std::initializer_list<const char*> known) const {
    std::vector<std::string> seen;
    for (const pugi::xml_attribute attribute : node.attributes()) {
      bool isKnown = false;
      for (const char* name : known)
        isKnown = isKnown || std::string_view(name) == attribute.name();
      const bool isSchemaHint = std::string_view(attribute.name()).starts_with("xmlns") ||
                                std::string_view(attribute.name()).starts_with("xsi:");
      if (!isKnown && !isSchemaHint) {
        const std::vector<std::string> names(known.begin(), known.end());
        Fail(node, Quoted(node.name()) + " has the unknown attribute " + Quoted(attribute.name()) +
                       NearMiss(attribute.name(), names) + "; remove or correct it");
      }
      for (const std::string& other : seen) {
        if (other == attribute.name()) {
          Fail(node, "attribute " + Quoted(other) + " stands twice; remove one");
        }
      }
      seen.emplace_back(attribute.name());
    }
  }

  void CheckElement(const pugi::xml_node& node, const char* wanted) const {
    if (node.type() == pugi::node_element && std::string_view(node.name()) == wanted) return;
    if (node.type() == pugi::node_element) {
      Fail(node, "element " + Quoted(node.name()) + " has no place here; " + Quoted(wanted) +
                     " is what may stand here");
    }
    Fail(node, "text has no place here; remove it");
  }

  void CheckLeaf(const pugi::xml_node& node) const {
    if (node.first_child()) Fail(node.first_child(), "a value has no content; remove it");
  }

  std::string Location(const pugi::xml_node& node) const {
    return locations.Of(OffsetOf(node, text));
  }

  [[noreturn]] void Fail(const pugi::xml_node& node, const std::string& message) const {
    throw InputError(Location(node) + ": " + message);
  }

  std::string_view text;
  const std::string& name;
  mutable Locations locations;
};

template <class Value, std::size_t count>
const char* TextOf(Value value, const std::array<Word<Value>, count>& words) {
  for (const Word<Value>& word : words) {
    if (word.value == value) return word.text;
  }
  return "";
}

}  // namespace

const char* WordOf(Storage storage) { return TextOf(storage, kStorages); }

std::vector<FieldSpec> ParseModel(std::string_view text, const std::string& name) {
  return ModelReader(text, name).Read();
}

std::string WriteModel(const DataModel& model, const RecordCounts* counts) {
  pugi::xml_document document;
  pugi::xml_node root = AddElement(document, "DataModel");
  if (counts != nullptr) {
    const std::array values = {counts->kept, counts->weighted, counts->dropped, counts->badWeight,
                               counts->weightedDropped};
    for (std::size_t i = 0; i < values.size(); ++i) {
      AddAttribute(root, kCountNames[i], std::to_string(values[i]).c_str());
    }
  }
  for (const Field& field : model.fields) {
    pugi::xml_node node = AddElement(root, "Field");
    AddAttribute(node, "name", field.name.c_str());
    if (!field.label.empty()) AddAttribute(node, "label", field.label.c_str());
    AddAttribute(node, "measure", TextOf(field.measure, kMeasures));
    AddAttribute(node, "storage", WordOf(field.storage));
    AddAttribute(node, "role", TextOf(field.role, kRoles));
    for (const Category& category : field.categories) {
      pugi::xml_node value = AddElement(node, "Value");
      AddAttribute(value, "value", category.text.c_str());
      if (!category.label.empty()) AddAttribute(value, "label", category.label.c_str());
      if (category.isUserMissing) AddAttribute(value, "missing", TextOf(true, kMissings));
    }
  }
  return TextOfXml(document, " ", pugi::format_indent);
}

}  // namespace npar_host

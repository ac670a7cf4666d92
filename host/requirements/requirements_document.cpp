#include "host/data/input_error.h"
#include "host/data/xml_reader.h"
#include "host/requirements/requirements.h"

namespace npar_host {
namespace {

// The names that components use in requirement documents, letter for letter ("WeightFeild" is no
// slip of ours: hosts read it so).
constexpr std::string_view kExecution = "Execution";
constexpr std::string_view kOperation = "Operation";
constexpr std::string_view kComponentId = "componentId";
constexpr std::string_view kMissing = "Missing";
constexpr std::string_view kEncoding = "Encoding";
constexpr std::string_view kExcludeUserMissing = "ExcludeUMissField";
constexpr std::string_view kWeightField = "WeightFeild";
constexpr std::string_view kListwiseDelete = "ListwiseDelete";
constexpr std::string_view kRequiredFields = "RequiredFields";
constexpr std::string_view kFieldName = "Field_Name";
constexpr std::string_view kWeightAdjustment = "FreqWeightAdj";
constexpr std::string_view kRound = "Round";
constexpr std::string_view kCategoryEncoding = "CatEncode";
constexpr std::string_view kNone = "None";
constexpr std::string_view kNominal = "Nominal";
constexpr std::string_view kOrdinal = "Ordinal";

constexpr std::string_view kName = "execution requirements";

class RequirementsReader {
 public:
  explicit RequirementsReader(std::string_view text) : text(text) {}

  Requirements Read() {
    pugi::xml_document document;
    ReadXml(document, text, kName);
    const pugi::xml_node root = document.document_element();
    if (root.name() != kExecution) Fail(root, "the document is no \"Execution\"");
    for (const pugi::xml_node operation : root.children()) {
      const std::string_view component = operation.attribute(kComponentId.data()).value();
      if (operation.name() != kOperation || (component != kMissing && component != kEncoding)) {
        Fail(operation, "this host does not know the operation " + Quoted(component));
      }
      for (const pugi::xml_node parameter : operation.child("Parameters").children()) {
        ReadParameter(parameter);
      }
    }
    return std::move(requirements);
  }

 private:
  void ReadParameter(const pugi::xml_node& parameter) {
    const std::string_view name = parameter.attribute("name").value();
    const pugi::xml_node list = parameter.child("ListValue");
    if (name == kExcludeUserMissing) {
      ReadNames(list, requirements.excludeUserMissing);
    } else if (name == kListwiseDelete) {
      ReadNames(list, requirements.listwiseDelete);
    } else if (name == kWeightField) {
      const pugi::xml_node weight = parameter.child("StructuredValue");
      requirements.weightField = Attribute(weight, kFieldName);
      requirements.roundWeight = Attribute(weight, kWeightAdjustment) == kRound;
    } else if (name == kRequiredFields) {
      for (const pugi::xml_node field : list.children("StructuredValue")) {
        requirements.requiredFields.push_back(
            {std::string(Attribute(field, kFieldName)), ReadEncoding(field)});
      }
    } else {
      Fail(parameter, "this host does not know the parameter " + Quoted(name));
    }
  }

  Requirements::Encoding ReadEncoding(const pugi::xml_node& field) const {
    const std::string_view encoding = Attribute(field, kCategoryEncoding);
    if (encoding == kNone) return Requirements::Encoding::None;
    if (encoding == kNominal) return Requirements::Encoding::Nominal;
    if (encoding == kOrdinal) return Requirements::Encoding::Ordinal;
    Fail(field, "this host does not know the encoding " + Quoted(encoding));
  }

  static void ReadNames(const pugi::xml_node& list, std::vector<std::string>& names) {
    for (const pugi::xml_node value : list.children("Value")) {
      names.emplace_back(value.attribute("value").value());
    }
  }

  static std::string_view Attribute(const pugi::xml_node& structure, std::string_view name) {
    return structure.find_child_by_attribute("Attribute", "name", name.data())
        .attribute("value")
        .value();
  }

  [[noreturn]] void Fail(const pugi::xml_node& node, const std::string& message) const {
    throw InputError(PlaceOf(node, text, kName) + ": " + message +
                     "; use a component that this host can serve");
  }

  std::string_view text;
  Requirements requirements;
};

}  // namespace

Requirements ParseRequirements(std::string_view text) { return RequirementsReader(text).Read(); }

}  // namespace npar_host

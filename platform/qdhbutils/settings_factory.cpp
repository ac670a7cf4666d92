#include <utility>

#include "foundation/peer.h"
#include "qdhbutils/document_check.h"

namespace {

using HbHelperV1::XMLElement;
using HbHelperV1::XMLElements;
using QDXML_700::QDSettings;

/// Turns the elements of a parameter document into settings. All operations are false after a
/// problem.
class SettingsReader {
 public:
  SettingsReader(const HbHelperV1::XMLDocument& document, std::string& problem)
      : check(document, problem) {}

  bool ReadDocument(const HbHelperV1::XMLDocument& document, QDSettings& settings) {
    return check.HasRoot(XMLElements::Parameters) && check.IsPlain(document.root(), {}) &&
           ReadEntries(document.root(), XMLElements::Parameter, settings);
  }

 private:
  /// The named entries inside of Parameters or a StructuredValue.
  bool ReadEntries(const XMLElement& parent, const char* entryName, QDSettings& settings) {
    for (XMLElement entry = parent.firstChild(); entry; entry = entry.nextSibling()) {
      if (entry.name() != entryName) return check.RefuseUnknown(entry);
      if (!ReadEntry(entry, settings)) return false;
    }
    return true;
  }

  bool ReadEntry(const XMLElement& entry, QDSettings& settings) {
    if (!check.IsPlain(entry, {"name", "value"}) || !check.Has(entry, "name")) return false;
    std::string name(entry.attribute("name"));
    const XMLElement child = entry.firstChild();
    if (entry.hasAttribute("value") == static_cast<bool>(child)) {
      return check.Refuse(entry, "'" + name + "' needs either a value or one child");
    }
    if (!child) {
      settings.AddNewSetting(std::move(name), std::string(entry.attribute("value")), "");
      return true;
    }
    if (child.nextSibling()) return check.RefuseUnknown(child.nextSibling());
    if (child.name() == XMLElements::ListValue) return ReadList(child, std::move(name), settings);
    if (child.name() != XMLElements::StructuredValue) return check.RefuseUnknown(child);
    QDSettings nested;
    if (!ReadStructure(child, nested)) return false;
    settings.AddNewSetting(std::move(name), std::move(nested), "");
    return true;
  }

  bool ReadStructure(const XMLElement& structure, QDSettings& settings) {
    return check.IsPlain(structure, {}) && ReadEntries(structure, XMLElements::Attribute, settings);
  }

  /// A list is of texts or of structures, as its first item says; an empty one is of texts.
  bool ReadList(const XMLElement& list, std::string name, QDSettings& settings) {
    if (!check.IsPlain(list, {})) return false;
    std::vector<std::string> texts;
    std::vector<QDSettings> structures;
    for (XMLElement item = list.firstChild(); item; item = item.nextSibling()) {
      if (item.name() == XMLElements::Value && structures.empty()) {
        if (!check.IsPlain(item, {"value"}) || !check.Has(item, "value")) return false;
        if (item.firstChild()) return check.RefuseUnknown(item.firstChild());
        texts.emplace_back(item.attribute("value"));
      } else if (item.name() == XMLElements::StructuredValue && texts.empty()) {
        if (!ReadStructure(item, structures.emplace_back())) return false;
      } else {
        return check.RefuseUnknown(item);
      }
    }
    if (structures.empty()) {
      settings.AddNewSetting(std::move(name), std::move(texts), "");
    } else {
      settings.AddNewSetting(std::move(name), std::move(structures), "");
    }
    return true;
  }

  QDHB_700::DocumentCheck check;
};

}  // namespace

std::uint32_t QDSettingsFactory::MakeModelSettings(const HbHelperV1::XMLDocument& document,
                                                   QDSettings& settings, std::int32_t* err,
                                                   std::string* problem) {
  std::string found;
  if (SettingsReader(document, found).ReadDocument(document, settings)) return HB_OK;
  if (problem != nullptr) *problem = found;
  *err = QDHB_700::kBadParameters;
  return HB_FAILED;
}

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

#include "foundation/host_helpers.h"

namespace QDHB_700 {

/// Refuses what a reader of documents does not understand. The first problem is kept with its
/// place: "line 3, column 5: unknown element 'Feild'".
class DocumentCheck {
 public:
  /// Neither is taken over.
  DocumentCheck(const HbHelperV1::XMLDocument& document, std::string& problem)
      : document(document), problem(problem) {}

  /// Keeps the problem; always false.
  bool Refuse(const HbHelperV1::XMLElement& at, std::string_view what) {
    problem = document.place(at);
    if (!problem.empty()) problem += ": ";
    problem += what;
    return false;
  }

  bool RefuseUnknown(const HbHelperV1::XMLElement& element) {
    return Refuse(element, "unknown element '" + std::string(element.name()) + "'");
  }

  bool RefuseValue(const HbHelperV1::XMLElement& at, std::string_view attribute) {
    return Refuse(at, "attribute '" + std::string(attribute) + "' cannot be '" +
                          std::string(at.attribute(std::string(attribute).c_str())) + "'");
  }

  /// Only the known attributes, each once, and no text between the children.
  bool IsPlain(const HbHelperV1::XMLElement& element,
               std::initializer_list<std::string_view> knownAttributes) {
    const std::string_view unexpected = element.unexpectedAttribute(knownAttributes);
    if (!unexpected.empty()) {
      return Refuse(element, "unexpected attribute '" + std::string(unexpected) + "'");
    }
    return !element.hasText() || Refuse(element, "unexpected text");
  }

  bool Has(const HbHelperV1::XMLElement& element, const char* attribute) {
    return element.hasAttribute(attribute) ||
           Refuse(element, "attribute '" + std::string(attribute) + "' is missing");
  }

  /// The document could be read and its root has that name.
  bool HasRoot(const char* name) {
    if (!document.isWellFormed()) {
      problem = document.problem();
      return false;
    }
    const HbHelperV1::XMLElement root = document.root();
    if (!root) return Refuse(root, "the document is empty");
    return root.name() == name || RefuseUnknown(root);
  }

 private:
  const HbHelperV1::XMLDocument& document;
  std::string& problem;
};

}  // namespace QDHB_700

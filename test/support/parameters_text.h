#pragma once

#include <string>
#include <vector>

// Pieces of parameter documents.

[[nodiscard]] inline std::string ListText(const std::vector<std::string>& values) {
  std::string text = "<ListValue>";
  for (const std::string& value : values) text += "<Value value=\"" + value + "\"/>";
  return text + "</ListValue>";
}

/// A parameter with a list of values.
[[nodiscard]] inline std::string ListParameter(const std::string& name,
                                               const std::vector<std::string>& values) {
  return "<Parameter name=\"" + name + "\">" + ListText(values) + "</Parameter>";
}

/// An attribute of a test, with a value or with a list of values.
[[nodiscard]] inline std::string Attribute(const std::string& name, const std::string& value) {
  return "<Attribute name=\"" + name + "\" value=\"" + value + "\"/>";
}
[[nodiscard]] inline std::string ListAttribute(const std::string& name,
                                               const std::vector<std::string>& values) {
  return "<Attribute name=\"" + name + "\">" + ListText(values) + "</Attribute>";
}

/// A selected test with further attributes.
[[nodiscard]] inline std::string Selected(const std::string& key, const std::string& more = {}) {
  return "<Parameter name=\"" + key + "\"><StructuredValue>" + Attribute("isSelected", "true") +
         more + "</StructuredValue></Parameter>";
}

/// The family of tests whose choices follow; the list of its fields stands before.
[[nodiscard]] inline std::string Family(const std::string& family, bool isAutomatic = false) {
  return "<Parameter name=\"isAutomatically" + family + "\" value=\"" +
         (isAutomatic ? "true" : "false") + "\"/>";
}

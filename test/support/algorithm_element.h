#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <pugixml.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/names.h"

/// Reads what a test wrote.
///
/// A path names tables and, last, an attribute row: "StatisticsResult/TotalN". Each part is looked
/// for at any depth below the one before it, the first in the order of the document counts.
class AlgorithmElement {
 public:
  struct Message {
    std::int32_t code;
    std::string type;
    std::vector<std::string> params;
    friend bool operator==(const Message&, const Message&) = default;
  };

  /// Takes the element over.
  explicit AlgorithmElement(XMLElement* element);
  /// The elements of a whole document, in order.
  [[nodiscard]] static std::vector<AlgorithmElement> AllOf(const std::string& document);

  [[nodiscard]] std::string Name() const { return Attribute("name"); }
  [[nodiscard]] std::string Type() const { return Attribute("type"); }
  [[nodiscard]] std::string Classification() const { return Attribute("classification"); }
  [[nodiscard]] std::string Decision() const { return Attribute("decision"); }

  /// Is there a table or row of that path?
  [[nodiscard]] bool Has(std::string_view path) const { return Find(path) != nullptr; }
  /// The value of an attribute row; "(absent)" where there is none.
  [[nodiscard]] std::string Text(std::string_view path) const;
  /// Its number; empty where there is none.
  [[nodiscard]] std::optional<double> Number(std::string_view path) const;
  /// Values of a simple table.
  [[nodiscard]] std::string RowNames(std::string_view path) const;
  [[nodiscard]] std::string ColumnNames(std::string_view path) const;
  [[nodiscard]] std::vector<std::string> Rows(std::string_view path) const;
  [[nodiscard]] std::vector<Message> Messages() const;
  [[nodiscard]] std::vector<std::int32_t> MessageCodes() const;
  /// "tag name" of the direct children, of the table where a path is given.
  [[nodiscard]] std::vector<std::string> ChildNames(std::string_view path = {}) const;
  /// What it holds, in order, without values: tables of rows as "name(...)", simple tables as
  /// "name[]", attribute rows by their names.
  [[nodiscard]] std::string Outline(std::string_view path = {}) const;
  /// The whole element, indented.
  [[nodiscard]] std::string Xml() const;

 private:
  explicit AlgorithmElement(const pugi::xml_node& node);
  [[nodiscard]] std::string Attribute(const char* name) const;
  [[nodiscard]] pugi::xml_node Find(std::string_view path) const;

  std::shared_ptr<pugi::xml_document> document;
  pugi::xml_node element;
};

/// So that a failing comparison prints the message.
std::ostream& operator<<(std::ostream& out, const AlgorithmElement::Message& message);

#pragma once

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "foundation/export.h"

namespace QDXML_700 {

class XMLElement;

/// A node of a document tree. A node that was appended belongs to its parent.
class QD_EXPORT XMLNode {
 public:
  virtual ~XMLNode() = default;
  /// The node as an element; null for text.
  [[nodiscard]] virtual XMLElement* AsElement() noexcept { return nullptr; }
  [[nodiscard]] virtual const XMLElement* AsElement() const noexcept { return nullptr; }
  virtual void Write(std::string& out, int depth, bool indented) const = 0;

 protected:
  XMLNode() = default;
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;
};

/// Text. Characters that XML 1.0 cannot hold are written as U+FFFD; bytes that are no UTF-8
/// likewise.
class QD_EXPORT XMLString final : public XMLNode {
 public:
  /// The caller owns the node.
  [[nodiscard]] static XMLString* Create(std::string text);
  [[nodiscard]] const std::string& GetText() const noexcept { return text; }
  void Write(std::string& out, int depth, bool indented) const override;

 private:
  explicit XMLString(std::string text) : text(std::move(text)) {}
  std::string text;
};

/// An element with attributes and children in the order in which they were added.
class QD_EXPORT XMLElement final : public XMLNode {
 public:
  using Attribute = std::pair<std::string, std::string>;

  /// The caller owns the node.
  [[nodiscard]] static XMLElement* Create(std::string name);
  ~XMLElement() override;

  void AddAttribute(std::string name, std::string value);
  void AddAttribute(std::string name, const char* value) {
    AddAttribute(std::move(name), std::string(value));
  }
  /// The number in the form "%.15g".
  void AddAttribute(std::string name, double value);
  /// Takes the node over; null is ignored.
  void Append(XMLNode* child);
  XMLElement* AsElement() noexcept override { return this; }
  const XMLElement* AsElement() const noexcept override { return this; }

  [[nodiscard]] const std::string& GetName() const noexcept { return name; }
  [[nodiscard]] const std::vector<Attribute>& GetAttributes() const noexcept { return attributes; }
  [[nodiscard]] const std::vector<std::unique_ptr<XMLNode>>& GetChildren() const noexcept {
    return children;
  }
  void Write(std::string& out, int depth, bool indented) const override;

 private:
  explicit XMLElement(std::string name) : name(std::move(name)) {}
  std::string name;
  std::vector<Attribute> attributes;
  std::vector<std::unique_ptr<XMLNode>> children;
};

/// Writes the XML declaration, the document type where one is given, and the tree; with `indented`
/// each element on a line of its own, but nothing is put into an element that holds text. 0, or 1
/// where the stream or the memory failed.
QD_EXPORT int WriteTree(std::ostream& stream, const char* documentType, const XMLElement* root,
                        bool indented);

/// The number as text in the C locale, in the form of printf's %.<digits>g. Not a number and the
/// missing value give "nan", infinities "inf" and "-inf", a negative zero "0".
[[nodiscard]] QD_EXPORT std::string ReplaceSep(double value, std::string_view format);

}  // namespace QDXML_700

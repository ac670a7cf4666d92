#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

#include "foundation/export.h"

namespace QDXML_700 {

class XMLElement;

/// A node of a document tree. A node that was appended belongs to its parent.
class QD_EXPORT XMLNode {
 public:
  virtual ~XMLNode() = default;
  /// The node as an element; null for text.
  [[nodiscard]] virtual XMLElement* AsElement() noexcept { return nullptr; }
  [[nodiscard]] const XMLElement* AsElement() const noexcept {
    return const_cast<XMLNode*>(this)->AsElement();
  }

 protected:
  XMLNode() = default;
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;

  std::string written;  // as it stands in a document: a text, or "<name a="v"" of an element

 private:
  friend class XMLElement;
  XMLNode* next = nullptr;  // of the same parent
};

/// Text. Characters that XML 1.0 cannot hold are written as U+FFFD; bytes that are no UTF-8
/// likewise.
class QD_EXPORT XMLString final : public XMLNode {
 public:
  /// The caller owns the node.
  [[nodiscard]] static XMLString* Create(std::string_view text);

 private:
  XMLString() = default;
};

/// An element with attributes and children in the order in which they were added.
class QD_EXPORT XMLElement final : public XMLNode {
 public:
  /// The caller owns the node.
  [[nodiscard]] static XMLElement* Create(std::string_view name);
  ~XMLElement() override;

  void AddAttribute(std::string_view name, std::string_view value);
  /// The number in the form "%.15g".
  void AddAttribute(std::string_view name, double value);
  /// Takes the node over; null is ignored.
  void Append(XMLNode* child);
  XMLElement* AsElement() noexcept override { return this; }

  [[nodiscard]] std::string_view GetName() const noexcept {
    return std::string_view(written).substr(1, nameSize);
  }
  void Write(std::string& out, bool indented) const;

 private:
  explicit XMLElement(std::string_view name);
  /// Appends ` name="` to `written`, in which it makes room for a value of that size.
  void OpenAttribute(std::string_view name, std::size_t valueSize);

  std::size_t nameSize;
  XMLNode* firstChild = nullptr;
  XMLNode* lastChild = nullptr;
  bool hasText = false;
};

/// Writes the XML declaration, the document type where one is given, and the tree; with `indented`
/// each element on a line of its own, but nothing is put into an element that holds text. 0, or 1
/// where the stream or the memory failed.
QD_EXPORT int WriteTree(std::ostream& stream, const char* documentType, const XMLElement* root,
                        bool indented);

/// The number as text in the C locale, in the form of printf's %.<digits>g. Not a number and the
/// missing value give "nan", infinities "inf" and "-inf", a negative zero "0".
[[nodiscard]] QD_EXPORT std::string ReplaceSep(double value, std::string_view format);
/// Appends that text of "%.15g".
QD_EXPORT void AppendNumber(std::string& out, double value);

}  // namespace QDXML_700

#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <memory_resource>
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
  explicit XMLNode(std::pmr::memory_resource* memory) : written(memory) {}
  XMLNode(const XMLNode&) = delete;
  XMLNode& operator=(const XMLNode&) = delete;

  std::pmr::string written;  // as it stands in a document: a text, or "<name a="v"" of an element

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
  friend class XMLElement;
  XMLString(std::string_view text, std::pmr::memory_resource* memory);
};

/// An element with attributes and children in the order in which they were added. Children that an
/// element makes itself share the memory of its tree, which is freed at once.
class QD_EXPORT XMLElement final : public XMLNode {
 public:
  /// The caller owns the node.
  [[nodiscard]] static XMLElement* Create(std::string_view name);
  ~XMLElement() override;

  void AddAttribute(std::string_view name, std::string_view value);
  /// The number in the form "%.15g".
  void AddAttribute(std::string_view name, double value);
  /// A new last child.
  XMLElement* AddElement(std::string_view name);
  void AddText(std::string_view text);
  /// Takes the node over; null is ignored.
  void Append(XMLNode* child);
  XMLElement* AsElement() noexcept override { return this; }

  [[nodiscard]] std::string_view GetName() const noexcept {
    return std::string_view(written).substr(1, nameSize);
  }
  void Write(std::string& out, bool indented) const;

 private:
  struct Tree;
  XMLElement(std::string_view name, Tree* tree, std::pmr::memory_resource* memory);
  /// Of this element's tree, which begins where there is none yet.
  Tree& TreeOfThis();
  void Link(XMLNode* child) noexcept;
  /// Appends ` name="` to `written`, in which it makes room for a value of that size.
  void OpenAttribute(std::string_view name, std::size_t valueSize);

  std::size_t nameSize;
  XMLNode* firstChild = nullptr;
  XMLNode* lastChild = nullptr;
  std::unique_ptr<Tree> ownTree;  // of an element that begins one
  Tree* tree;                     // null before the first child
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
inline constexpr std::size_t kLongestNumber = 48;  // bytes
/// Writes that text of "%.15g" to `out`, which has room for the longest, and returns its end.
QD_EXPORT char* WriteNumber(double value, char* out);
template <typename String>
void AppendNumber(String& out, double value) {
  char text[kLongestNumber];
  out.append(text, static_cast<std::size_t>(WriteNumber(value, text) - text));
}

}  // namespace QDXML_700

#include <algorithm>
#include <charconv>
#include <new>
#include <pugixml.hpp>

#include "foundation/host_helpers.h"
#include "qdcommon/byte_scan.h"

namespace HbHelperV1 {
namespace {

using QDXML_700::HoldsAny;
using QDXML_700::kBytesAtOnce;

/// Readers of documents recurse over their elements.
constexpr int kDeepestElement = 200;

pugi::xml_node Node(void* node) {
  return pugi::xml_node(static_cast<pugi::xml_node_struct*>(node));
}

std::string PlaceAt(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, std::min(offset, text.size()));
  const auto line = 1 + std::count(before.begin(), before.end(), '\n');
  const std::size_t lineStart = before.rfind('\n') + 1;  // npos + 1 is 0
  const auto column = 1 + std::count_if(before.begin() + static_cast<std::ptrdiff_t>(lineStart),
                                        before.end(), [](char byte) {
                                          return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
                                        });
  return "line " + std::to_string(line) + ", column " + std::to_string(column);
}

/// Characters of XML 1.0.
bool IsXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
  return !isSurrogate && code != 0xFFFE && code != 0xFFFF && code <= 0x10FFFF;
}

/// Length in bytes of the UTF-8 character that the text, which is not empty, starts with; 0 for
/// what is no UTF-8 or no character of XML.
std::size_t CharacterLength(std::string_view text) {
  constexpr std::uint32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};  // longer forms are refused
  const auto first = static_cast<unsigned char>(text[0]);
  if (first < 0x80) return IsXmlCharacter(first) ? 1 : 0;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC0 || first > 0xF4 || text.size() < length) return 0;
  std::uint32_t code = first & (0xFFU >> (length + 1));
  for (const char byte : text.substr(1, length - 1)) {
    if ((static_cast<unsigned char>(byte) & 0xC0) != 0x80) return 0;
    code = (code << 6) | (static_cast<unsigned char>(byte) & 0x3F);
  }
  return code >= kSmallest[length] && IsXmlCharacter(code) ? length : 0;
}

/// Is what follows an '&' one of the references that XML knows without a document type?
bool IsKnownReference(std::string_view rest) {
  const std::string_view name = rest.substr(0, rest.find(';'));
  if (name.size() == rest.size()) return false;
  for (const std::string_view known : {"amp", "lt", "gt", "quot", "apos"}) {
    if (name == known) return true;
  }
  if (name.size() < 2 || name[0] != '#') return false;
  const bool isHex = name[1] == 'x';
  const char* end = name.data() + name.size();
  std::uint32_t code = 0;
  const auto [stop, error] =
      std::from_chars(name.data() + (isHex ? 2 : 1), end, code, isHex ? 16 : 10);
  return error == std::errc() && stop == end && IsXmlCharacter(code);
}

struct Problem {
  std::size_t offset = 0;
  const char* what = nullptr;
};

/// Where a section ends in which '<' and '&' are text like any other; 0 where none begins.
std::size_t QuietSectionEnd(std::string_view text, std::size_t at) {
  struct Quiet {
    std::string_view begin, end;
  };
  constexpr Quiet kQuiet[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
  for (const Quiet& each : kQuiet) {
    if (!text.substr(at).starts_with(each.begin)) continue;
    const std::size_t end = text.find(each.end, at + each.begin.size());
    return std::min(end, text.size());  // of a section without end the parser says what is wrong
  }
  return 0;
}

/// Is it a text, behind its declaration, in which surely nothing is unsupported? Most are.
bool IsPlain(std::string_view text) {
  constexpr std::string_view kDeclaration = "<?xml ";
  const auto isSpecial = [](signed char byte) {  // negative from 0x80 on
    return (byte < ' ' && byte != '\n') || byte == '&' || byte == '!' || byte == '?';
  };
  std::size_t at = text.starts_with(kDeclaration) ? text.find('>') : 0;
  if (at > text.size()) return false;
  while (text.size() - at >= kBytesAtOnce) {
    if (HoldsAny<'&', '!', '?'>(text.data() + at)) return false;
    at += kBytesAtOnce;
  }
  return std::none_of(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isSpecial);
}

/// Looks for what the parser would pass over in silence: what is no text, a document type, and
/// references to entities, which only a document type could define.
Problem FindUnsupported(std::string_view text) {
  if (IsPlain(text)) return {};
  std::size_t quietEnd = 0;
  std::size_t length = 0;
  for (std::size_t at = 0; at < text.size(); at += length) {
    length = 1;
    const auto first = static_cast<signed char>(text[at]);
    if (first == '<' && at >= quietEnd) {
      quietEnd = QuietSectionEnd(text, at);
      if (quietEnd == 0 && text.substr(at).starts_with("<!")) {
        return {at, "a document type is not allowed"};
      }
    } else if (first == '&' && at >= quietEnd) {
      if (!IsKnownReference(text.substr(at + 1, 16))) return {at, "unknown entity"};
    } else if (first < ' ') {  // or negative: a byte of a character of several
      length = CharacterLength(text.substr(at));
      if (length == 0) return {at, "not a character of UTF-8 and XML"};
    }
  }
  return {};
}

/// The library's answer to a lack of memory is false, or no node.
void CheckMemory(bool isThere) {
  if (!isThere) throw std::bad_alloc();
}

pugi::xml_node AddElementTo(pugi::xml_node parent, const char* name) {
  pugi::xml_node element = parent.append_child(pugi::node_element);
  CheckMemory(element.set_name(name));
  return element;
}

/// A document of the host's, which gets it back also where memory runs out.
class Taken {
 public:
  explicit Taken(HBXML* document) : document(document) {}
  Taken(const Taken&) = delete;
  Taken& operator=(const Taken&) = delete;
  ~Taken() {
    std::int32_t ignored = 0;  // a host that cannot take it has no bearing on what was read
    if (!HB_HAS(document, HBXMLTable, release)) return;
    static_cast<void>(
        AskHost(&ignored, [&] { return document->table->release(document, &ignored); }));
  }

 private:
  HBXML* document;
};

class DepthCheck final : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    if (depth() < kDeepestElement || node.type() != pugi::node_element) return true;
    tooDeep = node;
    return false;
  }
  pugi::xml_node tooDeep;
};

}  // namespace

struct XMLDocument::Tree {
  pugi::xml_document document;
  std::string text;  // as it was read, for the places of problems
  std::string problem;

  void Read();
  void Refuse(std::size_t offset, const char* what) {
    problem = PlaceAt(text, offset) + ": " + what;
    document.reset();
  }
};

void XMLDocument::Tree::Read() {
  if (const Problem found = FindUnsupported(text); found.what != nullptr) {
    return Refuse(found.offset, found.what);
  }
  // As a fragment the parser keeps texts that stand outside of the root.
  const pugi::xml_parse_result result = document.load_buffer(
      text.data(), text.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
  CheckMemory(result.status != pugi::status_out_of_memory);
  if (!result) return Refuse(static_cast<std::size_t>(result.offset), result.description());
  if (!document.document_element()) return Refuse(text.size(), "No document element found");
  for (const pugi::xml_node node : document.children()) {
    if (node == document.document_element()) continue;
    const auto offset = static_cast<std::size_t>(node.offset_debug());
    if (node.type() == pugi::node_element) return Refuse(offset - 1, "a second root element");
    return Refuse(offset, "text beside the root element");
  }
  DepthCheck depth;
  document.traverse(depth);
  if (depth.tooDeep) {
    Refuse(static_cast<std::size_t>(depth.tooDeep.offset_debug()) - 1, "elements nest too deep");
  }
}

XMLElement XMLElement::addElement(const char* name) {
  return XMLElement(AddElementTo(Node(node), name).internal_object());
}

void XMLElement::addAttribute(const char* name, const std::string& value) {
  pugi::xml_attribute attribute = Node(node).append_attribute("");
  CheckMemory(attribute.set_name(name) && attribute.set_value(value.c_str()));
}

void XMLElement::addAttribute(const char* name, std::int32_t value) {
  addAttribute(name, std::to_string(value));
}

std::string_view XMLElement::name() const { return Node(node).name(); }

bool XMLElement::hasAttribute(const char* name) const {
  return !Node(node).attribute(name).empty();
}

std::string_view XMLElement::attribute(const char* name) const {
  return Node(node).attribute(name).value();
}

std::string_view XMLElement::unexpectedAttribute(
    std::initializer_list<std::string_view> known) const {
  std::uint64_t seen = 0;
  for (const pugi::xml_attribute attribute : Node(node).attributes()) {
    const std::string_view name = attribute.name();
    const auto* found = std::find(known.begin(), known.end(), name);
    if (found == known.end()) return name;
    const std::uint64_t bit = std::uint64_t{1} << (found - known.begin());
    if ((seen & bit) != 0) return name;
    seen |= bit;
  }
  return {};
}

bool XMLElement::hasText() const {
  for (const pugi::xml_node child : Node(node).children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) return true;
  }
  return false;
}

XMLElement XMLElement::firstChild(const char* name) const {
  for (const pugi::xml_node child : Node(node).children()) {
    if (child.type() != pugi::node_element) continue;
    if (name == nullptr || std::string_view(child.name()) == name) {
      return XMLElement(child.internal_object());
    }
  }
  return {};
}

XMLElement XMLElement::nextSibling(const char* name) const {
  for (pugi::xml_node next = Node(node).next_sibling(); next; next = next.next_sibling()) {
    if (next.type() != pugi::node_element) continue;
    if (name == nullptr || std::string_view(next.name()) == name) {
      return XMLElement(next.internal_object());
    }
  }
  return {};
}

std::ptrdiff_t XMLElement::offset() const {
  const std::ptrdiff_t ofName = Node(node).offset_debug();
  return ofName > 0 ? ofName - 1 : -1;
}

XMLDocument::XMLDocument() : tree(std::make_shared<Tree>()) {}

XMLDocument::XMLDocument(HBXML* document) : XMLDocument() {
  if (document == nullptr) {
    tree->problem = "there is no document";
    return;
  }
  const Taken taken(document);
  const char* text = nullptr;
  std::size_t length = 0;
  std::int32_t err = 0;
  if (!HB_HAS(document, HBXMLTable, getText) ||
      AskHost(&err, [&] { return document->table->getText(document, &text, &length, &err); }) !=
          HB_OK ||
      text == nullptr) {
    tree->problem = "the host did not give the document's text";
  } else {
    tree->text.assign(text, length);
    tree->Read();
  }
}

XMLDocument::XMLDocument(const XMLDocument&) = default;
XMLDocument& XMLDocument::operator=(const XMLDocument&) = default;
XMLDocument::~XMLDocument() = default;

bool XMLDocument::isWellFormed() const { return tree->problem.empty(); }

const std::string& XMLDocument::problem() const { return tree->problem; }

std::string XMLDocument::place(const XMLElement& element) const {
  const std::ptrdiff_t offset = element.offset();
  return offset < 0 ? std::string() : PlaceAt(tree->text, static_cast<std::size_t>(offset));
}

XMLElement XMLDocument::root() const {
  return XMLElement(tree->document.document_element().internal_object());
}

XMLElement XMLDocument::addElement(const char* name) {
  if (XMLElement top = root()) return top.addElement(name);
  return XMLElement(AddElementTo(tree->document, name).internal_object());
}

void XMLDocument::doc2string(std::string& text) const {
  struct Writer final : pugi::xml_writer {
    explicit Writer(std::string& text) : text(text) {}
    void write(const void* data, std::size_t size) override {
      text.append(static_cast<const char*>(data), size);
    }
    std::string& text;
  };
  text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  Writer writer(text);
  tree->document.save(writer, "  ", pugi::format_indent | pugi::format_no_declaration,
                      pugi::encoding_utf8);
}

}  // namespace HbHelperV1

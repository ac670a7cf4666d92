#include "foundation/xml.h"

#include <array>
#include <iterator>
#include <memory>
#include <new>
#include <ostream>
#include <utility>
#include <vector>

#include "qdcommon/byte_scan.h"

namespace QDXML_700 {

namespace {

/// Room for attributes, in bytes.
constexpr std::size_t kUsualAttributes = 80;

enum class Place { Text, Attribute };

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

/// Length of the UTF-8 sequence of a character of XML 1.0 at `at`; 0 for bytes that are none:
/// overlong forms, surrogates, values above U+10FFFF, U+FFFE and U+FFFF, and cut sequences.
std::size_t SequenceLength(std::string_view text, std::size_t at) {
  const auto byte = [&](std::size_t offset) {
    return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0u;
  };
  const unsigned lead = byte(0);
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  for (std::size_t offset = 1; offset < length; ++offset) {
    if ((byte(offset) & 0xC0u) != 0x80u) return 0;
  }
  const unsigned second = byte(1);
  if (lead == 0xE0 && second < 0xA0) return 0;
  if (lead == 0xED && second > 0x9F) return 0;
  if (lead == 0xEF && second == 0xBF && byte(2) > 0xBD) return 0;
  if (lead == 0xF0 && second < 0x90) return 0;
  if (lead == 0xF4 && second > 0x8F) return 0;
  return length;
}

/// What stands for an ASCII character; empty where it stands for itself.
constexpr std::string_view Escape(unsigned char character, Place place) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '\r':
      return "&#13;";  // a reader would make it a line feed
    case '"':
      return place == Place::Attribute ? "&quot;" : "";
    case '\n':
      return place == Place::Attribute ? "&#10;" : "";  // a reader would make it a blank
    case '\t':
      return place == Place::Attribute ? "&#9;" : "";
    default:
      return character < 0x20 ? kReplacement : "";
  }
}

/// Bytes that are looked at one by one; all others are copied in runs.
constexpr std::array<bool, 256> SpecialBytes(Place place) {
  std::array<bool, 256> special{};
  for (std::size_t byte = 0; byte < 256; ++byte) {
    special[byte] = byte >= 0x80 || !Escape(static_cast<unsigned char>(byte), place).empty();
  }
  return special;
}

void AppendEscaped(std::pmr::string& out, std::string_view text, Place place) {
  static constexpr std::array<bool, 256> inText = SpecialBytes(Place::Text);
  static constexpr std::array<bool, 256> inAttribute = SpecialBytes(Place::Attribute);
  const std::array<bool, 256>& special = place == Place::Text ? inText : inAttribute;
  const auto isSpecial = [&](std::size_t place) {
    return special[static_cast<unsigned char>(text[place])];
  };
  std::size_t runStart = 0;
  std::size_t at = 0;
  while (true) {
    while (text.size() - at >= kBytesAtOnce &&
           !HoldsAny<'\n', '&', '<', '>', '"'>(text.data() + at)) {
      at += kBytesAtOnce;
    }
    while (at < text.size() && !isSpecial(at)) ++at;
    if (at == text.size()) break;
    const auto byte = static_cast<unsigned char>(text[at]);
    const std::size_t length = byte < 0x80 ? 0 : SequenceLength(text, at);
    if (length > 0) {
      at += length;
      continue;
    }
    out.append(text, runStart, at - runStart);
    out += byte < 0x80 ? Escape(byte, place) : kReplacement;
    runStart = ++at;
  }
  out.append(text, runStart, at - runStart);
}

void StartLine(std::string& out, std::size_t depth) {
  constexpr std::string_view kBreak = "\n                ";
  if (depth < kBreak.size() && !out.empty() && out.back() != '\n') {
    out += kBreak.substr(0, depth + 1);
    return;
  }
  if (!out.empty() && out.back() != '\n') out += '\n';
  out.append(depth, ' ');
}

}  // namespace

/// What a root holds for the elements below it.
struct XMLElement::Tree {
  static constexpr std::size_t kUsualSize = 4096;  // bytes, of the nodes of a small table

  Tree() = default;
  Tree(const Tree&) = delete;
  Tree& operator=(const Tree&) = delete;
  // Nodes that were taken over bring what they took over themselves into the list, so that neither
  // stack nor memory is needed, however deep the tree is. Those in `memory` have nothing to free.
  ~Tree() {
    while (!taken.empty()) {
      const std::unique_ptr<XMLNode> node = std::move(taken.back());
      taken.pop_back();
      XMLElement* const element = node->AsElement();
      if (element == nullptr || element->ownTree == nullptr) continue;
      std::vector<std::unique_ptr<XMLNode>> further = std::move(element->ownTree->taken);
      std::move(further.begin(), further.end(), std::back_inserter(taken));
    }
  }

  template <typename Node, typename... Given>
  Node* Make(Given... given) {
    void* const room = memory.allocate(sizeof(Node), alignof(Node));
    return new (room) Node(given..., &memory);
  }

  std::pmr::monotonic_buffer_resource memory{kUsualSize};
  std::vector<std::unique_ptr<XMLNode>> taken;
};

XMLString* XMLString::Create(std::string_view text) {
  return new XMLString(text, std::pmr::get_default_resource());
}

XMLString::XMLString(std::string_view text, std::pmr::memory_resource* memory) : XMLNode(memory) {
  written.reserve(text.size());
  AppendEscaped(written, text, Place::Text);
}

XMLElement* XMLElement::Create(std::string_view name) {
  return new XMLElement(name, nullptr, std::pmr::get_default_resource());
}

XMLElement::XMLElement(std::string_view name, Tree* tree, std::pmr::memory_resource* memory)
    : XMLNode(memory), nameSize(name.size()), tree(tree) {
  written.reserve(name.size() + kUsualAttributes);
  written += '<';
  written += name;
}

XMLElement::~XMLElement() = default;

void XMLElement::OpenAttribute(std::string_view name, std::size_t valueSize) {
  constexpr std::size_t kSigns = 4;  // blank, equals sign and quotes
  const std::size_t size = written.size() + name.size() + valueSize + kSigns;
  if (size > written.capacity()) written.reserve(size + kUsualAttributes);
  written += ' ';
  written += name;
  written += "=\"";
}

void XMLElement::AddAttribute(std::string_view name, std::string_view value) {
  OpenAttribute(name, value.size());
  AppendEscaped(written, value, Place::Attribute);
  written += '"';
}

void XMLElement::AddAttribute(std::string_view name, double value) {
  constexpr std::size_t kUsualNumber = 20;  // characters
  OpenAttribute(name, kUsualNumber);
  AppendNumber(written, value);
  written += '"';
}

XMLElement::Tree& XMLElement::TreeOfThis() {
  if (tree == nullptr) {
    ownTree = std::make_unique<Tree>();
    tree = ownTree.get();
  }
  return *tree;
}

void XMLElement::Link(XMLNode* child) noexcept {
  (firstChild == nullptr ? firstChild : lastChild->next) = child;
  lastChild = child;
  hasText = hasText || child->AsElement() == nullptr;
}

XMLElement* XMLElement::AddElement(std::string_view name) {
  Tree& ofThis = TreeOfThis();
  auto* const child = ofThis.Make<XMLElement>(name, &ofThis);
  Link(child);
  return child;
}

void XMLElement::AddText(std::string_view text) { Link(TreeOfThis().Make<XMLString>(text)); }

void XMLElement::Append(XMLNode* child) {
  if (child == nullptr) return;
  std::unique_ptr<XMLNode> owned(child);
  Tree& ofThis = TreeOfThis();
  ofThis.taken.push_back(std::move(owned));
  XMLElement* const element = child->AsElement();
  if (element != nullptr && element->tree == nullptr) element->tree = &ofThis;
  Link(child);
}

// Elements whose children are not all written stand on a stack of our own. Below an element with
// text nothing is indented, since blanks would become part of its content.
void XMLElement::Write(std::string& out, bool indented) const {
  constexpr std::size_t kUsualDepth = 16;
  struct Open {
    const XMLElement* element;
    const XMLNode* next;
    bool indented;
  };
  std::vector<Open> open;
  open.reserve(kUsualDepth);
  const auto start = [&](const XMLElement& element, bool onOwnLine) {
    if (onOwnLine) StartLine(out, open.size());
    out += element.written;
    if (element.firstChild == nullptr) {
      out += "/>";
      return;
    }
    out += '>';
    open.push_back({&element, element.firstChild, onOwnLine && !element.hasText});
  };
  start(*this, indented);
  while (!open.empty()) {
    Open& top = open.back();
    if (top.next == nullptr) {
      const Open done = top;
      open.pop_back();
      if (done.indented) StartLine(out, open.size());
      out += "</";
      out += done.element->GetName();
      out += '>';
      continue;
    }
    const XMLNode& child = *std::exchange(top.next, top.next->next);
    if (const XMLElement* const element = child.AsElement()) {
      start(*element, top.indented);
    } else {
      out += child.written;
    }
  }
}

int WriteTree(std::ostream& stream, const char* documentType, const XMLElement* root,
              bool indented) {
  try {
    constexpr std::size_t kUsualSize = std::size_t{1} << 13;  // bytes
    std::string out;
    out.reserve(kUsualSize);
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (documentType != nullptr) {
      out += "<!DOCTYPE ";
      out += documentType;
      out += ">\n";
    }
    if (root != nullptr) root->Write(out, indented);
    out += '\n';
    stream.write(out.data(), static_cast<std::streamsize>(out.size()));
    return stream.good() ? 0 : 1;
  } catch (...) {  // no memory, or a stream that throws
    return 1;
  }
}

}  // namespace QDXML_700

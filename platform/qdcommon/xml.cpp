#include "foundation/xml.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <new>
#include <ostream>

namespace QDXML_700 {

namespace {

/// For which an element makes room at once.
constexpr std::size_t kUsualAttributes = 2;
constexpr std::size_t kUsualChildren = 4;

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

/// Length of the piece of text from `at` that is copied as it stands, a whole number of times what
/// the processor compares at once; 0 where such a piece has a special byte or goes beyond the end.
std::size_t PlainPiece(std::string_view text, std::size_t at) {
  constexpr std::size_t kAtOnce = 16;
  if (text.size() - at < kAtOnce) return 0;
  unsigned special = 0;
  for (const char character : text.substr(at, kAtOnce)) {
    const auto byte = static_cast<unsigned char>(character);
    special |= static_cast<unsigned>(byte < 0x20) | static_cast<unsigned>(byte >= 0x80) |
               static_cast<unsigned>(byte == '&') | static_cast<unsigned>(byte == '<') |
               static_cast<unsigned>(byte == '>') | static_cast<unsigned>(byte == '"');
  }
  return special == 0 ? kAtOnce : 0;
}

void AppendEscaped(std::string& out, std::string_view text, Place place) {
  static constexpr std::array<bool, 256> inText = SpecialBytes(Place::Text);
  static constexpr std::array<bool, 256> inAttribute = SpecialBytes(Place::Attribute);
  const std::array<bool, 256>& special = place == Place::Text ? inText : inAttribute;
  std::size_t runStart = 0;
  std::size_t at = 0;
  while (at < text.size()) {
    if (const std::size_t plain = PlainPiece(text, at)) {
      at += plain;
      continue;
    }
    const auto byte = static_cast<unsigned char>(text[at]);
    if (!special[byte]) {
      ++at;
      continue;
    }
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

void StartLine(std::string& out, int depth) {
  if (!out.empty() && out.back() != '\n') out += '\n';
  out.append(static_cast<std::size_t>(depth), ' ');
}

bool HasText(const XMLElement& element) {
  return std::any_of(element.GetChildren().begin(), element.GetChildren().end(),
                     [](const auto& child) { return child->AsElement() == nullptr; });
}

/// Writes "<name a="v"", which ">" or "/>" ends.
void OpenTag(std::string& out, const XMLElement& element) {
  out += '<';
  out += element.GetName();
  for (const auto& [name, value] : element.GetAttributes()) {
    out += ' ';
    out += name;
    out += "=\"";
    AppendEscaped(out, value, Place::Attribute);
    out += '"';
  }
}

void CloseTag(std::string& out, const XMLElement& element) {
  out += "</";
  out += element.GetName();
  out += '>';
}

}  // namespace

XMLString* XMLString::Create(std::string text) { return new XMLString(std::move(text)); }

void XMLString::Write(std::string& out, int, bool) const { AppendEscaped(out, text, Place::Text); }

XMLElement* XMLElement::Create(std::string name) { return new XMLElement(std::move(name)); }

// Walks the tree with the way back kept in the emptied places of the tree itself, so that freeing
// needs neither stack nor memory, however deep the tree is.
XMLElement::~XMLElement() {
  XMLElement* current = this;
  XMLElement* parent = nullptr;
  while (true) {
    if (!current->children.empty()) {
      std::unique_ptr<XMLNode>& place = current->children.back();
      XMLElement* const child = place ? place->AsElement() : nullptr;
      if (child == nullptr) {
        current->children.pop_back();
        continue;
      }
      static_cast<void>(place.release());
      place.reset(parent);
      parent = current;
      current = child;
      continue;
    }
    if (current == this) return;
    delete current;
    current = parent;
    parent = static_cast<XMLElement*>(current->children.back().release());
    current->children.pop_back();
  }
}

void XMLElement::AddAttribute(std::string attribute, std::string value) {
  if (attributes.empty()) attributes.reserve(kUsualAttributes);
  attributes.emplace_back(std::move(attribute), std::move(value));
}

void XMLElement::AddAttribute(std::string attribute, double value) {
  AddAttribute(std::move(attribute), ReplaceSep(value, "%.15g"));
}

void XMLElement::Append(XMLNode* child) {
  std::unique_ptr<XMLNode> owned(child);
  if (!owned) return;
  if (children.empty()) children.reserve(kUsualChildren);
  children.push_back(std::move(owned));
}

// Elements whose children are not all written stand on a stack of our own. Below an element with
// text nothing is indented, since blanks would become part of its content.
void XMLElement::Write(std::string& out, int depth, bool indented) const {
  struct Open {
    const XMLElement* element;
    std::size_t next;
    bool indented;
  };
  std::vector<Open> open;
  const auto start = [&](const XMLElement& element, bool onOwnLine) {
    if (onOwnLine) StartLine(out, depth + static_cast<int>(open.size()));
    OpenTag(out, element);
    if (element.children.empty()) {
      out += "/>";
      return;
    }
    out += '>';
    open.push_back({&element, 0, onOwnLine && !HasText(element)});
  };
  start(*this, indented);
  while (!open.empty()) {
    Open& top = open.back();
    if (top.next == top.element->children.size()) {
      const Open done = top;
      open.pop_back();
      if (done.indented) StartLine(out, depth + static_cast<int>(open.size()));
      CloseTag(out, *done.element);
      continue;
    }
    const XMLNode& child = *top.element->children[top.next++];
    if (const XMLElement* const element = child.AsElement()) {
      start(*element, top.indented);
    } else {
      child.Write(out, 0, false);
    }
  }
}

int WriteTree(std::ostream& stream, const char* documentType, const XMLElement* root,
              bool indented) {
  try {
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    if (documentType != nullptr) {
      out += "<!DOCTYPE ";
      out += documentType;
      out += ">\n";
    }
    if (root != nullptr) root->Write(out, 0, indented);
    out += '\n';
    stream.write(out.data(), static_cast<std::streamsize>(out.size()));
    return stream.good() ? 0 : 1;
  } catch (...) {  // no memory, or a stream that throws
    return 1;
  }
}

}  // namespace QDXML_700

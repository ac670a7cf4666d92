#include "host/data/xml_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <system_error>

#include "host/data/input_error.h"
#include "host/data/xml_text.h"

namespace npar_host {
namespace {

constexpr int kDeepestElement = 200;  // readers recurse over elements

/// Is `reference`, what stands between '&' and ';', known without a document type?
bool IsKnownReference(std::string_view reference) {
  for (const std::string_view known : {"amp", "lt", "gt", "quot", "apos"}) {
    if (reference == known) return true;
  }
  if (!reference.starts_with('#')) return false;
  reference.remove_prefix(1);
  const bool isHexadecimal = reference.starts_with('x');
  if (isHexadecimal) reference.remove_prefix(1);
  std::uint32_t character = 0;
  const char* const end = reference.data() + reference.size();
  const auto [stop, error] =
      std::from_chars(reference.data(), end, character, isHexadecimal ? 16 : 10);
  return error == std::errc() && stop == end && IsXmlCharacter(character);
}

/// What the parser passes over in silence: a document type, which it does not read, and references
/// to entities, which it leaves as they stand.
class MarkupCheck {
 public:
  explicit MarkupCheck(std::string_view text)
      : text(text), reference(std::min(text.find('&'), text.size())) {}

  /// Null for a text without any; otherwise Offset() tells where it stands.
  const char* Fault() {
    constexpr std::string_view kSilent[][2] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
    for (at = NextMarkup(at); at < text.size(); at = NextMarkup(at)) {
      const std::string_view rest = text.substr(at);
      const auto* silent = std::ranges::find_if(
          kSilent, [&](const auto& ends) { return rest.starts_with(ends[0]); });
      if (silent != std::end(kSilent)) {
        // One without an end is the parser's to tell.
        at = std::min(text.find((*silent)[1], at + (*silent)[0].size()), text.size());
        continue;
      }
      if (rest.starts_with("<!")) return "a document type is not taken; remove it";
      if (rest[0] == '&') {
        const std::size_t end = rest.substr(0, kLongestReference).find(';');
        if (end == std::string_view::npos || !IsKnownReference(rest.substr(1, end - 1))) {
          return "this names no entity of XML; write \"&amp;\" for the character \"&\"";
        }
      }
      ++at;
    }
    return nullptr;
  }
  [[nodiscard]] std::size_t Offset() const { return at; }

 private:
  static constexpr std::size_t kLongestReference = 16;

  /// The next place of a '<' or '&', or the end.
  [[nodiscard]] std::size_t NextMarkup(std::size_t from) {
    if (reference < from) reference = std::min(text.find('&', from), text.size());
    return std::min(text.find('<', from), reference);
  }

  std::string_view text;
  std::size_t reference;  // the next '&', or the end
  std::size_t at = 0;
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

void ReadXml(pugi::xml_document& document, std::string_view text, std::string_view name,
             unsigned parsing) {
  const auto fail = [&](const std::string& place, const std::string& what) {
    throw InputError(place + ": " + what);
  };
  const auto failAt = [&](std::size_t offset, const std::string& what) {
    fail(LocationInText(name, text, offset), what);
  };
  std::size_t offset = 0;
  if (const char* fault = XmlTextFault(text, &offset)) failAt(offset, fault);
  MarkupCheck markup(text);
  if (const char* fault = markup.Fault()) failAt(markup.Offset(), fault);

  // As a fragment the parser keeps texts that stand outside of the root.
  const auto parsed = document.load_buffer(text.data(), text.size(), parsing | pugi::parse_fragment,
                                           pugi::encoding_utf8);
  if (parsed.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!parsed) {
    failAt(static_cast<std::size_t>(parsed.offset),
           std::string(parsed.description()) + "; give a well-formed XML document");
  }
  const pugi::xml_node root = document.document_element();
  if (!root) failAt(0, "this is no XML document; give one");
  for (const pugi::xml_node node : document.children()) {
    if (node == root) continue;
    const std::string place = PlaceOf(node, text, name);
    if (node.type() == pugi::node_element) fail(place, "a second root element; remove it");
    fail(place, "text has no place beside the root element; remove it");
  }
  DepthCheck depth;
  document.traverse(depth);
  if (depth.tooDeep) {
    fail(PlaceOf(depth.tooDeep, text, name),
         "elements nest more than " + std::to_string(kDeepestElement) + " deep");
  }
}

std::size_t OffsetOf(pugi::xml_node node, std::string_view text) {
  // The offset of an element is that of its name, one behind its beginning; that of a text may be
  // that of blanks in front.
  const auto offset = static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
  if (node.type() == pugi::node_element) return offset - (offset > 0 ? 1 : 0);
  return std::min(text.find_first_not_of(" \t\r\n", offset), text.size());
}

std::string PlaceOf(pugi::xml_node node, std::string_view text, std::string_view name) {
  return LocationInText(name, text, OffsetOf(node, text));
}

}  // namespace npar_host

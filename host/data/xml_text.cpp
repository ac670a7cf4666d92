#include "host/data/xml_text.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace npar_host {
namespace {

constexpr const char* kNotUtf8 = "the text is not UTF-8; save the file as UTF-8";
constexpr const char* kNoXmlCharacter =
    "the text holds a control character that no XML document can carry; remove it";

}  // namespace

const char* XmlTextFault(std::string_view text) {
  for (std::size_t i = 0; i < text.size();) {
    const auto first = static_cast<unsigned char>(text[i]);
    if (first < 0x80) {
      if (first < 0x20 && first != '\t' && first != '\n' && first != '\r') return kNoXmlCharacter;
      ++i;
      continue;
    }
    const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    // The smallest character of that length: a smaller one must be spelled shorter.
    constexpr std::array<std::uint32_t, 5> kSmallest = {0, 0, 0x80, 0x800, 0x10000};
    if (first < 0xC0 || first > 0xF7 || i + length > text.size()) return kNotUtf8;
    std::uint32_t character = first & (0x7FU >> length);
    for (std::size_t j = 1; j < length; ++j) {
      const auto next = static_cast<unsigned char>(text[i + j]);
      if ((next & 0xC0U) != 0x80) return kNotUtf8;
      character = character << 6 | (next & 0x3FU);
    }
    const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
    if (character < kSmallest[length] || character > 0x10FFFF || isSurrogate) return kNotUtf8;
    if (character == 0xFFFE || character == 0xFFFF) return kNoXmlCharacter;
    i += length;
  }
  return nullptr;
}

}  // namespace npar_host

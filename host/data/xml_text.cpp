#include "host/data/xml_text.h"

#include <array>

namespace npar_host {

const char* const kNotUtf8 = "the text is not UTF-8; save the file as UTF-8";

namespace {

constexpr const char* kNoXmlCharacter =
    "the text holds a control character that no XML document can carry; remove it";

bool IsSurrogate(std::uint32_t character) { return character >= 0xD800 && character <= 0xDFFF; }

/// Of the bytes from `i` on, how many are surely printable ASCII or line breaks.
std::size_t PlainBytes(std::string_view text, std::size_t i) {
  constexpr std::size_t kAtOnce = 32;  // compilers unroll shorter loops and then compare singly
  const std::size_t begin = i;
  for (; text.size() - i >= kAtOnce; i += kAtOnce) {
    unsigned char special = 0;
    for (std::size_t j = 0; j < kAtOnce; ++j) {
      const auto byte = static_cast<signed char>(text[i + j]);
      special |= static_cast<unsigned char>((byte < ' ') & (byte != '\n'));
    }
    if (special != 0) break;
  }
  return i - begin;
}

/// Takes the character that starts at text[i]; null, or what is wrong with it.
const char* TakeCharacter(std::string_view text, std::size_t& i) {
  const auto first = static_cast<unsigned char>(text[i]);
  if (first < 0x80) {
    if (!IsXmlCharacter(first)) return kNoXmlCharacter;
    ++i;
    return nullptr;
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
  if (character < kSmallest[length] || character > 0x10FFFF || IsSurrogate(character)) {
    return kNotUtf8;
  }
  if (!IsXmlCharacter(character)) return kNoXmlCharacter;
  i += length;
  return nullptr;
}

}  // namespace

bool IsXmlCharacter(std::uint32_t character) {
  if (character < 0x20) return character == '\t' || character == '\n' || character == '\r';
  return !IsSurrogate(character) && character != 0xFFFE && character != 0xFFFF &&
         character <= 0x10FFFF;
}

const char* XmlTextFault(std::string_view text, std::size_t* offset) {
  for (std::size_t i = 0; i < text.size();) {
    if (const std::size_t plain = PlainBytes(text, i); plain > 0) {
      i += plain;
      continue;
    }
    const char* const fault = TakeCharacter(text, i);
    if (fault == nullptr) continue;
    if (offset != nullptr) *offset = i;
    return fault;
  }
  return nullptr;
}

}  // namespace npar_host

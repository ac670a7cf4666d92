#include "host/data/input_error.h"

#include <algorithm>

namespace npar_host {
namespace {

constexpr std::size_t kLongestQuote = 60;  // bytes

bool IsContinuationByte(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string Locations::Of(std::size_t offset) {
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (offset < at) *this = Locations(name, text);
  if (at == 0 && text.starts_with(kByteOrderMark)) at = kByteOrderMark.size();
  for (const std::size_t end = std::min(offset, text.size()); at < end; ++at) {
    const char byte = text[at];
    if (byte == '\n' || (byte == '\r' && (at + 1 >= text.size() || text[at + 1] != '\n'))) {
      ++line;
      column = 1;
    } else if (!IsContinuationByte(byte)) {
      ++column;
    }
  }
  return std::string(name) + ":" + std::to_string(line) + ":" + std::to_string(column);
}

std::string LocationInText(std::string_view name, std::string_view text, std::size_t offset) {
  return Locations(name, text).Of(offset);
}

std::string Quoted(std::string_view text) {
  std::size_t length = text.size();
  if (length > kLongestQuote) {
    length = kLongestQuote;
    while (length > 0 && IsContinuationByte(text[length])) --length;
  }
  std::string quoted(1, '"');
  for (const char byte : text.substr(0, length)) {
    // The text of an exception ends at a zero byte.
    if (byte == '\0') {
      quoted += "\\x00";
    } else {
      quoted += byte;
    }
  }
  quoted.append(length < text.size() ? "...\"" : "\"");
  return quoted;
}

}  // namespace npar_host

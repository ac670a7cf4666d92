#include "host/data/input_error.h"

#include <algorithm>

namespace npar_host {
namespace {

constexpr std::size_t kLongestQuote = 60;  // bytes

bool IsContinuationByte(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

}  // namespace

std::string LocationInText(std::string_view name, std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, std::min(offset, text.size()));
  std::size_t line = 1;
  std::size_t lineStart = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool endsLine =
        before[i] == '\n' || (before[i] == '\r' && (i + 1 >= text.size() || text[i + 1] != '\n'));
    if (!endsLine) continue;
    ++line;
    lineStart = i + 1;
  }
  if (line == 1 && before.starts_with("\xEF\xBB\xBF")) lineStart = 3;
  const std::string_view inLine = before.substr(lineStart);
  const auto column = std::count_if(inLine.begin(), inLine.end(),
                                    [](char byte) { return !IsContinuationByte(byte); });
  return std::string(name) + ":" + std::to_string(line) + ":" + std::to_string(column + 1);
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

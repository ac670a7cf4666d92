#include "host/request/word_list.h"

#include <cstddef>

namespace npar_host {
namespace {

std::size_t FindUnescaped(std::string_view text, char separator, std::size_t from) {
  for (std::size_t i = from; i < text.size(); ++i) {
    if (text[i] == '\\') {
      ++i;
    } else if (text[i] == separator) {
      return i;
    }
  }
  return std::string_view::npos;
}

}  // namespace

std::vector<std::string> SplitWords(std::string_view text, char separator) {
  std::vector<std::string> words;
  if (text.empty()) return words;
  std::size_t start = 0;
  while (true) {
    const std::size_t end = FindUnescaped(text, separator, start);
    words.emplace_back(text.substr(start, end - start));
    if (end == std::string_view::npos) return words;
    start = end + 1;
  }
}

bool CutAt(std::string_view text, char separator, std::string& head, std::string& tail) {
  const std::size_t end = FindUnescaped(text, separator, 0);
  head = text.substr(0, end);
  tail = end == std::string_view::npos ? "" : text.substr(end + 1);
  return end != std::string_view::npos;
}

std::string Unescape(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '\\' && i + 1 < text.size()) ++i;
    plain += text[i];
  }
  return plain;
}

}  // namespace npar_host

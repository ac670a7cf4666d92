#include "host/request/field_list.h"

#include <algorithm>
#include <cstddef>

#include "host/data/input_error.h"
#include "host/request/word_list.h"

namespace npar_host {
namespace {

/// Bytes of the character of UTF-8 at that place.
std::size_t LengthAt(std::string_view text, std::size_t at) {
  std::size_t end = at + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) ++end;
  return end - at;
}

/// Does the text fit the pattern, in which a backslash takes the next character as it stands?
bool Fits(std::string_view pattern, std::string_view text) {
  constexpr std::size_t kNone = std::string_view::npos;
  std::size_t p = 0;
  std::size_t t = 0;
  std::size_t star = kNone;  // where the last one stands, and what it took so far
  std::size_t taken = 0;
  while (t < text.size()) {
    const bool isEscaped = p + 1 < pattern.size() && pattern[p] == '\\';
    const std::size_t at = isEscaped ? p + 1 : p;
    if (!isEscaped && p < pattern.size() && pattern[p] == '*') {
      star = p++;
      taken = t;
    } else if (!isEscaped && p < pattern.size() && pattern[p] == '?') {
      ++p;
      t += LengthAt(text, t);
    } else if (at < pattern.size() && pattern[at] == text[t]) {
      p = at + 1;
      ++t;
    } else if (star != kNone) {
      p = star + 1;
      t = ++taken;
    } else {
      return false;
    }
  }
  while (p < pattern.size() && pattern[p] == '*') ++p;
  return p == pattern.size();
}

bool IsPattern(std::string_view item) {
  std::string head, tail;
  return CutAt(item, '*', head, tail) || CutAt(item, '?', head, tail);
}

std::vector<std::string> Range(std::string_view item, const std::vector<std::string>& columns) {
  const std::vector<std::string> parts = SplitWords(item, '-');
  std::string first;
  for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
    first += (i > 0 ? "-" : "") + parts[i];
    std::string last = parts[i + 1];
    for (std::size_t j = i + 2; j < parts.size(); ++j) last += "-" + parts[j];
    const auto begin = std::ranges::find(columns, Unescape(first));
    const auto end = std::find(begin, columns.end(), Unescape(last));
    if (end != columns.end()) return {begin, end + 1};
  }
  return {};
}

}  // namespace

std::string EscapeQuoted(std::string_view list) {
  std::string escaped;
  bool isStart = true;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const std::size_t close = isStart && list[i] == '"' ? list.find('"', i + 1) : list.npos;
    const bool isQuoted = close != list.npos && (close + 1 == list.size() ||
                                                 list[close + 1] == ',' || list[close + 1] == '=');
    if (isQuoted) {
      for (const char c : list.substr(i + 1, close - i - 1)) escaped.append({'\\', c});
      i = close;
      isStart = false;
      continue;
    }
    if (list[i] == '\\' && i + 1 < list.size()) escaped += list[i++];
    escaped += list[i];
    isStart = list[i] == ',' && !(i > 0 && list[i - 1] == '\\');
  }
  return escaped;
}

std::vector<std::string> ExpandField(std::string_view item,
                                     const std::vector<std::string>& columns) {
  const std::string name = Unescape(item);
  if (std::ranges::find(columns, name) != columns.end()) return {name};
  std::vector<std::string> fields = Range(item, columns);
  if (fields.empty() && IsPattern(item)) {
    std::ranges::copy_if(columns, std::back_inserter(fields),
                         [&](const std::string& column) { return Fits(item, column); });
  }
  return fields.empty() ? std::vector<std::string>{name} : fields;
}

std::string SeparatorHint(const std::vector<std::string>& columns) {
  if (columns.size() != 1) return {};
  const std::string& header = columns.front();
  const std::string told = "the header is one field, " + Quoted(header) + "; ";
  for (const char separator : {';', '|', '\t', ',', ':'}) {
    if (header.find(separator) == std::string::npos) continue;
    const std::string shown = separator == '\t' ? "tab" : std::string(1, separator);
    return std::string(told)
        .append("if \"")
        .append(shown)
        .append("\" divides fields, add --separator '")
        .append(shown)
        .append("'");
  }
  if (header.find(' ') == std::string::npos) return {};
  return told +
         "if it is a title, pass it over with --skip 1; if blanks divide fields, add --separator "
         "space";
}

std::vector<std::string> ExpandFields(const std::vector<std::string>& items,
                                      const std::vector<std::string>& columns) {
  std::vector<std::string> fields;
  for (const std::string& item : items) {
    const std::vector<std::string> more = ExpandField(item, columns);
    for (const std::string& field : more) {
      const bool isKnown = std::ranges::find(fields, field) != fields.end();
      if (more.size() == 1 || !isKnown) fields.push_back(field);
    }
  }
  return fields;
}

std::string ShellWord(const std::string& text) {
  constexpr std::string_view kPlain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_.-/";
  if (!text.empty() && text.find_first_not_of(kPlain) == std::string::npos) return text;
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

std::string FieldArgument(const std::string& name) {
  return ShellWord(name.find(',') == std::string::npos ? name : '"' + name + '"');
}

}  // namespace npar_host

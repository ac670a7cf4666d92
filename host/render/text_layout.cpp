#include "host/render/text_layout.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <numeric>

namespace npar_host {
namespace {

constexpr std::size_t kColumnGap = 2;
constexpr std::size_t kNarrowestLabel = 12;
constexpr std::size_t kMostLinesOfCell = 4;
constexpr std::size_t kLongestWord = 400;  // in sentences

struct Range {
  char32_t first, last;
};

// East Asian wide characters and the usual emoji (Unicode 15, EastAsianWidth W and F, in blocks).
constexpr Range kWide[] = {{0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0x33FF},
                           {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},   {0xA000, 0xA4CF},
                           {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE4F},
                           {0xFF00, 0xFF60},   {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F},
                           {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

// Marks that are drawn over the character before them, and joiners.
constexpr Range kCombining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x064B, 0x065F}, {0x0E31, 0x0E31},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x200C, 0x200D},
    {0x2068, 0x2069}, {0x20D0, 0x20FF}, {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};

// Control characters, and what turns the direction of a line, breaks it, or can't be seen. The
// first strong isolate and its end (U+2068, U+2069) are what keeps a name's direction to itself:
// they stay.
constexpr Range kHarmful[] = {
    {0x00, 0x1F},     {0x7F, 0x9F},     {0x061C, 0x061C}, {0x200B, 0x200B}, {0x200E, 0x200F},
    {0x2028, 0x202E}, {0x2060, 0x2067}, {0x206A, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF9, 0xFFFB}};

template <std::size_t size>
bool IsIn(const Range (&ranges)[size], char32_t character) {
  return std::ranges::any_of(
      ranges, [&](const Range& r) { return character >= r.first && character <= r.last; });
}

struct Decoded {
  char32_t character;
  std::size_t bytes;  // 0: no UTF-8 here
};

Decoded Decode(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return {lead, 1};
  const std::size_t bytes = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < bytes) return {0, 0};
  char32_t character = lead & (0xFFu >> (bytes + 1));
  for (std::size_t i = 1; i < bytes; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0u) != 0x80u) return {0, 0};
    character = (character << 6) | (next & 0x3Fu);
  }
  constexpr char32_t kFirstOfLength[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
  if (character < kFirstOfLength[bytes] || isSurrogate || character > 0x10FFFF) return {0, 0};
  return {character, bytes};
}

std::size_t CharacterWidth(char32_t character) {
  if (character < 0x300) return 1;
  if (IsIn(kCombining, character)) return 0;
  return IsIn(kWide, character) ? 2 : 1;
}

// Bytes of the longest beginning that is at most `width` wide, one character at least.
std::size_t Beginning(std::string_view text, std::size_t width) {
  std::size_t bytes = 0;
  std::size_t column = 0;
  while (bytes < text.size()) {
    const Decoded next = Decode(text.substr(bytes));
    column += CharacterWidth(next.character);
    if (column > width && bytes > 0) break;
    bytes += std::max<std::size_t>(next.bytes, 1);
  }
  return bytes;
}

std::size_t WidestWord(std::string_view text) {
  std::size_t widest = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    widest = std::max(widest, DisplayWidth(text.substr(0, end)));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return widest;
}

char Alignment(const TextTable& table, std::size_t column) {
  if (table.alignment.empty()) return 'l';
  return table.alignment[std::min(column, table.alignment.size() - 1)];
}

std::size_t Total(const std::vector<std::size_t>& widths) {
  return std::accumulate(widths.begin(), widths.end(), kColumnGap * (widths.size() - 1));
}

std::vector<std::size_t> CellWidths(const TextTable& table,
                                    const std::vector<std::vector<std::string>>& rows,
                                    bool breaksHeader) {
  std::vector<std::size_t> widths;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    widths.resize(std::max(widths.size(), rows[i].size()));
    for (std::size_t j = 0; j < rows[i].size(); ++j) {
      const bool breaks = breaksHeader && table.hasHeader && i == 0 && Alignment(table, j) == 'r';
      const std::size_t own = breaks ? WidestWord(rows[i][j]) : DisplayWidth(rows[i][j]);
      widths[j] = std::max(widths[j], own);
    }
  }
  return widths;
}

// How many columns at the left name a row: one, or all of the first ones that are aligned so, where
// they leave room for others.
std::size_t LabelCount(const TextTable& table, const std::vector<std::size_t>& widths,
                       std::size_t available) {
  std::size_t count = 0;
  while (count + 1 < widths.size() && Alignment(table, count) == 'l') ++count;
  if (count == 0) return 1;
  const std::vector<std::size_t> labels(widths.begin(),
                                        widths.begin() + static_cast<std::ptrdiff_t>(count));
  return Total(labels) <= available / 2 ? count : 1;
}

// Does a row say nothing in these columns, behind its labels?
bool IsEmptyIn(const std::vector<std::string>& row, const std::vector<std::size_t>& columns,
               std::size_t labels) {
  return std::all_of(
      columns.begin() + static_cast<std::ptrdiff_t>(std::min(labels, columns.size())),
      columns.end(),
      [&row](std::size_t column) { return column >= row.size() || row[column].empty(); });
}

// Takes from the widest label until the table fits or no label can give more.
void NarrowLabels(const TextTable& table, std::vector<std::size_t>& widths, std::size_t available) {
  while (Total(widths) > available) {
    std::size_t* widest = nullptr;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      if (Alignment(table, i) == 'l' && (widest == nullptr || widths[i] > *widest))
        widest = &widths[i];
    }
    if (widest == nullptr || *widest <= kNarrowestLabel) return;
    --*widest;
  }
}

std::vector<std::string> CellLines(const std::string& cell, std::size_t width, bool ascii) {
  std::vector<std::string> lines = WrapText(cell, std::max<std::size_t>(width, 1));
  if (lines.size() <= kMostLinesOfCell) return lines;
  lines.resize(kMostLinesOfCell);
  const std::string dots = ascii ? "..." : "\u2026";
  const std::size_t room = width > DisplayWidth(dots) ? width - DisplayWidth(dots) : 1;
  std::string& last = lines.back();
  last = last.substr(0, Beginning(last, room)) + dots;
  return lines;
}

// Without the ends of words that nobody would read.
std::string WithoutLongWords(std::string_view text, bool ascii) {
  std::string shown;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::size_t bytes = Beginning(text.substr(0, end), kLongestWord);
    shown += text.substr(0, bytes);
    if (bytes < end) shown += ascii ? "..." : "\u2026";
    if (end < text.size()) shown += ' ';
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return shown;
}

const char* InkSequence(Ink ink) {
  switch (ink) {
    case Ink::Strong:
      return "\x1b[1m";
    case Ink::Warning:
      return "\x1b[33m";
    case Ink::Error:
      return "\x1b[31m";
    case Ink::Plain:
      break;
  }
  return "";
}

}  // namespace

std::string Printable(std::string_view text, bool ascii) {
  std::string shown;
  char escape[16];
  while (!text.empty()) {
    const Decoded next = Decode(text);
    if (next.bytes == 0 || (next.bytes == 1 && IsIn(kHarmful, next.character))) {
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<unsigned char>(text[0]));
      shown += escape;
    } else if (IsIn(kHarmful, next.character) || (ascii && next.bytes > 1)) {
      std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(next.character));
      shown += escape;
    } else {
      shown += text.substr(0, next.bytes);
    }
    text.remove_prefix(std::max<std::size_t>(next.bytes, 1));
  }
  return shown;
}

std::size_t DisplayWidth(std::string_view text) {
  std::size_t width = 0;
  while (!text.empty()) {
    const Decoded next = Decode(text);
    width += CharacterWidth(next.character);
    text.remove_prefix(std::max<std::size_t>(next.bytes, 1));
  }
  return width;
}

std::vector<std::string> WrapText(std::string_view text, std::size_t width) {
  std::vector<std::string> lines(1);
  std::size_t column = 0;
  bool lineIsEmpty = true;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find(' '), text.size());
    std::string_view word = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    std::size_t wordWidth = DisplayWidth(word);
    if (!lineIsEmpty && column + 1 + wordWidth > width) {
      lines.emplace_back();
      column = 0;
      lineIsEmpty = true;
    }
    if (!lineIsEmpty) {
      lines.back() += ' ';
      ++column;
    }
    while (wordWidth > width) {
      const std::size_t bytes = Beginning(word, width);
      if (bytes == word.size()) break;  // one character that is wider than the line
      lines.back() += word.substr(0, bytes);
      wordWidth -= DisplayWidth(word.substr(0, bytes));
      lines.emplace_back();
      word.remove_prefix(bytes);
    }
    lines.back() += word;
    column += wordWidth;
    lineIsEmpty = false;
  }
  return lines;
}

void TextPage::Line(std::string_view line, std::size_t indent, Ink ink) {
  text += std::string(line.empty() ? 0 : indent, ' ');
  const bool inked = style.colour && ink != Ink::Plain;
  if (inked) text += InkSequence(ink);
  text += line;
  if (inked) text += "\x1b[0m";
  text += '\n';
}

void TextPage::Heading(std::string_view title, char line) {
  std::size_t widest = 0;
  for (const std::string& part : WrapText(Printable(title, style.ascii), style.width)) {
    Line(part, 0, Ink::Strong);
    widest = std::max(widest, DisplayWidth(part));
  }
  Line(std::string(widest, line), 0, Ink::Plain);
}

void TextPage::Paragraph(std::string_view words, std::size_t indent, Ink ink) {
  const std::string shown = WithoutLongWords(Printable(words, style.ascii), style.ascii);
  for (const std::string& part : WrapText(shown, style.width - indent)) {
    Line(part, indent, ink);
  }
}

void TextPage::Drawing(std::string_view line, std::size_t indent) {
  Line(line, indent, Ink::Plain);
}

void TextPage::Table(const TextTable& table, std::size_t indent) {
  std::vector<std::vector<std::string>> rows = table.rows;
  for (auto& row : rows) {
    for (std::string& cell : row) cell = Printable(cell, style.ascii);
  }
  const std::size_t available = style.width - indent;
  std::vector<std::size_t> widths = CellWidths(table, rows, false);
  if (widths.empty()) return;
  if (Total(widths) > available) widths = CellWidths(table, rows, true);
  const std::size_t wanted = widths[0];
  NarrowLabels(table, widths, available);
  // Where there are blocks anyway, the first column need not be narrow.
  if (Total(widths) > available) widths[0] = std::max(widths[0], std::min(wanted, available / 3));
  for (std::size_t& width : widths) width = std::min(width, available / 2);

  // Blocks of columns, each with the labels.
  const std::size_t labels = LabelCount(table, widths, available);
  std::vector<std::size_t> columns;
  std::size_t total = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) {
    if (columns.size() > labels && total + kColumnGap + widths[i] > available) {
      Block(rows, widths, table, columns, labels, indent);
      Blank();
      columns.resize(labels);
      total = Total({widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(labels)});
    }
    total += (columns.empty() ? 0 : kColumnGap) + widths[i];
    columns.push_back(i);
  }
  Block(rows, widths, table, columns, labels, indent);
}

void TextPage::Block(const std::vector<std::vector<std::string>>& rows,
                     const std::vector<std::size_t>& widths, const TextTable& table,
                     const std::vector<std::size_t>& columns, std::size_t labels,
                     std::size_t indent) {
  for (const auto& row : rows) {
    if (columns.size() < widths.size() && IsEmptyIn(row, columns, labels)) continue;
    std::vector<std::vector<std::string>> cells;
    std::size_t height = 1;
    for (const std::size_t column : columns) {
      if (column >= row.size()) {
        cells.emplace_back();
      } else if (Alignment(table, column) == 'p') {
        cells.push_back({row[column]});
      } else {
        cells.push_back(CellLines(row[column], widths[column], style.ascii));
      }
      height = std::max(height, cells.back().size());
    }
    for (std::size_t i = 0; i < height; ++i) {
      std::string line;
      for (std::size_t j = 0; j < columns.size(); ++j) {
        const std::string part = i < cells[j].size() ? cells[j][i] : "";
        const std::size_t own = DisplayWidth(part);
        const std::size_t width = widths[columns[j]];
        const std::string padding(width > own ? width - own : 0, ' ');
        if (j > 0) line += std::string(kColumnGap, ' ');
        line += Alignment(table, columns[j]) == 'r' ? padding + part : part + padding;
      }
      line.erase(line.find_last_not_of(' ') + 1);
      Line(line, indent, Ink::Plain);
    }
  }
}

}  // namespace npar_host

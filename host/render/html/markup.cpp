#include "host/render/html/markup.h"

#include <algorithm>
#include <cstdint>

#include "host/render/significance.h"
#include "host/render/text_layout.h"
#include "host/render/wording.h"

namespace npar_host {
namespace {

constexpr char32_t kNoCharacter = 0xFFFFFFFF;

struct CodePoint {
  char32_t value = kNoCharacter;
  std::size_t length = 1;  // bytes; 1 where the bytes are no UTF-8
};

// The code point at the text's start; UTF-8 in its shortest form without surrogates.
CodePoint FirstCodePoint(std::string_view text) {
  const auto byte = [text](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return {lead, 1};
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return {};
  char32_t value = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0u) != 0x80u) return {};
    value = (value << 6) | (byte(i) & 0x3Fu);
  }
  constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (value < kSmallest[length] || value > 0x10FFFF || isSurrogate) return {};
  return {value, length};
}

bool TurnsText(char32_t value) {
  return (value >= 0x590 && value <= 0x8FF) || (value >= 0x200E && value <= 0x200F) ||
         (value >= 0x202A && value <= 0x202E) || (value >= 0x2066 && value <= 0x2069) ||
         (value >= 0xFB1D && value <= 0xFDFF) || (value >= 0xFE70 && value <= 0xFEFF) ||
         (value >= 0x10800 && value <= 0x10FFF) || (value >= 0x1E800 && value <= 0x1EFFF);
}

std::string WithValue(std::string_view value, std::string_view shown) {
  return "<data value=\"" + Escaped(value) + "\">" + Escaped(shown) + "</data>";
}

constexpr std::string_view kIsolateStart = "\u2068";
constexpr std::string_view kIsolateEnd = "\u2069";

// What is no isolate is made printable: Isolated() has put those there.
std::string PrintableButIsolates(std::string_view text) {
  std::string printable;
  while (true) {
    const std::size_t isolate = std::min(text.find(kIsolateStart), text.find(kIsolateEnd));
    printable += Printable(text.substr(0, isolate));
    if (isolate == std::string_view::npos) return printable;
    printable += text.substr(isolate, kIsolateStart.size());
    text.remove_prefix(isolate + kIsolateStart.size());
  }
}

constexpr std::string_view kNoFigure = "<span class=\"none\">\u2013</span>";

}  // namespace

std::string Escaped(std::string_view text) {
  std::string markup;
  const std::string printable = PrintableButIsolates(text);
  std::string_view rest = printable;
  while (!rest.empty()) {
    const CodePoint point = FirstCodePoint(rest);
    switch (point.value) {
      case '&':
        markup += "&amp;";
        break;
      case '<':
        markup += "&lt;";
        break;
      case '>':
        markup += "&gt;";
        break;
      case '"':
        markup += "&quot;";
        break;
      case '\'':
        markup += "&#39;";
        break;
      case kNoCharacter:
      case 0xFFFE:
      case 0xFFFF:
        markup += "\uFFFD";
        break;
      default:
        markup += rest.substr(0, point.length);
    }
    rest.remove_prefix(point.length);
  }
  return markup;
}

std::string Shortened(std::string_view text, std::size_t most) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size(); ++count) {
    if (count == most) return std::string(text.substr(0, end)) + "\u2026";
    end += FirstCodePoint(text.substr(end)).length;
  }
  return std::string(text);
}

std::string Isolated(std::string_view text) {
  std::string printable = Printable(text);  // its own directional controls among others
  for (std::string_view rest = printable; !rest.empty();) {
    const CodePoint point = FirstCodePoint(rest);
    if (point.value != kNoCharacter && TurnsText(point.value)) {
      return std::string(kIsolateStart) + printable + std::string(kIsolateEnd);
    }
    rest.remove_prefix(point.length);
  }
  return printable;
}

std::string FigureMarkup(std::string_view figure) {
  const std::string shown = FigureText(figure);
  return shown.empty() ? std::string(kNoFigure) : WithValue(figure, shown);
}

std::string SignificanceMarkup(std::string_view figure) {
  if (FigureText(figure).empty()) return std::string(kNoFigure);
  return WithValue(figure, SignificanceCell(figure));
}

HtmlTable::HtmlTable(std::string id, std::string_view caption)
    : id(std::move(id)), caption(Escaped(caption)) {}

void HtmlTable::SetColumns(const std::vector<std::string>& headers) {
  columnCount = headers.size();
  head = "<thead><tr>";
  for (const std::string& header : headers) {
    // A corner without words is no header.
    head += header.empty() ? "<td></td>" : "<th scope=\"col\">" + header + "</th>";
  }
  head += "</tr></thead>\n";
}

void HtmlTable::AddRow(const std::string& header, const std::vector<std::string>& cells,
                       std::string_view rowClass) {
  body += rowClass.empty() ? "<tr>" : "<tr class=\"" + std::string(rowClass) + "\">";
  body += "<th scope=\"row\">" + header + "</th>";
  for (const std::string& cell : cells) body += "<td>" + cell + "</td>";
  body += "</tr>\n";
}

void HtmlTable::AddSubheading(const std::string& header) {
  body += "<tr class=\"subheading\"><th scope=\"colgroup\" colspan=\"" +
          std::to_string(columnCount) + "\">" + header + "</th></tr>\n";
}

std::string HtmlTable::Markup(std::string_view tableClass) const {
  const std::string boxClass = tableClass.starts_with("wide") ? "scroll wide" : "scroll";
  std::string markup =
      "<div class=\"" + boxClass + "\" role=\"group\" aria-labelledby=\"" + id + "\">\n<table";
  if (!tableClass.empty()) markup += " class=\"" + std::string(tableClass) + "\"";
  return markup + "><caption id=\"" + id + "\">" + caption + "</caption>\n" + head + "<tbody>\n" +
         body + "</tbody></table></div>\n";
}

}  // namespace npar_host

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// How a text report is drawn.
struct TextStyle {
  std::size_t width = 80;  // no line is longer
  bool ascii = false;      // plots and names in ASCII alone
  bool colour = false;     // with the escape sequences of a terminal
  bool trace = false;      // with where the report comes from
  bool sentences = false;  // with each test as a sentence for a results section
};

/// The text with what could control a terminal, or is no UTF-8, shown as \xNN or \uNNNN; in ASCII
/// so every character that is none.
[[nodiscard]] std::string Printable(std::string_view text, bool ascii = false);

/// Columns of a terminal that a printable text takes: wide characters two, combining ones none.
[[nodiscard]] std::size_t DisplayWidth(std::string_view text);

/// Breaks at blanks, and inside words that are wider than `width` (1 at least).
[[nodiscard]] std::vector<std::string> WrapText(std::string_view text, std::size_t width);

/// Rows of texts. The first row may be a header; each column is aligned as a letter of `alignment`
/// says: left, right, or a plot ('p'), which is left and never broken. Columns behind the last
/// letter are as that.
struct TextTable {
  std::vector<std::vector<std::string>> rows;
  std::string alignment = "lr";
  bool hasHeader = true;
};

enum class Ink { Plain, Strong, Warning, Error };

/// A report under way. Texts that come in are made printable here and nowhere else.
class TextPage {
 public:
  explicit TextPage(const TextStyle& style) : style(style) {}

  [[nodiscard]] const TextStyle& Style() const { return style; }
  void Blank() { text += '\n'; }
  /// One line or more, underlined.
  void Heading(std::string_view title, char line);
  void Paragraph(std::string_view words, std::size_t indent, Ink ink = Ink::Plain);
  /// Header words and labels are broken where it is too wide; then its columns stand in several
  /// blocks below each other, each with the labels at the left and the rows that have an entry.
  void Table(const TextTable& table, std::size_t indent);
  /// A line of characters that are the program's own, as plots are.
  void Drawing(std::string_view line, std::size_t indent);

  [[nodiscard]] std::string Take() { return std::move(text); }

 private:
  void Line(std::string_view line, std::size_t indent, Ink ink);
  void Block(const std::vector<std::vector<std::string>>& rows,
             const std::vector<std::size_t>& widths, const TextTable& table,
             const std::vector<std::size_t>& columns, std::size_t labels, std::size_t indent);

  TextStyle style;
  std::string text;
};

}  // namespace npar_host

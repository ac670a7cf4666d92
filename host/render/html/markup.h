#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace npar_host {

/// Pieces of XHTML. "Markup" is text that stands in a page as it is; other texts are escaped first.

/// The text as markup, also inside attributes: &, <, > and quotes as entities, control characters
/// shown as \xNN or \uNNNN, and what is no character of XML as U+FFFD.
[[nodiscard]] std::string Escaped(std::string_view text);
/// The first `most` characters, with an ellipsis where there are more.
[[nodiscard]] std::string Shortened(std::string_view text, std::size_t most);
/// The text in directional isolates if it holds characters of right-to-left scripts or of
/// directional control, so that it cannot turn the text around it.
[[nodiscard]] std::string Isolated(std::string_view text);

/// A figure with 6 significant digits; the whole of it is in the element's value. A figure that the
/// document leaves out is a dash.
[[nodiscard]] std::string FigureMarkup(std::string_view figure);
/// A significance as publications print it, likewise.
[[nodiscard]] std::string SignificanceMarkup(std::string_view figure);

/// A table in a container of its own that scrolls where the page is narrow.
class HtmlTable {
 public:
  /// `id` is unique in the page; the caption is a text.
  HtmlTable(std::string id, std::string_view caption);
  /// Markup of the column headers; the first stands above the rows' headers.
  void SetColumns(const std::vector<std::string>& headers);
  /// Markup of the row's header and its cells.
  void AddRow(const std::string& header, const std::vector<std::string>& cells,
              std::string_view rowClass = {});
  /// A header over the rows that follow.
  void AddSubheading(const std::string& header);
  [[nodiscard]] bool IsEmpty() const { return body.empty(); }
  /// Classes: "figures" for a table of two columns, "wide" for one that takes the page's
  /// width.
  [[nodiscard]] std::string Markup(std::string_view tableClass = {}) const;

 private:
  std::string id;
  std::string caption;
  std::string head;
  std::string body;
  std::size_t columnCount = 2;
};

}  // namespace npar_host

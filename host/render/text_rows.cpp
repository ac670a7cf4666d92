#include "host/render/text_rows.h"

#include <limits>
#include <stdexcept>

namespace npar_host {

TextRows::TextRows(std::initializer_list<std::vector<std::string>> rows) {
  for (const std::vector<std::string>& cells : rows) AddRow(cells);
}

void TextRows::AddRow(const std::vector<std::string>& cells) {
  AddRow();
  for (const std::string& cell : cells) {
    AddCell();
    for (const char letter : cell) AddLetter(letter);
  }
}

void AddCells(TextRows& rows, std::string_view joined) {
  if (joined.empty()) return;
  if (joined.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("a row of a table is longer than 4 GB");
  }
  rows.AddCell();
  for (std::size_t i = 0; i < joined.size(); ++i) {
    if (joined[i] == ';') {
      rows.AddCell();
      continue;
    }
    if (joined[i] == '\\' && i + 1 < joined.size()) ++i;
    rows.AddLetter(joined[i]);
  }
}

}  // namespace npar_host

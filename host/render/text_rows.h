#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace npar_host {

/// Walks the items of something that hands them out by number.
template <typename Items, typename Item>
class ItemIterator {
 public:
  using value_type = Item;
  using difference_type = std::ptrdiff_t;

  ItemIterator() = default;
  ItemIterator(const Items& items, std::size_t at) : items(&items), at(at) {}

  Item operator*() const { return (*items)[at]; }
  ItemIterator& operator++() {
    ++at;
    return *this;
  }
  ItemIterator operator++(int) {
    const ItemIterator before = *this;
    ++at;
    return before;
  }
  bool operator==(const ItemIterator& other) const { return at == other.at; }

 private:
  const Items* items = nullptr;
  std::size_t at = 0;
};

/// Rows of texts. The letters of all stand in one buffer, since comparisons of some thousand
/// samples have millions of rows.
class TextRows {
 public:
  /// A row; it is good as long as nothing is added.
  class Row {
   public:
    using value_type = std::string_view;
    using const_iterator = ItemIterator<Row, std::string_view>;

    Row(const char* letters, const std::uint32_t* ends, std::size_t count)
        : letters(letters), ends(ends), count(count) {}

    [[nodiscard]] std::size_t size() const { return count; }
    [[nodiscard]] bool empty() const { return count == 0; }
    std::string_view operator[](std::size_t cell) const {
      const std::uint32_t start = cell == 0 ? 0 : ends[cell - 1];
      return {letters + start, ends[cell] - start};
    }
    [[nodiscard]] const_iterator begin() const { return {*this, 0}; }
    [[nodiscard]] const_iterator end() const { return {*this, count}; }

   private:
    const char* letters;
    const std::uint32_t* ends;  // of the cells, from the row's beginning
    std::size_t count;
  };
  using value_type = Row;
  using const_iterator = ItemIterator<TextRows, Row>;

  TextRows() = default;
  TextRows(std::initializer_list<std::vector<std::string>> rows);

  /// Begins a row of no cells; AddCell and AddLetter fill the last one.
  void AddRow() { rows.push_back({letters.size(), ends.size()}); }
  void AddRow(const std::vector<std::string>& cells);
  void AddCell() {
    ends.push_back(static_cast<std::uint32_t>(letters.size() - rows.back().letter));
  }
  void AddLetter(char letter) {
    letters += letter;
    ++ends.back();
  }

  [[nodiscard]] std::size_t size() const { return rows.size(); }
  [[nodiscard]] bool empty() const { return rows.empty(); }
  void clear() { *this = TextRows(); }
  Row operator[](std::size_t row) const {
    const Start& start = rows[row];
    const std::size_t end = row + 1 < rows.size() ? rows[row + 1].cell : ends.size();
    return {letters.data() + start.letter, ends.data() + start.cell, end - start.cell};
  }
  [[nodiscard]] const_iterator begin() const { return {*this, 0}; }
  [[nodiscard]] const_iterator end() const { return {*this, rows.size()}; }

 private:
  struct Start {
    std::size_t letter, cell;
  };
  std::string letters;
  std::vector<std::uint32_t> ends;
  std::vector<Start> rows;
};

/// Adds the items of a ";"-joined text to the last row; a backslash takes the character after it as
/// it stands. Empty items count; an empty text has none.
void AddCells(TextRows& rows, std::string_view joined);

}  // namespace npar_host

#pragma once

#include <npar/host_interface.h>

#include <algorithm>
#include <bit>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/data/code_table.h"

namespace npar_host {

/// Rows of doubles in blocks of about a mebibyte that never move: they are filled while the data is
/// read, prepared in place and handed to the component from there, so that the data is held once.
class RowStore {
 public:
  explicit RowStore(std::size_t width)
      : width(width), rowsOfBlock(std::bit_floor(1 + kBlockDoubles / (width + 1))) {}

  [[nodiscard]] std::size_t Width() const noexcept { return width; }
  [[nodiscard]] std::size_t Size() const noexcept { return size; }

  /// A further row, its values undefined.
  double* Append() {
    if ((size & (rowsOfBlock - 1)) == 0) AddBlock();
    return Row(size++);
  }

  [[nodiscard]] double* Row(std::size_t row) noexcept {
    return blocks[row >> blockShift].get() + (row & (rowsOfBlock - 1)) * width;
  }
  [[nodiscard]] const double* Row(std::size_t row) const noexcept {
    return const_cast<RowStore*>(this)->Row(row);
  }

  /// Keeps the first rows only and frees the blocks of the others.
  void Truncate(std::size_t rows) {
    size = rows;
    blocks.resize((rows + rowsOfBlock - 1) >> blockShift);
  }

  /// Copies up to `count` rows from `first` on, one after the other; how many there were.
  std::size_t Copy(std::size_t first, std::size_t count, double* target) const {
    const std::size_t end = first + std::min(count, size - std::min(first, size));
    for (std::size_t row = first; row < end;) {
      const std::size_t blockEnd = (row | (rowsOfBlock - 1)) + 1;
      const std::size_t rows = std::min(end, blockEnd) - row;
      target = std::copy_n(Row(row), rows * width, target);
      row += rows;
    }
    return end - first;
  }

 private:
  static constexpr std::size_t kBlockDoubles = std::size_t{1} << 17;

  void AddBlock();

  std::size_t width;
  std::size_t rowsOfBlock;  // a power of two
  int blockShift = std::countr_zero(rowsOfBlock);
  std::size_t size = 0;
  std::vector<std::unique_ptr<double[]>> blocks;
};

/// How the cells of a column are read.
enum class CellReading {
  Detect,  ///< as numbers, and all of them as texts if one is none
  Number,  ///< another text is an error
  Text,
  Date,  ///< ISO 8601, see iso_time.h; another text is an error
  Time,
  Timestamp,
  Skip  ///< not kept
};

/// What stands in a missing cell: of a column of numbers, and of one of texts.
inline constexpr double kMissingNumber = HB_MISSING_VALUE;
inline constexpr double kMissingCode = -1.0;

/// One kept column: its name and, if its cells are texts, those texts, the cell being the code.
struct Column {
  std::string name;
  bool isText = false;
  TextPool texts;
  std::vector<std::size_t> missing;  ///< cells that are missing, by MissingTokens' index
  std::size_t infinite = 0;          ///< cells that spell an infinity
  /// Where the cell stands that made the column one of texts, in the file's text.
  std::optional<std::size_t> firstText;
};

/// A data file as it was read: one value of a row for each column, in the order of the file.
struct Dataset {
  std::vector<Column> columns;
  RowStore rows{0};
};

}  // namespace npar_host

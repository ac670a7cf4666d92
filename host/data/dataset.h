#pragma once

#include <npar/host_interface.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/data/chunks.h"
#include "host/data/code_table.h"
#include "host/data/codes.h"

namespace npar_host {

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

/// What stands in a missing cell: of a column of numbers, and of one of codes.
inline constexpr double kMissingNumber = HB_MISSING_VALUE;
inline constexpr std::int32_t kMissingCode = -1;

/// One kept column. Its cells are numbers, or codes: those of its texts, or of the numbers that are
/// the categories of a field.
struct Column {
  std::string name;
  bool isText = false;
  TextPool texts;
  Chunks<double> numbers;
  Codes codes;                           ///< in place of numbers
  std::vector<std::size_t> missing;      ///< cells that are missing, by MissingTokens' index
  std::size_t infinite = 0;              ///< cells that spell an infinity
  std::optional<std::size_t> firstText;  ///< of texts: the cell that made it so, in the file's text

  [[nodiscard]] bool IsCoded() const noexcept { return codes.Size() > 0; }
  /// A cell, whichever of both it is.
  [[nodiscard]] double Cell(std::size_t record) const {
    return IsCoded() ? codes[record] : numbers[record];
  }
  [[nodiscard]] bool IsMissing(double cell) const noexcept {
    return cell == (IsCoded() ? kMissingCode : kMissingNumber);
  }
  /// Calls `use(cell)` for the cells in order, missing ones included.
  template <class Use>
  void ForEachCell(const Use& use) const {
    if (IsCoded()) {
      codes.ForEach([&](std::int32_t code) { use(static_cast<double>(code)); });
    } else {
      numbers.ForEach(use);
    }
  }
};

/// A data file as it was read: the columns in the order of the file.
struct Dataset {
  std::vector<Column> columns;
  std::size_t records = 0;

  [[nodiscard]] std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Column& column : columns) names.push_back(column.name);
    return names;
  }
};

}  // namespace npar_host

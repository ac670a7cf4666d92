#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/data/cell_source.h"
#include "host/data/dataset.h"

namespace npar_host {

/// What a person needs to know of a column to see whether it was taken for what it is.
struct ColumnFindings {
  std::size_t records = 0;
  std::size_t missing = 0;
  std::vector<std::pair<std::string, std::size_t>> tokens;  ///< missing cells by their text
  std::size_t infinite = 0;

  /// The different values of a column of numbers, ascending, where they are few.
  std::vector<double> fewValues;

  /// Of a column of texts that also holds numbers: its cells that are none.
  std::size_t numbers = 0;
  std::size_t strays = 0;
  std::size_t firstStray = 0;  ///< its place in the file's text
  std::string firstStrayText;  ///< as it stands there
  std::string numberNotation;  ///< of which all its cells are numbers; see RecogniseNumbers

  [[nodiscard]] std::size_t Cells() const { return records - missing; }
  /// Whole numbers, a few of them: perhaps a scale.
  [[nodiscard]] bool IsLikeScale() const;
};

[[nodiscard]] ColumnFindings FindInColumn(const Dataset& data, std::size_t column,
                                          const CellSource& source);

/// Where a message names a cell.
[[nodiscard]] std::string LineOf(const CellSource& source, std::size_t offset);

/// Groups of texts of the column that differ only by case or spaces, each told as
/// "Male" and "male ".
[[nodiscard]] std::vector<std::string> NearlyEqualTexts(const Column& column);

}  // namespace npar_host

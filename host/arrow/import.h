#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/arrow/arrow_table.h"
#include "host/arrow/column_reader.h"
#include "host/data/cell_source.h"
#include "host/data/dataset.h"
#include "host/data/model.h"

namespace npar_host {

/// What the type of a column says of the field.
struct ArrowField {
  std::string name;
  Storage storage = Storage::Infer;  ///< Date, Time or Timestamp for moments
  bool isDictionary = false;
  bool isOrdered = false;
  EntryOrder order;  ///< of an ordered dictionary
};

/// Columns of a table as cells, with what their types say.
struct ArrowCells {
  Dataset data;
  std::vector<ArrowField> fields;  ///< by column
};

/// The columns of those names, in the table's order. Doubles that all are values are not copied,
/// but for short batches: the cells hold their batch, or what lies in the caller's hands. Other
/// batches are released. A null is missing and counts as an empty cell, a not-a-number as one that
/// spells it. `onBlock` is called every few thousand records, and may throw. InputError for a
/// column that this host does not read, and for a name that two columns have.
[[nodiscard]] ArrowCells ImportColumns(ArrowTable& table, const std::vector<std::string>& names,
                                       const std::function<void()>& onBlock);

/// What messages about such cells need.
class ArrowSource final : public CellSource {
 public:
  [[nodiscard]] const MissingTokens& Tokens() const override { return tokens; }
  [[nodiscard]] const NumberNotation& Notation() const override { return notation; }
  /// The cells have no place in a text.
  [[nodiscard]] std::string LocationOf(std::size_t) const override { return {}; }

 private:
  MissingTokens tokens{{}, true};
  NumberNotation notation;
};

}  // namespace npar_host

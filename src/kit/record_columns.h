#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"

/// Some records by columns: the values of a variable side by side, as a loop over many records
/// wants them. A column is gathered when it is first asked for, so that tests of the same pass
/// share it.
class RecordColumns {
 public:
  RecordColumns() = default;
  /// One record, which must outlive this.
  explicit RecordColumns(const Record& record) noexcept
      : onlyRow(record.Values()), block{&onlyRow, 1} {}
  RecordColumns(const RecordColumns&) = delete;
  RecordColumns& operator=(const RecordColumns&) = delete;

  /// Goes on to other records, whose rows must stand as long.
  void LookAt(const RecordBlock& rows) noexcept {
    block = rows;
    ++serial;
  }
  [[nodiscard]] std::size_t Size() const noexcept { return block.count; }
  [[nodiscard]] const RecordBlock& Rows() const noexcept { return block; }
  /// The variable's values, Size() of them, until the next LookAt. Throws std::bad_alloc.
  [[nodiscard]] const double* Of(std::int32_t variable) {
    if (block.count == 1) return block.rows[0] + variable;
    const auto place = static_cast<std::size_t>(variable);
    if (place >= columns.size() || columns[place].serial != serial) Gather(place);
    return columns[place].values.data();
  }

 private:
  struct Column {
    std::vector<double> values;
    std::uint64_t serial = 0;  // of the records that it was gathered from
  };
  void Gather(std::size_t variable);

  const double* onlyRow = nullptr;
  RecordBlock block;
  std::uint64_t serial = 1;
  std::vector<Column> columns;  // by variable
};

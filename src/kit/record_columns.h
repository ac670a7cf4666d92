#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"

/// Gathers the columns of some records without going through their rows.
class ColumnSource {
 public:
  virtual ~ColumnSource() = default;
  /// The variable's values of the records in hand; false where they are to be taken from the rows.
  virtual bool GatherColumn(std::int32_t variable, double* values) = 0;
  /// The rows of the records in hand.
  virtual const double* const* FindRows() = 0;
};

class RecordColumns;

/// An iterator that hands out its records by columns, many at a time. Found by dynamic_cast, as
/// IRecordBlocks is.
class IColumnBlocks {
 public:
  virtual ~IColumnBlocks() = default;
  /// False at the end. The columns are good until the next call.
  virtual bool NextColumns(RecordColumns& columns) = 0;
  /// Doubles in a record.
  [[nodiscard]] virtual int GetRecordWidth() const = 0;
};

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
    source = nullptr;
    StartAnew();
  }
  /// Goes on to the `count` records that a source has in hand.
  void LookAt(ColumnSource& recordSource, std::size_t count) noexcept {
    block = {nullptr, count};
    source = &recordSource;
    StartAnew();
  }
  /// The number of the records in hand among those of the walk, from 1; what is left of them after
  /// some were filtered out bears the same. 0: there is no walk that counts. By it, what several
  /// tests keep together knows records that it has taken already.
  [[nodiscard]] std::uint64_t Number() const noexcept { return number; }
  void SetNumber(std::uint64_t numberInWalk) noexcept { number = numberInWalk; }
  [[nodiscard]] std::size_t Size() const noexcept { return block.count; }
  /// Throws std::bad_alloc, as what reads them does.
  [[nodiscard]] const RecordBlock& Rows() {
    if (block.rows == nullptr && source != nullptr) block.rows = source->FindRows();
    return block;
  }
  /// The variable's values, Size() of them, until the next LookAt. Throws std::bad_alloc.
  [[nodiscard]] const double* Of(std::int32_t variable) {
    if (block.count == 1) return Rows().rows[0] + variable;
    const auto place = static_cast<std::size_t>(variable);
    if (place >= columns.size() || columns[place].serial != serial) Gather(place);
    return columns[place].values.data();
  }
  /// The same without their fractions, as category codes and counts take them.
  [[nodiscard]] const std::int32_t* TruncatedOf(std::int32_t variable) {
    const double* values = Of(variable);
    const auto place = static_cast<std::size_t>(variable);
    if (place >= truncated.size() || truncated[place].serial != serial) {
      Truncate(place, values);
    }
    return truncated[place].values.data();
  }

 private:
  template <typename Value>
  struct Column {
    std::vector<Value> values;
    std::uint64_t serial = 0;  // of the records that it was made from
  };
  template <typename Value>
  Value* Renew(std::vector<Column<Value>>& list, std::size_t variable);
  void StartAnew() noexcept {
    number = 0;
    ++serial;
  }
  void Gather(std::size_t variable);
  void Truncate(std::size_t variable, const double* values);

  const double* onlyRow = nullptr;
  RecordBlock block;
  ColumnSource* source = nullptr;
  std::uint64_t number = 0;
  std::uint64_t serial = 1;
  std::vector<Column<double>> columns;  // by variable
  std::vector<Column<std::int32_t>> truncated;
};

#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"

/// Records that a walk hands out at a time: some of their columns fit the fastest cache.
inline constexpr std::size_t kRecordsAtOnce = 256;

/// Finds the columns of the records in hand without going through rows.
class ColumnSource {
 public:
  virtual ~ColumnSource() = default;
  /// The variable's values where they stand side by side, good until the next records; else null,
  /// and GatherColumn is to be asked.
  [[nodiscard]] virtual const double* FindColumn(std::int32_t variable) = 0;
  virtual void GatherColumn(std::int32_t variable, double* values) = 0;
  /// The same values without their fractions; false where GatherColumn tells them as quickly.
  virtual bool GatherTruncated(std::int32_t variable, std::int32_t* values) = 0;
  /// The rows of the records in hand, good until the next ones.
  virtual const double* const* FindRows() = 0;
};

class RecordBatch;

/// An iterator that hands out its records by columns, many at a time. Found by dynamic_cast, as
/// IRecordBlocks is.
class IColumnBlocks {
 public:
  virtual ~IColumnBlocks() = default;
  /// False at the end. The columns are good until the next call.
  virtual bool NextColumns(RecordBatch& columns) = 0;
  /// Doubles in a record.
  [[nodiscard]] virtual int GetRecordWidth() const = 0;
  /// Does any record hold this mark of a missing value at that place?
  [[nodiscard]] virtual bool HoldsMark(std::int32_t variable, double mark) const = 0;
};

/// Some records by columns: the values of a variable side by side, as a loop over many records
/// wants them. A column is found when it is first asked for, so that tests of the same pass share
/// it.
class RecordBatch {
 public:
  RecordBatch() = default;
  /// One record, which must outlive this.
  explicit RecordBatch(const Record& record) noexcept
      : onlyRow(record.Values()), block{&onlyRow, 1} {}
  RecordBatch(const RecordBatch&) = delete;
  RecordBatch& operator=(const RecordBatch&) = delete;

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
    if (place >= columns.size() || columns[place].serial != serial) Find(place);
    return columns[place].values;
  }
  /// The same without their fractions, as category codes and counts take them.
  [[nodiscard]] const std::int32_t* TruncatedOf(std::int32_t variable) {
    const auto place = static_cast<std::size_t>(variable);
    if (place >= truncated.size() || truncated[place].serial != serial) FindTruncated(place);
    return truncated[place].values;
  }

 private:
  template <typename Value>
  struct Column {
    const Value* values = nullptr;
    std::uint64_t serial = 0;  // of the records that they belong to
    std::vector<Value> own;    // where they are gathered into
  };
  template <typename Value>
  Column<Value>& Renew(std::vector<Column<Value>>& list, std::size_t variable) const;
  template <typename Value>
  Value* MakeRoom(Column<Value>& column) const;
  void Find(std::size_t variable);
  void FindTruncated(std::size_t variable);
  void StartAnew() noexcept {
    number = 0;
    ++serial;
  }

  const double* onlyRow = nullptr;
  RecordBlock block;
  ColumnSource* source = nullptr;
  std::uint64_t number = 0;
  std::uint64_t serial = 1;
  std::vector<Column<double>> columns;  // by variable
  std::vector<Column<std::int32_t>> truncated;
};

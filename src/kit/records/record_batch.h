#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"

/// Records in hand at a time: some of their columns fit the fastest cache.
inline constexpr std::size_t kRecordsAtOnce = 256;

/// Some records by columns: the values of a variable side by side, as a loop over many records
/// wants them. A column is found when it is first asked for, so that tests of the same pass share
/// it.
class RecordBatch {
 public:
  RecordBatch() = default;
  RecordBatch(const RecordBatch&) = delete;
  RecordBatch& operator=(const RecordBatch&) = delete;
  virtual ~RecordBatch() = default;

  [[nodiscard]] std::size_t Size() const noexcept { return size; }
  /// How many records each of these stands for; null where each is one. Their weights are counted
  /// together: the weight variable holds the sum.
  [[nodiscard]] virtual const std::int32_t* Counts() { return nullptr; }
  /// The variable's values, Size() of them, until other records are in hand. Throws std::bad_alloc.
  [[nodiscard]] const double* Of(std::int32_t variable) {
    const auto place = static_cast<std::size_t>(variable);
    if (place >= columns.size() || columns[place].serial != serial) Find(place);
    return columns[place].values;
  }
  /// Do these values stay where they are as long as the run?
  [[nodiscard]] virtual bool IsLasting(std::int32_t /*variable*/) const { return false; }
  /// The same without their fractions, as category codes and counts take them.
  [[nodiscard]] const std::int32_t* TruncatedOf(std::int32_t variable) {
    const auto place = static_cast<std::size_t>(variable);
    if (place >= truncated.size() || truncated[place].serial != serial) FindTruncated(place);
    return truncated[place].values;
  }
  /// The variables that were asked for since the records came in hand.
  [[nodiscard]] std::vector<std::int32_t> FoundColumns() const { return FoundIn(columns); }
  [[nodiscard]] std::vector<std::int32_t> FoundTruncated() const { return FoundIn(truncated); }

 protected:
  /// `count` other records are in hand.
  void StartAnew(std::size_t count) noexcept {
    size = count;
    ++serial;
  }

 private:
  template <typename Value>
  struct Column {
    const Value* values = nullptr;
    std::uint64_t serial = 0;  // of the records that they belong to
    std::vector<Value> own;    // where they are gathered into
  };

  /// The variable's values where they stand side by side already; else null, and GatherColumn is
  /// asked.
  virtual const double* FindColumn(std::int32_t /*variable*/) { return nullptr; }
  virtual void GatherColumn(std::int32_t variable, double* values) = 0;
  /// False where cutting off the fractions of the column is as quick.
  virtual bool GatherTruncated(std::int32_t /*variable*/, std::int32_t* /*values*/) {
    return false;
  }
  template <typename Value>
  [[nodiscard]] std::vector<std::int32_t> FoundIn(const std::vector<Column<Value>>& list) const;
  template <typename Value>
  Column<Value>& Renew(std::vector<Column<Value>>& list, std::size_t variable) const;
  template <typename Value>
  Value* MakeRoom(Column<Value>& column) const;
  void Find(std::size_t variable);
  void FindTruncated(std::size_t variable);

  std::size_t size = 0;
  std::uint64_t serial = 1;
  std::vector<Column<double>> columns;  // by variable
  std::vector<Column<std::int32_t>> truncated;
};

/// Records that stand as rows.
class RowBatch final : public RecordBatch {
 public:
  RowBatch() = default;
  /// One record, which must outlive this.
  explicit RowBatch(const Record& record) noexcept : onlyRow(record.Values()) {
    LookAt({&onlyRow, 1});
  }
  /// Goes on to other records, whose rows must stand as long.
  void LookAt(const RecordBlock& block) noexcept {
    rows = block.rows;
    StartAnew(block.count);
  }

 private:
  const double* FindColumn(std::int32_t variable) override {
    return Size() == 1 ? rows[0] + variable : nullptr;
  }
  void GatherColumn(std::int32_t variable, double* values) override {
    for (std::size_t i = 0; i < Size(); ++i) values[i] = rows[i][variable];
  }

  const double* onlyRow = nullptr;
  const double* const* rows = nullptr;
};

/// Some of the records of a batch.
class SelectedRecords final : public RecordBatch {
 public:
  /// Those whose byte in `leftOut` is 0. Good until either the records or the selection change;
  /// nothing is taken over. Throws std::bad_alloc.
  RecordBatch& Select(RecordBatch& records, const std::vector<std::uint8_t>& leftOut);
  [[nodiscard]] const std::int32_t* Counts() override;

 private:
  const double* FindColumn(std::int32_t variable) override;
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;

  RecordBatch* all = nullptr;
  std::vector<std::size_t> places;  // among all
  std::vector<std::int32_t> counts;
};

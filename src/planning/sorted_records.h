#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/large_array.h"
#include "kit/radix_sort.h"
#include "kit/record_columns.h"
#include "kit/sorted_data.h"
#include "planning/narrow_columns.h"
#include "planning/record_iterators.h"

/// The kept records ascending by a variable, equal values in record order: 12 bytes a record.
struct SortedRecords {
  std::int32_t variable = -1;
  LargeArray<NumberedKey> entries;  // OrderedBits of the value, number of the record
  std::size_t count = 0;
};

/// Walks the kept records in such an order.
///
/// By columns it does without the rows, which lie all over the memory, as long as it can: the
/// values that the records are sorted by come from the order itself, whole numbers from narrow
/// columns.
class NPARSortedIterator final : public MultiPassRecordIter,
                                 public IRecordBlocks,
                                 public IColumnBlocks,
                                 private ColumnSource {
 public:
  /// Stands at the first record; reader and narrow columns are not taken over.
  NPARSortedIterator(const InitialDataReader* reader, NarrowColumns* narrowColumns,
                     SortedRecords order);

  bool HasNext() override { return position < order.count; }
  const Record* Next() override;
  int GetState() const override { return position < order.count ? 0 : 1; }
  int Reset() override;
  bool NextBlock(RecordBlock& block) override;
  bool NextColumns(RecordColumns& columns) override;
  int GetRecordWidth() const override { return reader->Width(); }

 private:
  bool GatherColumn(std::int32_t variable, double* values) override;
  const double* const* FindRows() override;
  bool Advance();
  [[nodiscard]] bool DoKeysTellValues() const noexcept;
  void FetchRows(std::vector<const double*>& rowList, std::size_t begin) const;

  const InitialDataReader* reader;
  NarrowColumns* narrowColumns;
  SortedRecords order;
  Record current;
  std::size_t position = 0;  // of the record that comes next
  std::size_t first = 0;     // of the records in hand, up to `position`
  std::vector<const double*> rows;
  std::vector<const double*> followingRows;  // asked for while those before are worked on
  std::size_t followingFirst = 0;
};

/// The sorted views of a run. A view is sorted when it is first asked for and then kept.
class NPARSortManager final : public ISortedData {
 public:
  /// The reader is not taken over.
  explicit NPARSortManager(const InitialDataReader* reader);

  /// False for a variable outside the record. A variable is taken once.
  bool AddSortVariable(std::int32_t variable);
  /// Throws std::bad_alloc where memory runs out, and for more records than an order numbers.
  MultiPassRecordIter* GetSortedIterator(std::int32_t variable) override;
  /// Gives back the memory of a view; asked for again, it is sorted again.
  void Release(std::int32_t variable) noexcept;

 private:
  struct View {
    bool isWanted = false;
    std::unique_ptr<NPARSortedIterator> iterator;
  };
  [[nodiscard]] bool IsInRecord(std::int32_t variable) const noexcept {
    return variable >= 0 && static_cast<std::size_t>(variable) < views.size();
  }

  const InitialDataReader* reader;
  NarrowColumns narrowColumns;
  std::vector<View> views;
};

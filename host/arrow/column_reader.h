#pragma once

#include <npar/analysis.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/arrow/array_view.h"
#include "host/data/dataset.h"

namespace npar_host {

/// The entries of an ordered dictionary, ascending, each once, and whether a record has them.
struct EntryOrder {
  std::vector<std::string> entries;
  std::vector<bool> isUsed;
};

/// Reads the arrays of a column, one after the other, as cells of a dataset: numbers, codes of
/// texts, kMissingNumber or kMissingCode; a not-a-number as it is.
class ColumnReader {
 public:
  virtual ~ColumnReader() = default;
  ColumnReader(const ColumnReader&) = delete;
  ColumnReader& operator=(const ColumnReader&) = delete;

  /// Takes up `count` records of an array; the array outlives what is read of it. `isMissing`
  /// tells of records that are null as a whole. InputError for an array of another shape.
  virtual void Open(const ArrowArray& array, std::int64_t first, std::int64_t count,
                    const Validity& whole) = 0;
  /// Writes the cells of `count` records from `first` on. InputError for a value that can't be one.
  virtual void Read(std::size_t first, std::size_t count, double* cells) = 0;
  /// Where every record has a value and these are doubles, those from the first record on, as they
  /// lie in the array; null elsewhere.
  [[nodiscard]] virtual const double* Doubles() const { return nullptr; }
  /// The text that spells the value of a record; nothing for a missing one.
  [[nodiscard]] virtual std::optional<std::string> TextOf(std::size_t record);

  /// The entries of an ordered dictionary; none for other columns.
  [[nodiscard]] const EntryOrder& Order() const { return order; }
  /// How many records earlier arrays held, for messages.
  void CountEarlier(std::size_t records) { earlier = records; }
  void CallRecords(const char* word) { place = word; }

 protected:
  explicit ColumnReader(ColumnLabel label) : label(std::move(label)) {}
  [[nodiscard]] std::string PlaceOf(std::size_t record) const {
    return place + (" " + std::to_string(earlier + record + 1));
  }

  ColumnLabel label;
  EntryOrder order;

 private:
  std::size_t earlier = 0;
  const char* place = "record";
};

/// The reader of a column's type; texts go to the column's pool. InputError for a type that this
/// host does not read.
[[nodiscard]] std::unique_ptr<ColumnReader> MakeColumnReader(const ArrowSchema& schema,
                                                             Column& column);

/// Of a column or, where it has a dictionary, of its entries; InputError as above.
[[nodiscard]] ArrowType ValueTypeOf(const ArrowSchema& schema, const std::string& name);

}  // namespace npar_host

#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "kit/records/column_batch.h"
#include "kit/records/missing.h"
#include "kit/records/record_batch.h"

inline constexpr std::size_t kRecordsAtLarge = std::size_t{1} << 17;

/// Records by batches, the one road on which they travel.
class BatchSource {
 public:
  virtual ~BatchSource() = default;
  /// Back to before the first record; the state after it, as MultiPassRecordIter gives it.
  virtual int Reset() = 0;
  /// The next records, at most kRecordsAtOnce, until the next call; null at the end. Throws
  /// std::bad_alloc.
  virtual RecordBatch* NextBatch() = 0;
  /// The same for a reader that takes up to kRecordsAtLarge at once, so that threads may share in
  /// them.
  virtual RecordBatch* NextLargeBatch() { return NextBatch(); }
  /// How many records there are; 0 where that is not known.
  [[nodiscard]] virtual std::size_t Count() const { return 0; }
  /// A walk of its own over the same records, for another thread; null where there is but one.
  [[nodiscard]] virtual std::unique_ptr<BatchSource> Another() const { return nullptr; }
  /// Doubles in a record; known once a batch has come.
  [[nodiscard]] virtual int Width() const = 0;
  /// False where no record is missing there.
  [[nodiscard]] virtual bool MayHold(const MissingMark& /*mark*/) const { return true; }
};

/// Gives every record, from the first on, to `take(RecordBatch&)`. False if there was none.
template <typename Take>
bool ForEachBatch(BatchSource& records, Take take) {
  static_cast<void>(records.Reset());  // an empty source shows by having no record
  bool any = false;
  while (RecordBatch* batch = records.NextBatch()) {
    any = true;
    take(*batch);
  }
  return any;
}

/// The records of any iterator: by columns or in blocks where it hands them out so, else one by
/// one.
class IteratorBatches final : public BatchSource {
 public:
  /// The iterator is not taken over.
  explicit IteratorBatches(RecordIterator& records);

  /// False for an iterator that walks its records once: Reset leaves it where it is.
  [[nodiscard]] bool CanStartOver() const noexcept { return multiPass != nullptr; }
  int Reset() override;
  RecordBatch* NextBatch() override;
  RecordBatch* NextLargeBatch() override;
  [[nodiscard]] int Width() const override { return width; }
  /// Known when all have come once.
  [[nodiscard]] std::size_t Count() const override { return count; }

 private:
  bool ReadBlock();
  bool CopyRecords();

  RecordIterator& records;
  MultiPassRecordIter* multiPass;
  IRecordBlocks* blocks;
  std::unique_ptr<ColumnBatch> columns;  // null where the iterator has none
  int width = 0;
  std::size_t count = 0;
  std::size_t handedOut = 0;   // since the latest Reset
  RecordBlock rest;            // read and not yet handed out
  std::vector<double> copies;  // of records that come one by one
  std::vector<const double*> copiedRows;
  RowBatch batch;
};

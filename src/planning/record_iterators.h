#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/records/missing.h"
#include "kit/records/record_batch.h"
#include "planning/kept_records.h"

/// Reads every record of a source once and keeps it. All records of a source have the width of the
/// first.
class InitialDataReader {
 public:
  static constexpr std::int32_t kBlockSize = 2048;

  /// Takes nothing over. A block size that is no power of two is raised to the next one.
  /// `skipMissing`: records with a missing value in one of the listed variables are not kept.
  InitialDataReader(std::int32_t blockSize, RecordIterator* source, bool skipMissing,
                    std::vector<std::int32_t> variableList, const QDVarList* variables);

  /// 220002 no memory, 220003 no record kept, 220005 no source, 220026 a weight above 2147483647.
  QDStatus Read();

  [[nodiscard]] const KeptRecords& Records() const noexcept { return records; }
  [[nodiscard]] std::int64_t Count() const noexcept {
    return static_cast<std::int64_t>(records.Count());
  }

 private:
  QDStatus ReadRecords();
  QDStatus ReadBlocks(IRecordBlocks& blockSource);
  void Prepare(int recordWidth);
  QDStatus Keep(const RecordBlock& block);

  KeptRecords records;
  RecordIterator* source;
  bool skipMissing;
  std::vector<std::int32_t> variableList;
  const QDVarList* variables;
  std::int32_t weightIndex = -1;
  std::vector<MissingMark> marks;
  std::vector<const double*> keptRows;
};

/// Walks the kept records in their order.
class NParMemoIterator final : public MultiPassRecordIter,
                               public IRecordBlocks,
                               public IColumnBlocks,
                               private ColumnSource {
 public:
  NParMemoIterator() = default;
  /// Stands at the first record.
  explicit NParMemoIterator(const InitialDataReader* reader);

  bool HasNext() override;
  const Record* Next() override;
  int GetState() const override { return state; }
  int Reset() override;
  bool NextBlock(RecordBlock& block) override;
  bool NextColumns(RecordBatch& batch) override;
  int GetRecordWidth() const override;
  bool HoldsMark(std::int32_t variable, double mark) const override;
  /// An iterator that stands `places` further on, or at the end.
  [[nodiscard]] NParMemoIterator Jump(std::int64_t places) const;

 private:
  const double* FindColumn(std::int32_t variable) override;
  void GatherColumn(std::int32_t variable, double* values) override;
  bool GatherTruncated(std::int32_t variable, std::int32_t* values) override;
  const double* const* FindRows() override;
  /// Takes up to `count` records of a block in hand; false at the end.
  bool Advance(std::size_t count);
  void MoveTo(std::int64_t place);

  Record current;
  std::int64_t index = -1;
  const InitialDataReader* reader = nullptr;
  std::int32_t state = 0;
  std::size_t first = 0;  // of the records in hand
  std::size_t size = 0;
  RowBuffer rows;
};

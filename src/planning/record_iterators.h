#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/large_array.h"
#include "planning/missing.h"

/// Rows that an iterator hands out at a time: their addresses and first cache lines fit the fastest
/// cache.
inline constexpr std::size_t kRowsAtOnce = 256;

/// Reads every record of a source once and keeps it: blocks of records, doubles side by side, that
/// never move. All records of a source have the width of the first.
class InitialDataReader {
 public:
  static constexpr std::int32_t kBlockSize = 2048;

  /// Takes nothing over. A block size that is no power of two is raised to the next one.
  /// `skipMissing`: records with a missing value in one of the listed variables are not kept.
  InitialDataReader(std::int32_t blockSize, RecordIterator* source, bool skipMissing,
                    std::vector<std::int32_t> variableList, const QDVarList* variables);

  /// 220002 no memory, 220003 no record kept, 220005 no source, 220026 a weight above 2147483647.
  QDStatus Read();

  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// Doubles in a record.
  [[nodiscard]] int Width() const noexcept { return width; }
  [[nodiscard]] const double* Row(std::int64_t number) const noexcept { return Place(number); }

 private:
  [[nodiscard]] std::int64_t BlockSize() const noexcept { return std::int64_t{1} << blockShift; }
  [[nodiscard]] double* Place(std::int64_t number) const noexcept {
    return blocks[static_cast<std::size_t>(number >> blockShift)] +
           (number & (BlockSize() - 1)) * width;
  }
  QDStatus ReadRecords();
  QDStatus ReadBlocks(IRecordBlocks& blockSource);
  void Prepare(int recordWidth);
  QDStatus Keep(const double* row);
  /// The same for records that nothing can keep off.
  void KeepAll(const RecordBlock& block);
  void AddBlocks();

  std::vector<double*> blocks;
  /// Memory of the blocks: each piece holds as many as there were before, up to a limit.
  std::vector<LargeArray<double>> pieces;
  std::int64_t count = 0;
  std::int64_t capacity = 0;
  int blockShift;
  RecordIterator* source;
  bool skipMissing;
  std::vector<std::int32_t> variableList;
  const QDVarList* variables;
  int width = 0;
  std::int32_t weightIndex = -1;
  std::vector<MissingMark> marks;
};

/// Walks the kept records in their order.
class NParMemoIterator final : public MultiPassRecordIter, public IRecordBlocks {
 public:
  NParMemoIterator() = default;
  /// Stands at the first record.
  explicit NParMemoIterator(const InitialDataReader* reader);

  bool HasNext() override;
  const Record* Next() override;
  int GetState() const override { return state; }
  int Reset() override;
  bool NextBlock(RecordBlock& block) override;
  int GetRecordWidth() const override;
  /// An iterator that stands `places` further on, or at the end.
  [[nodiscard]] NParMemoIterator Jump(std::int64_t places) const;

 private:
  void MoveTo(std::int64_t place);

  Record current;
  std::int64_t index = -1;
  const InitialDataReader* reader = nullptr;
  std::int32_t state = 0;
  std::vector<const double*> rows;
};

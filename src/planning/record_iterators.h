#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/sorted_data.h"

/// Reads every record of a source once and keeps it: blocks of 2048 records, doubles side by side,
/// that are allocated whole and never move.
class InitialDataReader {
 public:
  static constexpr std::int32_t kBlockSize = 2048;

  /// Takes nothing over. `skipMissing`: records with a missing value in one of the listed variables
  /// are not kept.
  InitialDataReader(std::int32_t blockSize, RecordIterator* source, bool skipMissing,
                    std::vector<std::int32_t> variableList, const QDVarList* variables);

  /// 220002 no memory, 220003 no record kept, 220005 no source, 220026 a weight above 2147483647.
  QDStatus Read();

  [[nodiscard]] std::int64_t Count() const noexcept { return count; }
  /// Doubles in a record.
  [[nodiscard]] int Width() const noexcept { return width; }
  [[nodiscard]] const double* Row(std::int64_t number) const noexcept {
    return blocks[static_cast<std::size_t>(number / blockSize)].get() +
           (number % blockSize) * width;
  }

 private:
  QDStatus Keep(const double* row);

  std::vector<std::unique_ptr<double[]>> blocks;
  std::int64_t count = 0;
  std::int64_t capacity = 0;
  std::int32_t blockSize;
  RecordIterator* source;
  bool skipMissing;
  std::vector<std::int32_t> variableList;
  const QDVarList* variables;
  int width = 0;
};

/// Walks the kept records in their order.
class NParMemoIterator final : public MultiPassRecordIter, public IRecordBlocks {
 public:
  NParMemoIterator() = default;
  explicit NParMemoIterator(const InitialDataReader* reader);

  bool HasNext() override;
  const Record* Next() override;
  int GetState() const override { return state; }
  int Reset() override;
  bool NextBlock(RecordBlock& block) override;
  int GetRecordWidth() const override;
  /// An iterator that stands `count` places further on, or at the end.
  [[nodiscard]] NParMemoIterator Jump(std::int64_t count) const;
  [[nodiscard]] const InitialDataReader* Reader() const noexcept { return reader; }

 private:
  Record current;
  std::int64_t index = -1;
  const InitialDataReader* reader = nullptr;
  std::int32_t state = 0;
  std::vector<const double*> rows;
};

/// Walks the kept records ascending by a variable, equal values in record order.
class NPARSortedIterator final : public MultiPassRecordIter, public IRecordBlocks {
 public:
  /// `order`: record numbers; the memo is not taken over.
  NPARSortedIterator(const NParMemoIterator* memo, std::vector<std::uint32_t> order);

  bool HasNext() override;
  const Record* Next() override;
  int GetState() const override;
  int Reset() override;
  bool NextBlock(RecordBlock& block) override;
  int GetRecordWidth() const override;

 private:
  const NParMemoIterator* memo;
  std::vector<std::uint32_t> order;
  Record currentRecord;
  std::size_t position = 0;
  std::vector<const double*> rows;
};

/// The sorted views of a run, each built once for its variable.
class NPARSortManager final : public ISortedData {
 public:
  explicit NPARSortManager(NParMemoIterator* memo);

  /// False for a variable outside the record. A variable is taken once.
  bool AddSortVariable(std::int32_t variable);
  [[nodiscard]] bool HasSortVariables() const noexcept { return !sortVariables.empty(); }
  /// 220012 where memory ran out.
  QDStatus BuildSortedIterators();
  MultiPassRecordIter* GetSortedIterator(std::int32_t variable) override;

 private:
  NParMemoIterator* memo;
  std::int32_t recordWidth;
  std::vector<std::unique_ptr<NPARSortedIterator>> iterators;
  std::vector<std::int32_t> sortVariables;
  QDStatus status;
};

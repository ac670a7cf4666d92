#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

#include "kit/records/counted_records.h"
#include "planning/kept_records.h"
#include "planning/shortcut.h"

/// The kept records as cells of some variables with few values, ascending by the first of these.
///
/// Memory: while they are counted 4 bytes, and afterwards 8 for each variable and 4, a cell.
class RecordCells {
 public:
  /// Null where one of the variables has too many values, or they make more than `most` cells;
  /// where one holds what is no number, or the first one zeros of either sign, whose order among
  /// themselves is that of the records; and where the weight, -1 for none, is no sum of whole
  /// numbers within 32 bits. Throws std::bad_alloc.
  [[nodiscard]] static std::shared_ptr<const RecordCells> Count(
      const KeptRecords& records, const std::vector<std::int32_t>& variables, std::int32_t weight,
      std::size_t most);

  [[nodiscard]] std::size_t Size() const noexcept { return counts.size(); }
  [[nodiscard]] bool Hold(std::span<const std::int32_t> asked) const;
  [[nodiscard]] std::int32_t First() const noexcept { return variables.front(); }
  /// Of one of the variables; of the weight the sums.
  [[nodiscard]] const double* Column(std::int32_t variable) const;
  [[nodiscard]] const std::int32_t* Counts() const noexcept { return counts.data(); }

 private:
  class Axis;
  class Grid;
  RecordCells() = default;
  void Add(const Grid& grid, std::size_t first, std::size_t inner, std::uint32_t count);
  /// False where a sum of weights is none.
  [[nodiscard]] bool SumWeights(std::int32_t weight);

  std::vector<std::int32_t> variables;
  std::vector<std::vector<double>> columns;  // likewise
  std::vector<std::int32_t> counts;
};

/// The cells of a run, each kind counted when it is first asked for and then kept.
class CountedRecords final : public ICountedRecords {
 public:
  /// The records are not taken over; weight -1: each weighs 1.
  CountedRecords(const KeptRecords& records, std::int32_t weight, Shortcut counting) noexcept
      : records(records), weight(weight), counting(counting) {}

  /// Before the first walk: a variable that is likely to be asked for beside the one that cells
  /// ascend by.
  void AddCompanion(std::int32_t variable);
  [[nodiscard]] std::unique_ptr<BatchSource> WalkCells(std::span<const std::int32_t> variables,
                                                       std::int32_t ascendingBy) override;

 private:
  [[nodiscard]] std::shared_ptr<const RecordCells> Find(std::span<const std::int32_t> variables,
                                                        std::int32_t ascendingBy);
  [[nodiscard]] std::shared_ptr<const RecordCells> Count(std::vector<std::int32_t> variables,
                                                         std::size_t most);

  const KeptRecords& records;
  std::int32_t weight;
  Shortcut counting;
  std::vector<std::int32_t> companions;
  std::mutex mutex;  // workers ask side by side
  std::vector<std::shared_ptr<const RecordCells>> kept;
};

#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "kit/records/batch_source.h"

/// Where records that are alike can be had as one.
class ICountedRecords {
 public:
  /// Of the variable that cells ascend by.
  static constexpr std::int32_t kAnyOrder = -1;

  virtual ~ICountedRecords() = default;
  /// A walk over cells: a cell is one record for all those that hold the same in some variables and
  /// the same weight, RecordBatch::Counts says for how many. Nothing but these variables can be had
  /// of it. Two cells differ in some variable, not necessarily in one of those asked for; they
  /// ascend by `ascendingBy`, which is among these. Null where that makes too many cells. Throws
  /// std::bad_alloc.
  [[nodiscard]] virtual std::unique_ptr<BatchSource> WalkCells(
      std::span<const std::int32_t> variables, std::int32_t ascendingBy) = 0;
};

#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/export.h"
#include "foundation/record.h"

namespace QDCommon_700 {

/// Walks records once.
class QD_EXPORT RecordIterator {
 public:
  virtual ~RecordIterator() = default;
  /// Does a record come next?
  [[nodiscard]] virtual bool HasNext() = 0;
  /// The next record, or null past the end. Good until the iterator is used again.
  virtual const Record* Next() = 0;
  /// 0 while records stand, 1 past the end, 2 after the source reported an error.
  [[nodiscard]] virtual int GetState() const = 0;
};

/// Walks records any number of times.
class QD_EXPORT MultiPassRecordIter : public RecordIterator {
 public:
  /// Back to before the first record; the state after it.
  virtual int Reset() = 0;
};

/// Some of an iterator's records, in its order: `count` places of the record width each.
struct RecordBlock {
  const double* const* rows = nullptr;
  std::size_t count = 0;
};

/// An iterator that also hands out many records at a time, so that a pass costs one call for a few
/// hundred records instead of two for each. Found by dynamic_cast, once for a pass; Reset starts it
/// over, and the two roads are not mixed within a pass.
class QD_EXPORT IRecordBlocks {
 public:
  virtual ~IRecordBlocks() = default;
  /// False at the end. The rows are good until the next call.
  virtual bool NextBlock(RecordBlock& block) = 0;
  /// Doubles in a record.
  [[nodiscard]] virtual int GetRecordWidth() const = 0;
};

/// Values of one variable side by side; none behind the last record.
struct ColumnPart {
  const double* values = nullptr;
  std::size_t count = 0;
  bool isLasting = false;  ///< as long as the run, else until the next part of the variable
};

/// An iterator that may also hand out its variables one by one. Found by dynamic_cast; a road of
/// its own, which knows no place among the records.
class QD_EXPORT IRecordColumns {
 public:
  virtual ~IRecordColumns() = default;
  /// Is the road open? Always, or never.
  [[nodiscard]] virtual bool HasColumns() const = 0;
  /// The values of a variable from the record with that number on, counted from 0, as far as they
  /// stand side by side. False where the records broke off, for good.
  virtual bool GetPart(std::int32_t variable, std::size_t record, ColumnPart& part) = 0;
  /// Doubles in a record.
  [[nodiscard]] virtual int GetRecordWidth() const = 0;
};

}  // namespace QDCommon_700

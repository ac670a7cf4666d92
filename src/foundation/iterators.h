#pragma once

#include <cstddef>

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

}  // namespace QDCommon_700

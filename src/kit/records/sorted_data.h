#pragma once

#include <cstdint>

#include "kit/records/batch_source.h"

/// Where the records of a run can be had in the order of a variable.
class ISortedData {
 public:
  virtual ~ISortedData() = default;
  /// The records ascending by that variable; null if they were not asked for. Not handed over.
  /// They are sorted when they are first taken; throws std::bad_alloc where memory runs out.
  [[nodiscard]] virtual BatchSource* GetSortedIterator(std::int32_t variable) = 0;
};

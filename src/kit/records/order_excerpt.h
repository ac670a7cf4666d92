#pragma once

#include <cstdint>
#include <memory>

#include "kit/order/grouped_cells.h"
#include "kit/records/batch_source.h"

/// What a pass looks at in the order of a variable, by the categories of another one as groups.
struct OrderExcerpt {
  std::int32_t groupVariable = -1;
  WantedPlaces places;
};

/// Where a part of the records of a run can be had in the order of a variable.
class IOrderExcerpts {
 public:
  virtual ~IOrderExcerpts() = default;
  /// A walk over the records at the wanted places, ascending by the variable. The others come as
  /// cells, each for some records of a group between two that come themselves
  /// (RecordBatch::Counts; none in a batch where there is no cell): the weight variable holds the
  /// sum of theirs and the variable a number that lies where they lie, but is none of their values;
  /// nothing else can be had of them. Records without a value or a group stay away. Null where the
  /// whole order is to be had instead. Throws std::bad_alloc.
  [[nodiscard]] virtual std::unique_ptr<BatchSource> Walk(const OrderExcerpt& wanted) = 0;
};

#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "kit/order/grouped_cells.h"
#include "kit/order/large_array.h"
#include "kit/records/order_excerpt.h"
#include "planning/kept_records.h"
#include "planning/shortcut.h"

/// Excerpts of the kept records' order by one variable: one way through the records counts them,
/// and a further one for each excerpt picks the records at its places. Memory: 2 bytes a record.
class OrderExcerpts final : public IOrderExcerpts {
 public:
  /// The records are not taken over; weight -1: each weighs 1.
  OrderExcerpts(const KeptRecords& records, std::int32_t variable, std::int32_t weight,
                Shortcut selecting) noexcept
      : records(records), variable(variable), weight(weight), selecting(selecting) {}

  /// Null also where a value is no number, a weight no whole number from 1 on, or the wanted places
  /// take in too many records.
  [[nodiscard]] std::unique_ptr<BatchSource> Walk(const OrderExcerpt& wanted) override;

 private:
  struct Counted {
    GroupedCells cells;
    LargeArray<std::uint16_t> cellOf;  // by record
  };

  /// Null where that comes to nothing.
  [[nodiscard]] Counted* Find(std::int32_t groupVariable, std::size_t groupCount);
  [[nodiscard]] std::unique_ptr<Counted> Count(std::int32_t groupVariable,
                                               std::size_t groupCount) const;
  [[nodiscard]] std::vector<double> Sample() const;

  const KeptRecords& records;
  std::int32_t variable;
  std::int32_t weight;
  Shortcut selecting;
  std::map<std::int32_t, std::unique_ptr<Counted>> counted;  // by variable of groups
};

#pragma once

#include <cstdint>

#include "foundation/names.h"
#include "kit/order/order_statistics.h"

/// Tukey's hinges and the median: the values at the positions h = (floor((N + 1) / 2) + 1) / 2,
/// N + 1 - h and (N + 1) / 2 of N ascending units, the mean of two neighbours for a position
/// between them. J. W. Tukey, Exploratory Data Analysis, 1977.
struct Quartiles {
  double lower = QDMV::gMissingValue;
  double median = QDMV::gMissingValue;
  double upper = QDMV::gMissingValue;
};

/// The unit of that rank from 1 to TotalWeight, of sorted values.
[[nodiscard]] double UnitAt(const WeightedValues& values, std::int64_t rank);
/// Of sorted values, at least one.
[[nodiscard]] Quartiles QuartilesOf(const WeightedValues& values);

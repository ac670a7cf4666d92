#pragma once

#include <string>

#include "host/data/dataset.h"

/// What the machine needs for the work that no rank test can go without, in seconds of processor
/// time: one look at every value, one stable radix sort of pairs of a key and a 32-bit number, one
/// walk over the records in the order that it found.
struct Floor {
  double scan = 0.0;
  double sort = 0.0;
  double walk = 0.0;
};

/// On these records, sorted by their first field. Nothing of the component takes part: plain loops
/// show what it could reach.
[[nodiscard]] Floor MeasureFloor(const npar_host::RowStore& rows);

/// The seconds that it takes to map a file of numbers into memory and to read every cell below its
/// header with std::from_chars; nothing is checked or kept.
[[nodiscard]] double MeasureCsvScan(const std::string& path);

#pragma once

#include <string>
#include <vector>

/// What the machine needs for the work that no rank test can go without, in seconds of processor
/// time: one look at every value, one stable radix sort of pairs of a key and a 32-bit number, one
/// walk over the records in the order that it found.
struct Floor {
  double scan = 0.0;
  double sort = 0.0;
  double walk = 0.0;
};

/// On the records of these fields, sorted by the first. Nothing of the component takes part: plain
/// loops show what it could reach.
[[nodiscard]] Floor MeasureFloor(const std::vector<std::vector<double>>& columns);

/// The seconds that it takes to map a file of numbers into memory and to read every cell below its
/// header with std::from_chars; nothing is checked or kept.
[[nodiscard]] double MeasureCsvScan(const std::string& path);

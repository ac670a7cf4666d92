#pragma once

#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/record_columns.h"

/// A place of the record and the value that is a missing one there.
struct MissingMark {
  int position;
  double mark;
  bool operator==(const MissingMark&) const = default;
};

/// Is a value missing at one of these places?
[[nodiscard]] inline bool IsAnyMissing(const double* row, const std::vector<MissingMark>& marks) {
  for (const MissingMark& place : marks) {
    if (row[place.position] == place.mark) return true;
  }
  return false;
}

/// Is a value missing at one of these places in any of the records?
[[nodiscard]] inline bool IsAnyMissing(RecordColumns& columns,
                                       const std::vector<MissingMark>& marks) {
  for (const MissingMark& place : marks) {
    const double* values = columns.Of(place.position);
    std::int64_t found = 0;  // counted: a sum takes several values at a time, a search does not
    for (std::size_t i = 0; i < columns.Size(); ++i) found += values[i] == place.mark ? 1 : 0;
    if (found > 0) return true;
  }
  return false;
}

#pragma once

#include <vector>

#include "foundation/names.h"

/// A place of the record and the value that is a missing one there.
struct MissingMark {
  int position;
  double mark;
};

/// Is a value missing at one of these places?
[[nodiscard]] inline bool IsAnyMissing(const double* row, const std::vector<MissingMark>& marks) {
  for (const MissingMark& place : marks) {
    if (row[place.position] == place.mark) return true;
  }
  return false;
}

#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/records/record_batch.h"

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
[[nodiscard]] inline bool IsAnyMissing(RecordBatch& batch, const std::vector<MissingMark>& marks) {
  for (const MissingMark& place : marks) {
    const double* values = batch.Of(place.position);
    const auto mark = std::bit_cast<std::uint64_t>(place.mark);  // no zero, which has two patterns
    // Without a branch, so that several values go at a time: the upper bit stays set as long as
    // every value differs from the mark in some bit.
    std::uint64_t different = ~std::uint64_t{0};
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::uint64_t bits = std::bit_cast<std::uint64_t>(values[i]) ^ mark;
      different &= bits | (0 - bits);
    }
    if (different >> 63 == 0) return true;
  }
  return false;
}

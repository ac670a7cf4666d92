#include "kit/records/missing.h"

#include <bit>
#include <cstddef>

namespace {

bool IsAnyMissing(RecordBatch& batch, const std::vector<MissingMark>& marks) {
  for (const MissingMark& mark : marks) {
    const double* values = batch.Of(mark.variable);
    const auto missing =
        std::bit_cast<std::uint64_t>(mark.value);  // no zero: that has two patterns
    // Without a branch, so that several values go at a time: the upper bit stays set as long as
    // every value differs from the mark in some bit.
    std::uint64_t different = ~std::uint64_t{0};
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      const std::uint64_t bits = std::bit_cast<std::uint64_t>(values[i]) ^ missing;
      different &= bits | (0 - bits);
    }
    if (different >> 63 == 0) return true;
  }
  return false;
}

}  // namespace

std::optional<double> MissingValueOf(VariableKind kind) noexcept {
  switch (kind) {
    case VariableKind::Continuous:
    case VariableKind::Other:
      return QDMV::gMissingValue;
    case VariableKind::NumericCategory:
    case VariableKind::StringCategory:
      return QDMV::gMissingCategory;
    case VariableKind::None:
      break;
  }
  return std::nullopt;
}

RecordBatch& CompleteRecords::Select(RecordBatch& batch, const std::vector<MissingMark>& marks) {
  if (!IsAnyMissing(batch, marks)) return batch;
  isIncomplete.assign(batch.Size(), 0);
  for (const MissingMark& mark : marks) {
    const double* values = batch.Of(mark.variable);
    for (std::size_t i = 0; i < batch.Size(); ++i) {
      isIncomplete[i] |= static_cast<std::uint8_t>(values[i] == mark.value);
    }
  }
  return selected.Select(batch, isIncomplete);
}

#include "planning/narrow_columns.h"

#include <bit>
#include <utility>

namespace {

constexpr std::int64_t kFewDoubles = 1 << 16;  // half a megabyte

}  // namespace

bool NarrowColumn::Copy(const InitialDataReader& reader, std::int32_t variable) {
  const std::int64_t count = reader.Count();
  LargeArray<std::uint8_t> copy = MakeLargeArray<std::uint8_t>(static_cast<std::size_t>(count));
  for (std::int64_t number = 0; number < count; ++number) {
    const double value = reader.Row(number)[variable];
    std::uint8_t byte = kMissing;
    if (value != QDMV::gMissingCategory) {
      if (!(value >= 0.0 && value < kMissing)) return false;
      byte = static_cast<std::uint8_t>(value);
      const auto kept = static_cast<double>(byte);
      // Bit for bit: a negative zero does not fit.
      if (std::bit_cast<std::uint64_t>(kept) != std::bit_cast<std::uint64_t>(value)) return false;
    }
    copy[static_cast<std::size_t>(number)] = byte;
  }
  bytes = std::move(copy);
  return true;
}

NarrowColumns::NarrowColumns(const InitialDataReader* reader)
    : reader(reader),
      entries(reader->Count() * reader->Width() <= kFewDoubles
                  ? 0
                  : static_cast<std::size_t>(reader->Width())) {}

const NarrowColumn* NarrowColumns::Find(std::int32_t variable) {
  if (entries.empty()) return nullptr;
  Entry& entry = entries[static_cast<std::size_t>(variable)];
  if (entry.state == State::Unknown) {
    entry.state = entry.column.Copy(*reader, variable) ? State::Narrow : State::Wide;
  }
  return entry.state == State::Narrow ? &entry.column : nullptr;
}

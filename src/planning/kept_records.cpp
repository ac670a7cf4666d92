#include "planning/kept_records.h"

#include <bit>

#include "kit/record_columns.h"


namespace {

/// A byte for a value, and what of its bits the byte does not tell: 0 where it fits.
struct NarrowValue {
  std::uint8_t byte;
  std::uint64_t lost;
};

/// Without a branch, so that several values go at a time.
NarrowValue Narrow(double value) noexcept {
  // Above 2^52 the last bits of a double are whole numbers.
  constexpr double kWholes = 6755399441055744.0;  // 1.5 * 2^52
  const std::uint64_t wholes = std::bit_cast<std::uint64_t>(value + kWholes);
  const auto byte = static_cast<std::uint8_t>(wholes);
  // Bit for bit: a negative zero does not fit.
  const std::uint64_t differing = std::bit_cast<std::uint64_t>(static_cast<double>(byte)) ^
                                  std::bit_cast<std::uint64_t>(value);
  // The missing category is -1, whose last bits are all set, and which 255 must not be mixed with.
  static_assert(QDMV::gMissingCategory == -1.0);
  const bool isMissing = value == QDMV::gMissingCategory;
  const std::uint64_t lost =
      differing | static_cast<std::uint64_t>(byte == KeptColumn::kMissingByte ? 1 : 0);
  return {byte, isMissing ? 0 : lost};
}

}  // namespace

void KeptColumn::Append(std::size_t kept, const double* values, std::size_t count) {
  Survey(kept, values, count);
  if (isNarrow) {
    if (AppendNarrow(kept, values, count)) return;
    Widen(kept);
  }
  doubles.Reserve(kept + count);
  while (count > 0) {
    const std::size_t room = doubles.BlockSize() - (kept & (doubles.BlockSize() - 1));
    const std::size_t part = std::min(count, room);
    std::copy_n(values, part, doubles.Place(kept));
    kept += part;
    values += part;
    count -= part;
  }
}

void KeptColumn::Survey(std::size_t kept, const double* values, std::size_t count) noexcept {
  if (kept == 0 && count > 0) firstBits = std::bit_cast<std::uint64_t>(values[0] + 0.0);
  std::uint64_t bits = 0;
  // Counted: a sum takes several values at a time, a search does not.
  std::int64_t missingValues = 0;
  std::int64_t missingCategories = 0;
  std::int64_t notNumbers = 0;
  for (std::size_t i = 0; i < count; ++i) {
    bits |= std::bit_cast<std::uint64_t>(values[i] + 0.0) ^ firstBits;
    missingValues += values[i] == QDMV::gMissingValue ? 1 : 0;
    missingCategories += values[i] == QDMV::gMissingCategory ? 1 : 0;
    notNumbers += values[i] != values[i] ? 1 : 0;
  }
  differing |= bits;
  holdsMissingValue = holdsMissingValue || missingValues > 0;
  holdsMissingCategory = holdsMissingCategory || missingCategories > 0;
  holdsNotANumber = holdsNotANumber || notNumbers > 0;
}

bool KeptColumn::AppendNarrow(std::size_t kept, const double* values, std::size_t count) {
  std::uint64_t lost = 0;
  for (std::size_t i = 0; i < count; ++i) lost |= Narrow(values[i]).lost;
  if (lost != 0) return false;
  bytes.Reserve(kept + count);
  for (std::size_t i = 0; i < count;) {
    const std::size_t room = bytes.BlockSize() - ((kept + i) & (bytes.BlockSize() - 1));
    const std::size_t part = std::min(count - i, room);
    std::uint8_t* place = bytes.Place(kept + i);
    for (std::size_t j = 0; j < part; ++j) {
      place[j] = Narrow(values[i + j]).byte;
      static_assert(kMissingByte == 255);  // and one more is 0
      codeCount = std::max(codeCount, static_cast<std::uint8_t>(place[j] + 1));
    }
    i += part;
  }
  return true;
}

void KeptColumn::Widen(std::size_t kept) {
  doubles.Reserve(kept);
  for (std::size_t first = 0; first < kept; first += bytes.BlockSize()) {
    const std::uint8_t* from = bytes.Place(first);
    double* to = doubles.Place(first);
    const std::size_t part = std::min(kept - first, bytes.BlockSize());
    for (std::size_t i = 0; i < part; ++i) to[i] = ValueOf(from[i]);
  }
  bytes = BlockList<std::uint8_t>(std::countr_zero(bytes.BlockSize()));
  isNarrow = false;
}

const double* const* RowBuffer::Prepare(std::size_t count, int width) {
  rowWidth = static_cast<std::size_t>(width);
  if (values.size() < count * rowWidth) values.resize(count * rowWidth);
  rows.clear();
  for (std::size_t i = 0; i < count; ++i) rows.push_back(Row(i));
  return rows.data();
}

void KeptRecords::Append(const RecordBlock& block) {
  double values[kRecordsAtOnce];
  for (std::size_t first = 0; first < block.count; first += kRecordsAtOnce) {
    const std::size_t part = std::min(block.count - first, kRecordsAtOnce);
    const double* const* rows = block.rows + first;
    for (std::size_t variable = 0; variable < columns.size(); ++variable) {
      for (std::size_t i = 0; i < part; ++i) values[i] = rows[i][variable];
      columns[variable].Append(count, values, part);
    }
    count += part;
  }
}

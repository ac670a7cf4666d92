#include "planning/kept_records.h"

#include <algorithm>
#include <bit>
#include <limits>

// The loops over a column work on bits, without a branch or a comparison: so the processor takes
// several values at a time.

namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;

/// The upper bit is set where some bit is.
std::uint64_t IsAnySet(std::uint64_t bits) noexcept { return bits | (0 - bits); }

/// The whole number nearest to a value from 0 to 254, or the byte of the missing category: its last
/// eight bits, of a value that does not fit some others.
std::uint64_t NearestByte(double value) noexcept {
  // Above 2^52 the last bits of a double are whole numbers, those of -1 all set.
  constexpr double kWholes = 0x1.8p52;
  static_assert(QDMV::gMissingCategory == -1.0 && KeptColumn::kMissingByte == 255);
  return std::bit_cast<std::uint64_t>(value + kWholes) & 255;
}

/// Bits of a value that its nearest byte does not tell: none where it fits.
std::uint64_t LostBits(double value) noexcept {
  const std::uint64_t byte = NearestByte(value);
  const auto bits = std::bit_cast<std::uint64_t>(value);
  const double told = std::bit_cast<double>(byte | std::bit_cast<std::uint64_t>(0x1p52)) - 0x1p52;
  // Bit for bit: a negative zero does not fit, and 255 is not the missing category.
  const std::uint64_t lost = (std::bit_cast<std::uint64_t>(told) ^ bits) |
                             ((~IsAnySet(byte ^ KeptColumn::kMissingByte) & kSign) >> 63);
  const auto missing = std::bit_cast<std::uint64_t>(QDMV::gMissingCategory);
  return lost & (0 - (IsAnySet(bits ^ missing) >> 63));
}

}  // namespace

void KeptColumn::Append(std::size_t kept, const double* values, std::size_t count,
                        bool areLasting) {
  Survey(kept, values, count);
  if (isNarrow && AppendNarrow(kept, values, count)) return;
  if (isNarrow) Widen(kept);
  AppendWide(kept, values, count, areLasting);
}

void KeptColumn::AppendWide(std::size_t kept, const double* values, std::size_t count,
                            bool areLasting) {
  while (count > 0) {
    const std::size_t room = doubles.BlockSize() - (kept & (doubles.BlockSize() - 1));
    const std::size_t part = std::min(count, room);
    doubles.Put(kept, values, part, areLasting);
    kept += part;
    values += part;
    count -= part;
  }
}

void KeptColumn::Survey(std::size_t kept, const double* values, std::size_t count) noexcept {
  constexpr auto kMissingValue = std::bit_cast<std::uint64_t>(QDMV::gMissingValue);
  constexpr auto kMissingCategory = std::bit_cast<std::uint64_t>(QDMV::gMissingCategory);
  constexpr auto kInfinity = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity());
  if (kept == 0 && count > 0) firstBits = std::bit_cast<std::uint64_t>(values[0] + 0.0);
  const std::uint64_t first = firstBits;
  std::uint64_t different = 0;
  std::uint64_t otherThanValue = ~std::uint64_t{0};
  std::uint64_t otherThanCategory = ~std::uint64_t{0};
  std::uint64_t aboveInfinity = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(values[i]);
    different |= std::bit_cast<std::uint64_t>(values[i] + 0.0) ^ first;
    otherThanValue &= IsAnySet(bits ^ kMissingValue);
    otherThanCategory &= IsAnySet(bits ^ kMissingCategory);
    aboveInfinity |= kInfinity - (bits & ~kSign);
  }
  differing |= different;
  holdsMissingValue = holdsMissingValue || (otherThanValue & kSign) == 0;
  holdsMissingCategory = holdsMissingCategory || (otherThanCategory & kSign) == 0;
  holdsNotANumber = holdsNotANumber || (aboveInfinity & kSign) != 0;
}

bool KeptColumn::AppendNarrow(std::size_t kept, const double* values, std::size_t count) {
  std::uint64_t lost = 0;
  for (std::size_t i = 0; i < count; ++i) lost |= LostBits(values[i]);
  if (lost != 0) return false;
  bytes.Reserve(kept + count);
  while (count > 0) {
    const std::size_t room = bytes.BlockSize() - (kept & (bytes.BlockSize() - 1));
    const std::size_t part = std::min(count, room);
    std::uint8_t* place = bytes.Place(kept);
    std::uint8_t codes = codeCount;
    for (std::size_t i = 0; i < part; ++i) {
      const auto byte = static_cast<std::uint8_t>(NearestByte(values[i]));
      place[i] = byte;
      codes = std::max(codes, static_cast<std::uint8_t>(byte + 1));  // of the missing category 0
    }
    codeCount = codes;
    kept += part;
    values += part;
    count -= part;
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

void KeptRecords::Append(RecordBatch& batch) {
  for (std::int32_t variable = 0; variable < Width(); ++variable) {
    const double* values = batch.Of(variable);
    columns[static_cast<std::size_t>(variable)].Append(count, values, batch.Size(),
                                                       batch.IsLasting(variable));
  }
  count += batch.Size();
}

KeptWalk::KeptWalk(const KeptRecords& records) : records(records), current(records.Width()) {}

bool KeptWalk::Advance(std::size_t count) {
  first = next;
  next = std::min(first + count, records.Count());
  StartAnew(InHand());
  return first < next;
}

const Record* KeptWalk::Next() {
  if (!Advance(1)) return nullptr;
  for (int variable = 0; variable < Width(); ++variable) current[variable] = Of(variable)[0];
  return &current;
}

int KeptWalk::Reset() {
  next = 0;
  return GetState();
}

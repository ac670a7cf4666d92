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
  if (count == 0) return;
  if (kept == 0) firstBits = std::bit_cast<std::uint64_t>(values[0] + 0.0);
  if (shape == Shape::Bytes) {
    Survey(values, count);
    if (AppendBytes(kept, values, count)) return;
    StartCodes(kept);
  }
  if (shape == Shape::Codes) {
    if (AppendCodes(kept, values, count)) return;
    StartDoubles(kept);
  }
  Survey(values, count);
  AppendDoubles(kept, values, count, areLasting);
}

void KeptColumn::AppendDoubles(std::size_t kept, const double* values, std::size_t count,
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

void KeptColumn::Survey(const double* values, std::size_t count) noexcept {
  constexpr auto kMissingValue = std::bit_cast<std::uint64_t>(QDMV::gMissingValue);
  constexpr auto kMissingCategory = std::bit_cast<std::uint64_t>(QDMV::gMissingCategory);
  constexpr auto kInfinity = std::bit_cast<std::uint64_t>(std::numeric_limits<double>::infinity());
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

bool KeptColumn::AppendBytes(std::size_t kept, const double* values, std::size_t count) {
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

bool KeptColumn::AppendCodes(std::size_t kept, const double* values, std::size_t count) {
  const std::size_t known = table->Size();
  const std::size_t end = kept + count;
  codes.Reserve(end);
  for (std::size_t place = kept; place < end;) {
    const std::size_t room = codes.BlockSize() - (place & (codes.BlockSize() - 1));
    const std::size_t part = std::min(end - place, room);
    if (!table->Find(values + (place - kept), part, codes.Place(place))) return false;
    place += part;
  }
  Survey(table->Values().data() + known, table->Size() - known);
  // Among so many of the most values that are taken, one in thirty is there twice.
  constexpr std::size_t kEnoughToTell = 1024;
  constexpr std::size_t kFewestRepeated = 32;
  return kept >= kEnoughToTell || end < kEnoughToTell || end - table->Size() >= kFewestRepeated;
}

void KeptColumn::StartCodes(std::size_t kept) {
  table = std::make_unique<ValueCodes>();
  codes.Reserve(kept);
  std::vector<double> values(std::min(kept, bytes.BlockSize()));
  ForEachBlock(kept, [&](std::size_t first, std::size_t size) {
    // A byte has fewer values than there may be codes.
    static_cast<void>(table->Find(Values(first, size, values.data()), size, codes.Place(first)));
  });
  bytes = BlockList<std::uint8_t>(std::countr_zero(bytes.BlockSize()));
  shape = Shape::Codes;
}

void KeptColumn::StartDoubles(std::size_t kept) {
  doubles.Reserve(kept);
  ForEachBlock(kept, [this](std::size_t first, std::size_t size) {
    static_cast<void>(Values(first, size, doubles.Place(first)));
  });
  codes = BlockList<std::uint16_t>(std::countr_zero(codes.BlockSize()));
  table.reset();
  shape = Shape::Doubles;
}

const double* KeptColumn::Values(std::size_t first, std::size_t count, double* room) const {
  if (shape == Shape::Doubles) return doubles.Place(first);
  if (shape == Shape::Bytes) {
    const std::uint8_t* from = bytes.Place(first);
    for (std::size_t i = 0; i < count; ++i) room[i] = ValueOf(from[i]);
  } else {
    const std::uint16_t* from = codes.Place(first);
    const double* values = table->Values().data();
    for (std::size_t i = 0; i < count; ++i) room[i] = values[from[i]];
  }
  return room;
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

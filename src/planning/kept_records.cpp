#include "planning/kept_records.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "kit/order/threads.h"

// The loops over a column work on bits, without a branch or a comparison: so the processor takes
// several values at a time.

namespace {

constexpr std::uint64_t kSign = std::uint64_t{1} << 63;

/// The upper bit is set where some bit is.
std::uint64_t IsAnySet(std::uint64_t bits) noexcept { return bits | (0 - bits); }

/// Writes the byte of a value from 0 to 254 or of the missing category; something else for others.
/// Answers bits of the value that the byte does not tell, none where it tells it.
std::uint64_t WriteByte(double value, std::uint8_t& byte) noexcept {
  // Above 2^52 the last bits of a double are whole numbers, those of -1 all set.
  constexpr double kWholes = 0x1.8p52;
  constexpr std::uint64_t kLeast = std::bit_cast<std::uint64_t>(kWholes - 1.0);
  static_assert(QDMV::gMissingCategory == -1.0 && KeptColumn::kMissingByte == 255);
  const double moved = value + kWholes;
  const auto bits = std::bit_cast<std::uint64_t>(moved);
  byte = static_cast<std::uint8_t>(bits);
  // Bit for bit: a negative zero does not fit.
  return (std::bit_cast<std::uint64_t>(moved - kWholes) ^ std::bit_cast<std::uint64_t>(value)) |
         ((bits - kLeast) & ~std::uint64_t{255});
}

}  // namespace

void KeptColumn::Append(std::size_t kept, const double* values, std::size_t count,
                        bool areLasting) {
  if (count == 0) return;
  if (kept == 0) firstBits = std::bit_cast<std::uint64_t>(values[0] + 0.0);
  if (shape == Shape::Bytes) {
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
  std::uint64_t lost = 0;  // the sign of a negative zero, and in some not-a-numbers a bit
  std::uint64_t otherThanValue = ~std::uint64_t{0};
  std::uint64_t otherThanCategory = ~std::uint64_t{0};
  std::uint64_t aboveInfinity = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const auto bits = std::bit_cast<std::uint64_t>(values[i]);
    const auto sum = std::bit_cast<std::uint64_t>(values[i] + 0.0);
    different |= sum ^ first;
    lost |= sum ^ bits;
    otherThanValue &= IsAnySet(bits ^ kMissingValue);
    otherThanCategory &= IsAnySet(bits ^ kMissingCategory);
    aboveInfinity |= kInfinity - (bits & ~kSign);
  }
  differing |= different;
  holdsMissingValue = holdsMissingValue || (otherThanValue & kSign) == 0;
  holdsMissingCategory = holdsMissingCategory || (otherThanCategory & kSign) == 0;
  holdsNegativeZero = holdsNegativeZero || (lost & kSign) != 0;
  holdsNotANumber = holdsNotANumber || (aboveInfinity & kSign) != 0;
}

bool KeptColumn::AppendBytes(std::size_t kept, const double* values, std::size_t count) {
  bytes.Reserve(kept + count);
  std::uint64_t lost = 0;
  std::uint8_t least = leastByte;
  std::uint8_t largest = 0;
  std::uint8_t largestCode = codeCount;
  const std::size_t end = kept + count;
  for (std::size_t number = kept; number < end;) {
    const std::size_t room = bytes.BlockSize() - (number & (bytes.BlockSize() - 1));
    const std::size_t part = std::min(end - number, room);
    const double* from = values + (number - kept);
    std::uint8_t* to = bytes.Place(number);
    for (std::size_t i = 0; i < part; ++i) lost |= WriteByte(from[i], to[i]);
    for (std::size_t i = 0; i < part; ++i) {
      least = std::min(least, to[i]);
      largest = std::max(largest, to[i]);
      largestCode = std::max(largestCode, static_cast<std::uint8_t>(to[i] + 1));
    }
    number += part;
  }
  if (lost != 0) return false;
  leastByte = least;
  codeCount = largestCode;  // that of the missing category is 0
  holdsMissingCategory = holdsMissingCategory || largest == kMissingByte;
  return true;
}

std::uint64_t KeptColumn::DifferingBits() const noexcept {
  if (holdsNotANumber) return ~std::uint64_t{0};
  if (shape != Shape::Bytes) return differing;
  if (codeCount == 0) return 0;
  if (holdsMissingCategory) return ~std::uint64_t{0};  // of another sign than the others
  const std::uint64_t ends = std::bit_cast<std::uint64_t>(static_cast<double>(leastByte)) ^
                             std::bit_cast<std::uint64_t>(static_cast<double>(codeCount - 1));
  return ends == 0 ? 0 : ~std::uint64_t{0} >> std::countl_zero(ends);
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
  const auto append = [&](std::size_t place) {
    const auto variable = static_cast<std::int32_t>(place);
    columns[place].Append(count, batch.Of(variable), batch.Size(), batch.IsLasting(variable));
  };
  if (Threads::AreWorthIt(batch.Size())) {
    // Found first: the host is asked on the caller's thread alone.
    for (std::int32_t variable = 0; variable < Width(); ++variable) {
      static_cast<void>(batch.Of(variable));
    }
    Threads::ForEach(columns.size(), append);
  } else {
    for (std::size_t place = 0; place < columns.size(); ++place) append(place);
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

#include "host/requirements/record_view.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <span>

namespace npar_host {
namespace {

constexpr std::size_t kWordBits = 64;

/// The first bit from `bit` on that is set, or not where those that are set are passed over; the
/// end without one.
std::size_t FindBit(const std::vector<std::uint64_t>& words, std::size_t bit, std::size_t end,
                    bool isPassedSet) {
  const std::uint64_t flip = isPassedSet ? ~std::uint64_t{0} : 0;
  while (bit < end) {
    const std::uint64_t rest = (words[bit / kWordBits] ^ flip) >> bit % kWordBits;
    if (rest != 0) return std::min(end, bit + static_cast<std::size_t>(std::countr_zero(rest)));
    bit += kWordBits - bit % kWordBits;
  }
  return end;
}

/// Writes `deliver(cell, record)` of the cells of some records.
template <typename Value, class Deliver>
void DeliverEach(const Chunks<Value>& cells, std::size_t first, std::size_t count, double* target,
                 std::size_t stride, const Deliver& deliver) {
  for (std::size_t record = first; record < first + count;) {
    const std::span<const Value> side = cells.From(record);
    const std::size_t part = std::min(side.size(), first + count - record);
    for (std::size_t i = 0; i < part; ++i, target += stride) *target = deliver(side[i], record + i);
    record += part;
  }
}

}  // namespace

void FieldView::Deliver(std::size_t first, std::size_t count, double* target,
                        std::size_t stride) const {
  if (codes.Size() > 0) {
    const auto deliver = [&](std::int32_t code, std::size_t record) {
      const double value = valueOfCode[static_cast<std::size_t>(code - kMissingCode)];
      return isNumbered && value != missing ? static_cast<double>(record + 1) : value;
    };
    codes.Visit(
        [&](const auto& chunks) { DeliverEach(chunks, first, count, target, stride, deliver); });
    return;
  }
  if (IsPlain()) {
    DeliverEach(numbers, first, count, target, stride,
                [](double number, std::size_t) { return number; });
    return;
  }
  DeliverEach(numbers, first, count, target, stride, [&](double number, std::size_t) {
    if (number == kMissingNumber || std::ranges::find(missingCells, number) != missingCells.end()) {
      return missing;
    }
    return isRounded ? std::round(number) : number;
  });
}

void RecordView::LeaveOut(const std::vector<std::uint8_t>& isLeftOut) {
  kept.assign((records + kWordBits - 1) / kWordBits, 0);
  for (std::size_t record = 0; record < records; ++record) {
    kept[record / kWordBits] |= std::uint64_t{isLeftOut[record] == 0} << record % kWordBits;
  }
}

std::size_t RecordView::NextKept(std::size_t record) const noexcept {
  return IsWhole() ? std::min(record, records) : FindBit(kept, record, records, false);
}

std::size_t RecordView::EndOfRun(std::size_t record) const noexcept {
  return IsWhole() ? records : FindBit(kept, record, records, true);
}

std::size_t RecordView::SourceOf(std::size_t record) const noexcept {
  if (IsWhole()) return record;
  std::size_t word = 0;
  for (; word < kept.size(); ++word) {
    const auto inWord = static_cast<std::size_t>(std::popcount(kept[word]));
    if (inWord > record) break;
    record -= inWord;
  }
  std::size_t source = NextKept(word * kWordBits);
  for (; record > 0 && source < records; --record) source = NextKept(source + 1);
  return source;
}

/// Calls `deliver(first, count, done)` for runs of kept records, `done` of them before.
template <class Deliver>
std::size_t RecordView::ForEachRun(std::size_t& next, std::size_t count,
                                   const Deliver& deliver) const {
  std::size_t done = 0;
  while (done < count) {
    next = NextKept(next);
    const std::size_t run = std::min(EndOfRun(next) - next, count - done);
    if (run == 0) break;
    deliver(next, run, done);
    done += run;
    next += run;
  }
  return done;
}

std::size_t RecordView::Read(std::size_t& next, std::size_t count, double* target) const {
  return ForEachRun(next, count, [&](std::size_t first, std::size_t run, std::size_t done) {
    double* const row = target + done * Width();
    for (std::size_t i = 0; i < Width(); ++i) fields[i].Deliver(first, run, row + i, Width());
  });
}

std::size_t RecordView::ReadField(std::size_t field, std::size_t& next, std::size_t count,
                                  double* target) const {
  return ForEachRun(next, count, [&](std::size_t first, std::size_t run, std::size_t done) {
    fields[field].Deliver(first, run, target + done, 1);
  });
}

}  // namespace npar_host

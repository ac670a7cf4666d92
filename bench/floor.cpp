#include "bench/floor.h"

#include <sys/mman.h>

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "host/data/text_source.h"

namespace {

struct Pair {
  std::uint64_t key;
  std::uint32_t number;
};

struct FreePairs {
  void operator()(Pair* pairs) const { std::free(pairs); }
};
using Pairs = std::unique_ptr<Pair[], FreePairs>;

/// In huge pages, where there are any, and written to once: neither is part of a sort.
Pairs MakePairs(std::size_t count) {
  constexpr std::size_t kHugePage = std::size_t{2} << 20;
  const std::size_t bytes = (count * sizeof(Pair) + kHugePage - 1) / kHugePage * kHugePage;
  void* memory = std::aligned_alloc(kHugePage, bytes);
  if (memory == nullptr) throw std::bad_alloc();
  static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
  auto* pairs = static_cast<Pair*>(memory);
  for (std::size_t i = 0; i < count; ++i) pairs[i] = {};
  return Pairs(pairs);
}

std::uint64_t KeyOf(double value) {
  const auto bits = std::bit_cast<std::uint64_t>(value);
  return (bits >> 63) != 0 ? ~bits : bits | std::uint64_t{1} << 63;
}

double Since(std::clock_t start) {
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// By the upper 44 bits of the key in four digits of 11 bits, the lowest first.
void SortByDigits(Pairs& pairs, Pairs& spare, std::size_t count) {
  constexpr int kDigitBits = 11;
  constexpr int kDigits = 4;
  constexpr std::size_t kBuckets = std::size_t{1} << kDigitBits;
  const auto digitOf = [](const Pair& pair, std::size_t digit) {
    return pair.key >> (64 - (kDigits - digit) * kDigitBits) & (kBuckets - 1);
  };
  std::array<std::array<std::uint32_t, kBuckets>, kDigits> places{};
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t digit = 0; digit < kDigits; ++digit) {
      ++places[digit][digitOf(pairs[i], digit)];
    }
  }
  for (std::size_t digit = 0; digit < kDigits; ++digit) {
    std::uint32_t next = 0;
    for (std::uint32_t& place : places[digit]) next += std::exchange(place, next);
    for (std::size_t i = 0; i < count; ++i) {
      spare[places[digit][digitOf(pairs[i], digit)]++] = pairs[i];
    }
    std::swap(pairs, spare);
  }
}

volatile double sink;  // what is written here is computed

}  // namespace

Floor MeasureFloor(const std::vector<std::vector<double>>& columns) {
  const std::vector<double>& values = columns.front();
  Floor floor;
  std::clock_t start = std::clock();
  double sum = 0.0;
  for (const std::vector<double>& column : columns) {
    for (const double value : column) sum += value;
  }
  sink = sum;
  floor.scan = Since(start);

  Pairs pairs = MakePairs(values.size());
  Pairs spare = MakePairs(values.size());
  for (std::size_t record = 0; record < values.size(); ++record) {
    pairs[record] = {KeyOf(values[record]), static_cast<std::uint32_t>(record)};
  }
  start = std::clock();
  SortByDigits(pairs, spare, values.size());
  floor.sort = Since(start);

  constexpr std::size_t kAhead = 32;
  start = std::clock();
  sum = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (i + kAhead < values.size()) __builtin_prefetch(&values[pairs[i + kAhead].number]);
    sum += values[pairs[i].number];
  }
  sink = sum;
  floor.walk = Since(start);
  return floor;
}

double MeasureCsvScan(const std::string& path) {
  const std::clock_t start = std::clock();
  const npar_host::TextSource file(path);
  const std::string_view text = file.Text();
  const char* end = text.data() + text.size();
  double sum = 0.0;
  for (const char* position = text.data() + text.find('\n') + 1; position < end; ++position) {
    double value = 0.0;
    position = std::from_chars(position, end, value).ptr;
    sum += value;
  }
  sink = sum;
  return Since(start);
}

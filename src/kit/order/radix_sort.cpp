#include "kit/order/radix_sort.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <numeric>
#include <utility>

// A radix sort in two steps. The entries go once through memory into buckets by their upper bits:
// the counts of up to half a million cells, enough to tell values apart that share sign and
// exponent, are joined to some thousand buckets. Then each bucket, which a cache holds, is sorted
// from the lowest digit up: each pass keeps the order of the pass before inside a digit, so that
// after the highest digit the entries stand by all digits, equal ones as they came.
//
// In a bucket only so many bits below the highest one in which keys differ are sorted this way as
// tell its entries apart when they are spread evenly; what follows them is settled inside short
// runs of equal upper bits. A long run, as of values that lie close together while a missing value
// stretches the range, is sorted by the same procedure on its own bits. A digit that is the same in
// every key costs nothing, and whole numbers, whose low bits are 0, have no second step.
//
// Threads count and place parts of the entries side by side, each part at places of its own behind
// those of the parts before it, and then take buckets each: so the order is the same with any
// number of them.
//
// Reference: D. E. Knuth, The Art of Computer Programming 3, 5.2.5.

namespace {

constexpr int kMostCellBits = 19;
constexpr int kCellShare = 3;  // the entries are at least four times as many as the cells
constexpr std::size_t kFewEntries = std::size_t{1} << 14;  // one bucket: a cache holds them
constexpr std::size_t kMostBuckets = 4096;

constexpr int kDigitBits = 8;
constexpr std::size_t kDigitValues = std::size_t{1} << kDigitBits;
constexpr int kMostDigits = 4;
constexpr int kSpareBits = 2;          // so that few entries share the bits that are sorted
constexpr std::size_t kShortRun = 32;  // up to here comparing is quicker than counting

std::size_t DigitOf(std::uint64_t bits, int digit) noexcept {
  return bits >> (digit * kDigitBits) & (kDigitValues - 1);
}

int DigitsFor(std::size_t count) noexcept {
  const int bits = static_cast<int>(std::bit_width(count)) + kSpareBits;
  return std::min((bits + kDigitBits - 1) / kDigitBits, kMostDigits);
}

template <typename Entry>
void InsertionSort(Entry* entries, std::size_t count) {
  for (std::size_t i = 1; i < count; ++i) {
    const Entry entry = entries[i];
    std::size_t place = i;
    for (; place > 0 && entries[place - 1].Key() > entry.Key(); --place) {
      entries[place] = entries[place - 1];
    }
    entries[place] = entry;
  }
}

template <typename Entry>
void SortInPlace(Entry* entries, Entry* spare, std::size_t count, std::uint64_t varying);

/// Sorts each run of entries whose keys agree from bit `shift` up.
template <typename Entry>
void FinishRuns(Entry* entries, Entry* spare, std::size_t count, int shift) {
  std::size_t end = 0;
  for (std::size_t begin = 0; begin < count; begin = end) {
    const std::uint64_t key = entries[begin].Key();
    std::uint64_t differing = 0;
    for (end = begin + 1; end < count; ++end) {
      const std::uint64_t difference = entries[end].Key() ^ key;
      if (difference >> shift != 0) break;
      differing |= difference;
    }
    if (differing != 0) SortInPlace(entries + begin, spare + begin, end - begin, differing);
  }
}

/// Sorts entries whose keys differ in the given bits.
template <typename Entry>
void SortInPlace(Entry* entries, Entry* spare, std::size_t count, std::uint64_t varying) {
  if (count <= kShortRun) {
    InsertionSort(entries, count);
    return;
  }
  const int digits = DigitsFor(count);
  const int shift = std::max(0, static_cast<int>(std::bit_width(varying)) - digits * kDigitBits);
  std::array<std::array<std::uint32_t, kDigitValues>, kMostDigits> places;
  std::fill_n(places.begin(), digits, std::array<std::uint32_t, kDigitValues>{});
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint64_t bits = entries[i].Key() >> shift;
    for (int digit = 0; digit < digits; ++digit) {
      ++places[static_cast<std::size_t>(digit)][DigitOf(bits, digit)];
    }
  }
  Entry* from = entries;
  Entry* to = spare;
  for (int digit = 0; digit < digits; ++digit) {
    if (DigitOf(varying >> shift, digit) == 0) continue;
    if (count > kFewEntries) Interruption::Check();
    auto& place = places[static_cast<std::size_t>(digit)];
    std::exclusive_scan(place.begin(), place.end(), place.begin(), 0U);
    for (std::size_t i = 0; i < count; ++i) {
      const Entry entry = from[i];
      to[place[DigitOf(entry.Key() >> shift, digit)]++] = entry;
    }
    std::swap(from, to);
  }
  if (from != entries) std::copy_n(from, count, entries);
  if ((varying & ((std::uint64_t{1} << shift) - 1)) != 0) FinishRuns(entries, spare, count, shift);
}

}  // namespace

RadixBuckets::RadixBuckets(std::size_t count, int leadBits)
    : count(count),
      partCount(Threads::PartsOf(count)),
      partSize((count / partCount / kPiece + 1) * kPiece),
      leadBits(leadBits) {}

void RadixBuckets::StartCounting(std::uint64_t differing, std::uint64_t key) {
  const int cellBits =
      count <= kFewEntries
          ? leadBits
          : std::min(static_cast<int>(std::bit_width(count / partCount)) - kCellShare,
                     kMostCellBits);
  const int width = static_cast<int>(std::bit_width(differing));
  shift = std::clamp(width - cellBits, 0, 63);
  common = width == 64 ? 0 : key >> width << width;
  cellCount = std::size_t{1} << cellBits;
  cells.assign(partCount * cellCount, 0);
}

std::vector<std::uint32_t> RadixBuckets::JoinedCells() const {
  std::vector<std::uint32_t> counts(cells.begin(),
                                    cells.begin() + static_cast<std::ptrdiff_t>(cellCount));
  Threads::ForEach(partCount, [&](std::size_t piece) {
    const std::size_t begin = piece * cellCount / partCount;
    const std::size_t end = (piece + 1) * cellCount / partCount;
    for (std::size_t part = 1; part < partCount; ++part) {
      const std::uint32_t* ofPart = &cells[part * cellCount];
      for (std::size_t cell = begin; cell < end; ++cell) counts[cell] += ofPart[cell];
    }
  });
  return counts;
}

void RadixBuckets::FormBuckets(const std::vector<std::uint32_t>& counts) {
  const std::size_t bucketSize = std::max(count / kMostBuckets, kFewEntries / 4);
  bucketOfCell.resize(cellCount);
  std::size_t start = 0;
  std::size_t next = 0;
  for (std::size_t cell = 0; cell < cellCount; ++cell) {
    const bool startsLead = (std::uint64_t{cell} << shift & ~LeadMask()) == 0;
    const bool isFull = next - start >= bucketSize || next - start + counts[cell] > 2 * bucketSize;
    if (ends.empty() || (next > start && (isFull || startsLead))) {
      start = next;
      ends.push_back(static_cast<std::uint32_t>(start));
      firstCells.push_back(static_cast<std::uint32_t>(cell));
    } else if (startsLead) {
      firstCells.back() = static_cast<std::uint32_t>(cell);
    }
    next += counts[cell];
    bucketOfCell[cell] = static_cast<std::uint16_t>(ends.size() - 1);
    ends.back() = static_cast<std::uint32_t>(next);
  }
}

std::vector<KeyLead> RadixBuckets::Leads() const {
  std::vector<KeyLead> leads;
  for (std::size_t bucket = 0; bucket < ends.size(); ++bucket) {
    const std::uint64_t first = std::uint64_t{firstCells[bucket]} << shift | common;
    if (leads.empty() || leads.back().bits != (first & LeadMask())) {
      leads.push_back({0, first & LeadMask()});
    }
    leads.back().end = ends[bucket];
  }
  return leads;
}

void RadixBuckets::DividePlaces() {
  Threads::ForEach(partCount, [&](std::size_t part) {
    nextPlaces[part].assign(ends.size(), 0);
    const std::uint32_t* ofPart = &cells[part * cellCount];
    for (std::size_t cell = 0; cell < cellCount; ++cell) {
      nextPlaces[part][bucketOfCell[cell]] += ofPart[cell];
    }
  });
  std::uint32_t next = 0;
  for (std::size_t bucket = 0; bucket < ends.size(); ++bucket) {
    for (std::vector<std::uint32_t>& places : nextPlaces) {
      next += std::exchange(places[bucket], next);
    }
  }
}

void RadixBuckets::StartPlacing() {
  nextPlaces.resize(partCount);
  if (partCount > 1) {
    FormBuckets(JoinedCells());
    DividePlaces();
  } else {
    FormBuckets(cells);
    nextPlaces[0].push_back(0);
    nextPlaces[0].insert(nextPlaces[0].end(), ends.begin(), ends.end() - 1);
  }
  cells = std::vector<std::uint32_t>();  // gives its memory back
}

namespace {

/// The buckets from `first` to before `last`, which begin at the entry `begin`.
template <typename Entry>
void SortSomeBuckets(Entry* entries, const std::vector<std::uint32_t>& ends, std::size_t first,
                     std::size_t last, TellSorted tell) {
  LargeArray<Entry> spare;
  std::size_t spareSize = 0;
  std::size_t begin = first == 0 ? 0 : ends[first - 1];
  for (std::size_t bucket = first; bucket < last; ++bucket) {
    const std::size_t end = ends[bucket];
    Interruption::Check();
    std::uint64_t differing = 0;
    for (std::size_t i = begin; i < end; ++i) differing |= entries[i].Key() ^ entries[begin].Key();
    const std::size_t size = end - begin;
    if (differing != 0) {
      if (size > spareSize) {
        spare.reset();
        spareSize = std::max(size, std::min(2 * spareSize, kFewEntries));
        spare = MakeLargeArray<Entry>(spareSize);
      }
      SortInPlace(entries + begin, spare.get(), size, differing);
    }
    begin = end;
    if (tell == nullptr) continue;
    const double done = static_cast<double>(end) / static_cast<double>(ends.back());
    tell(kSortPlaced + (1.0 - kSortPlaced) * done);
  }
}

}  // namespace

template <typename Entry>
void SortBuckets(Entry* entries, const std::vector<std::uint32_t>& ends, TellSorted tell) {
  // More groups than threads: buckets are not of one size, and threads not equally quick.
  constexpr std::size_t kGroupsOfThread = 16;
  const std::size_t threads = Threads::PartsOf(ends.back());
  const std::size_t groups = threads > 1 ? std::min(ends.size(), kGroupsOfThread * threads) : 1;
  Threads::ForEach(groups, [&](std::size_t group) {
    SortSomeBuckets(entries, ends, group * ends.size() / groups, (group + 1) * ends.size() / groups,
                    tell);
  });
}

template void SortBuckets(PlainKey* entries, const std::vector<std::uint32_t>& ends,
                          TellSorted tell);
template void SortBuckets(NumberedKey* entries, const std::vector<std::uint32_t>& ends,
                          TellSorted tell);
template void SortBuckets(TaggedKey* entries, const std::vector<std::uint32_t>& ends,
                          TellSorted tell);

void SortKeys(PlainKey* keys, std::size_t count) {
  constexpr std::size_t kAhead = 16;  // two lines on in the bucket
  constexpr std::size_t kAtOnce = 8;
  if (count == 0) return;
  RadixBuckets buckets(count);
  std::atomic<std::uint64_t> differing{0};
  ForEachPart(buckets, nullptr, 0.0, 0.0, [&](std::size_t, std::size_t begin, std::size_t end) {
    std::uint64_t bits = 0;
    for (std::size_t i = begin; i < end; ++i) bits |= keys[i].key ^ keys[0].key;
    differing |= bits;
  });
  buckets.StartCounting(differing, keys[0].key);
  ForEachPart(buckets, nullptr, 0.0, 0.0,
              [&](std::size_t part, std::size_t begin, std::size_t end) {
                const RadixBuckets::Counter counter = buckets.CounterOf(part);
                for (std::size_t i = begin; i < end; ++i) counter.Take(keys[i].key);
              });
  buckets.StartPlacing();
  const std::vector<std::uint32_t>& ends = buckets.Ends();
  // A key goes to its place and takes the one that stood there along, until one belongs where the
  // first came from. P. M. McIlroy, K. Bostic, M. D. McIlroy, Computing Systems 6 (1993), 5-27.
  // Some keys are on their way at once, so that the next one's place is sought while one waits for
  // the memory; each ends where one of them came from.
  const RadixBuckets::Placer placer = buckets.PlacerOf(0);
  SparseCheck check;
  for (std::size_t bucket = 0; bucket < ends.size(); ++bucket) {
    while (placer.NextIn(bucket) < ends[bucket]) {
      const std::size_t open = placer.NextIn(bucket);
      const std::size_t openEnd = std::min<std::size_t>(open + kAtOnce, ends[bucket]);
      std::array<PlainKey, kAtOnce> moving;
      std::size_t left = openEnd - open;
      std::copy_n(keys + open, left, moving.begin());
      while (left > 0) {
        check.Step();  // a way may lead through nearly all keys
        for (std::size_t i = 0; i < left; ++i) {
          const std::size_t place = placer.PlaceOf(moving[i].key);
          __builtin_prefetch(keys + place + kAhead, 1);
          std::swap(moving[i], keys[place]);
          if (place >= open && place < openEnd) moving[i] = moving[--left];
        }
      }
    }
  }
  SortBuckets(keys, ends);
}

RecordOrder::RecordOrder(LargeArray<NumberedKey> entries, std::size_t count) noexcept
    : count(count) {
  NumberedKey* memory = entries.release();
  auto* packed = reinterpret_cast<std::uint32_t*>(memory);
  for (std::size_t i = 0; i < count; ++i) packed[i] = memory[i].number;
  void* shrunk = std::realloc(packed, (count + 1) * sizeof(std::uint32_t));
  numbers.reset(shrunk == nullptr ? packed : static_cast<std::uint32_t*>(shrunk));
}

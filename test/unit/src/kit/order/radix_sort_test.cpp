#include "kit/order/radix_sort.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <numeric>
#include <random>

#include "foundation/names.h"

namespace {

std::vector<std::uint32_t> RadixOrder(const std::vector<double>& values) {
  const RecordOrder order =
      AscendingOrder(values.size(), [&values](std::size_t place) { return values[place]; });
  return {order.begin(), order.end()};
}

/// Keys of doubles, each with the last bits of its place.
struct TaggedValues {
  const std::vector<double>& values;

  [[nodiscard]] std::size_t Count() const { return values.size(); }
  [[nodiscard]] std::uint64_t FirstKey() const { return OrderedBits(values[0]); }
  [[nodiscard]] std::uint64_t DifferingBits() const {
    std::uint64_t bits = 0;
    for (const double value : values) bits |= OrderedBits(value) ^ FirstKey();
    return bits;
  }
  template <typename Take>
  void ForEachKey(std::size_t begin, std::size_t end, Take take) const {
    for (std::size_t i = begin; i < end; ++i) take(OrderedBits(values[i]));
  }
  template <typename Take>
  void ForEachEntry(std::size_t begin, std::size_t end, Take take) const {
    for (std::size_t i = begin; i < end; ++i) {
      const std::uint64_t key = OrderedBits(values[i]);
      take(key, TaggedKey(key, static_cast<std::uint8_t>(i)));
    }
  }
};

/// Is a sort of keys without their upper bits in that order?
bool AreTaggedKeysIn(const std::vector<std::uint32_t>& order, const std::vector<double>& values) {
  const SortedKeys<TaggedKey> sorted = SortEntries<TaggedKey>(TaggedValues{values});
  auto lead = sorted.leads.begin();
  for (std::size_t place = 0; place < order.size(); ++place) {
    while (place >= lead->end) ++lead;
    const TaggedKey& entry = sorted.entries[place];
    if ((lead->bits | entry.Key()) != OrderedBits(values[order[place]])) return false;
    if (entry.Tag() != static_cast<std::uint8_t>(order[place])) return false;
  }
  return true;
}

std::vector<std::uint32_t> StableOrder(const std::vector<double>& values) {
  std::vector<std::uint32_t> order(values.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(), [&values](std::uint32_t a, std::uint32_t b) {
    if (std::isnan(values[a]) || std::isnan(values[b]))
      return std::isnan(values[b]) > std::isnan(values[a]);
    return values[a] < values[b];
  });
  return order;
}

struct Source {
  const char* catches;
  double (*draw)(std::mt19937_64& random);
};

const Source kSources[] = {
    {"sign and exponent bits",
     [](std::mt19937_64& r) { return std::normal_distribution<double>()(r); }},
    {"all 64 bits, not-a-numbers of both signs",
     [](std::mt19937_64& r) { return std::bit_cast<double>(r()); }},
    {"digits that all keys share", [](std::mt19937_64& r) { return static_cast<double>(r() % 7); }},
    {"the lowest digit alone",
     [](std::mt19937_64& r) { return std::bit_cast<double>(0x3FF0000000000000U + r() % 200); }},
    {"the top digits alone, both signs",
     [](std::mt19937_64& r) {
       return std::ldexp(r() % 2 == 0 ? 1.0 : -1.0, static_cast<int>(r() % 60));
     }},
    {"one value only", [](std::mt19937_64&) { return -3.25; }},
    {"a few far values among many near ones",
     [](std::mt19937_64& r) {
       return r() % 1000 == 0 ? 1e300 : 1.0 + static_cast<double>(r() % 100000) * 1e-12;
     }},
};

TEST(RadixSort, SortsKeysWhereTheyStand) {
  std::mt19937_64 random(20240301);
  for (const Source& source : kSources) {
    for (const std::size_t size : {0U, 1U, 2U, 255U, 5000U, 200000U}) {
      SCOPED_TRACE(std::string(source.catches) + ", " + std::to_string(size));
      std::vector<PlainKey> keys(size);
      for (PlainKey& key : keys) key = {OrderedBits(source.draw(random))};
      std::vector<PlainKey> expected = keys;
      std::sort(expected.begin(), expected.end(),
                [](PlainKey a, PlainKey b) { return a.key < b.key; });
      SortKeys(keys.data(), size);
      EXPECT_TRUE(std::equal(keys.begin(), keys.end(), expected.begin(), expected.end(),
                             [](PlainKey a, PlainKey b) { return a.key == b.key; }));
    }
  }
}

TEST(RadixSort, AgreesWithAStableSortByComparison) {
  std::mt19937_64 random(20240229);
  for (const Source& source : kSources) {
    for (const std::size_t size : {0U, 1U, 2U, 3U, 255U, 256U, 257U, 5000U, 200000U}) {
      SCOPED_TRACE(std::string(source.catches) + ", size " + std::to_string(size));
      std::vector<double> values(size);
      for (double& value : values) value = source.draw(random);
      EXPECT_EQ(RadixOrder(values), StableOrder(values));
      EXPECT_TRUE(AreTaggedKeysIn(StableOrder(values), values));
    }
  }
}

TEST(RadixSort, AnyNumberOfThreadsGivesTheSameOrder) {
  constexpr std::size_t kSize = 700001;  // several parts
  std::mt19937_64 random(20240302);
  for (const Source& source : kSources) {
    std::vector<double> values(kSize);
    for (double& value : values) value = source.draw(random);
    const std::vector<std::uint32_t> expected = RadixOrder(values);
    for (const std::size_t most : {2U, 3U, 7U}) {
      SCOPED_TRACE(std::string(source.catches) + ", threads " + std::to_string(most));
      const Threads threads(most);
      EXPECT_EQ(RadixOrder(values), expected);
      EXPECT_TRUE(AreTaggedKeysIn(expected, values));
      std::vector<PlainKey> keys(kSize);
      for (std::size_t i = 0; i < kSize; ++i) keys[i].key = OrderedBits(values[i]);
      SortKeys(keys.data(), kSize);
      std::size_t place = 0;
      EXPECT_TRUE(std::all_of(keys.begin(), keys.end(), [&](PlainKey key) {
        return key.key == OrderedBits(values[expected[place++]]);
      }));
    }
  }
}

TEST(RadixSort, ZerosOfBothSignsKeepTheirOrderAndNotANumberStandsLast) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
  constexpr double kTiny = std::numeric_limits<double>::denorm_min();
  const std::vector<double> values = {
      0.0, kNan, -0.0, kInfinity, QDMV::gMissingValue, 0.0, -kNan, kTiny, -kInfinity, -kTiny, -1.0};
  EXPECT_EQ(RadixOrder(values), (std::vector<std::uint32_t>{8, 4, 10, 9, 0, 2, 5, 7, 3, 1, 6}));
}

}  // namespace

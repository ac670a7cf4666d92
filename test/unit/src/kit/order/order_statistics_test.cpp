#include "kit/order/order_statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace {

using Data = std::vector<std::pair<double, std::int64_t>>;  // value, weight

WeightedValues Sorted(const Data& data) {
  WeightedValues sorted;
  for (const auto& [value, weight] : data) sorted.Add(value, weight);
  sorted.Sort();
  return sorted;
}

/// The list itself, each value with its weight.
Data ListAverages(const Data& data) {
  Data list;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const std::int64_t w = data[i].second;
    list.emplace_back((data[i].first + data[i].first) * 0.5, w * (w + 1) / 2);
    for (std::size_t j = i + 1; j < data.size(); ++j) {
      list.emplace_back((data[j].first + data[i].first) * 0.5, w * data[j].second);
    }
  }
  return list;
}

Data ListDifferences(const Data& first, const Data& second) {
  Data list;
  for (const auto& [a, v] : first) {
    for (const auto& [b, w] : second) list.emplace_back(b - a, v * w);
  }
  return list;
}

/// Every rank of the list, and one beyond either end, against the selection.
void ExpectSelects(const OrderStatistics& selected, Data list) {
  std::sort(list.begin(), list.end());
  std::int64_t total = 0;
  for (const auto& [value, weight] : list) total += weight;
  ASSERT_TRUE(selected.Total() == total);
  const auto at = [&list](std::int64_t rank) {
    for (const auto& [value, weight] : list) {
      if (rank <= weight) return value;
      rank -= weight;
    }
    return list.back().first;
  };
  // At most some hundred ranks of each list, the ends and the middle among them.
  const std::int64_t step = std::max<std::int64_t>(1, total / 97);
  for (std::int64_t rank = 0; rank <= total + 1; rank += step) {
    ASSERT_EQ(selected.Select(rank), at(rank)) << "rank " << rank << " of " << total;
  }
  ASSERT_EQ(selected.Select(total), list.back().first);
  const double lower = at((total + 1) / 2);
  const double upper = at(total / 2 + 1);
  ASSERT_EQ(selected.Median(), lower == upper ? lower : (lower + upper) * 0.5);
}

TEST(OrderStatistics, AgreeWithTheListBitForBit) {
  std::mt19937_64 random(20240517);
  const auto below = [&random](std::uint64_t limit) { return random() % limit; };
  for (int round = 0; round < 400; ++round) {
    const auto draw = [&] {
      Data data(1 + below(40));
      // Few values, many ties; wide ranges; values whose sums are rounded.
      for (auto& [value, weight] : data) {
        const double whole = static_cast<double>(below(12)) - 5.0;
        value = round % 3 == 0   ? whole
                : round % 3 == 1 ? whole * 0.1 + 1e-16 * static_cast<double>(below(5))
                                 : std::ldexp(whole, static_cast<int>(below(2000)) - 1000);
        weight = round % 2 == 0 ? 1 : 1 + static_cast<std::int64_t>(below(9));
      }
      return data;
    };
    SCOPED_TRACE(round);
    const Data first = draw();
    const Data second = draw();
    const WeightedValues sortedFirst = Sorted(first);
    const WeightedValues sortedSecond = Sorted(second);
    // Listed in sorted order, since the average of two values is formed smaller first.
    ASSERT_NO_FATAL_FAILURE(ExpectSelects(WalshAverages(sortedFirst), ListAverages(first)));
    ASSERT_NO_FATAL_FAILURE(
        ExpectSelects(GroupDifferences(sortedFirst, sortedSecond), ListDifferences(first, second)));
  }
}

TEST(OrderStatistics, InfinitiesAndZerosOfEitherSignAreValuesLikeOthers) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const WeightedValues data = Sorted({{-kInfinity, 1}, {0.0, 2}, {-0.0, 1}, {3.0, 1}});
  const WalshAverages averages(data);  // 5 of minus infinity, 6 zeros, 3 of 1.5, one of 3
  EXPECT_EQ(averages.Select(1), -kInfinity);
  EXPECT_EQ(averages.Select(5), -kInfinity);
  EXPECT_EQ(averages.Select(6), 0.0);
  EXPECT_FALSE(std::signbit(averages.Select(11)));
  EXPECT_EQ(averages.Select(12), 1.5);
  EXPECT_EQ(averages.Select(15), 3.0);
}

TEST(OrderStatistics, ProductsOfWeightsPassSixtyFourBits) {
  constexpr std::int64_t kLargest = 2147483647;
  Data data;
  for (int i = 0; i < 8; ++i) data.emplace_back(i, kLargest);
  const WeightedValues sorted = Sorted(data);
  const WalshAverages averages(sorted);
  const WideInteger n = static_cast<WideInteger>(8) * kLargest;
  EXPECT_TRUE(averages.Total() == n * (n + 1) / 2);
  EXPECT_EQ(averages.Median(), 3.5);
  EXPECT_EQ(averages.Select(averages.Total()), 7.0);
  EXPECT_EQ(GroupDifferences(sorted, sorted).Median(), 0.0);
}

TEST(OrderStatistics, NumbersBecomeRanksWithoutWrapping) {
  EXPECT_TRUE(ToWideInteger(-3.0) == 0);
  EXPECT_TRUE(ToWideInteger(std::numeric_limits<double>::quiet_NaN()) == 0);
  EXPECT_TRUE(ToWideInteger(1e300) == static_cast<WideInteger>(1) << 126);
  EXPECT_TRUE(ToWideInteger(0x1p70) == static_cast<WideInteger>(1) << 70);
}

/// A million values, smooth, or on a grid where each average stands some ten thousand times.
class ManyValues : public testing::TestWithParam<double> {};

TEST_P(ManyValues, AreServedInSeconds) {
  std::mt19937_64 random(7);
  std::normal_distribution<double> normal(0.3, 1.0);
  WeightedValues data;
  for (int i = 0; i < 1000000; ++i) {
    data.Add(std::round(normal(random) * GetParam()) / GetParam(), 1);
  }
  const auto start = std::chrono::steady_clock::now();
  data.Sort();
  const double median = WalshAverages(data).Median();
  const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
  EXPECT_NEAR(median, 0.3, 0.01);  // ten standard errors
  EXPECT_LT(taken.count(), 20.0);  // half a second; listing 5 * 10^11 averages takes hours
}

INSTANTIATE_TEST_SUITE_P(OrderStatistics, ManyValues, testing::Values(0x1p50, 1e6, 10.0));

}  // namespace

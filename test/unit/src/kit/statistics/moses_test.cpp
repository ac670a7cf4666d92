#include "kit/statistics/moses.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <vector>

namespace {

/// Counts the arrangements of control and experimental units by the span of the trimmed controls.
std::vector<double> CountedTails(int control, int experimental, int trimmed) {
  const int n = control + experimental;
  std::vector<double> tails(static_cast<std::size_t>(n) + 1, 0.0);
  double all = 0.0;
  for (unsigned places = 0; places < 1U << n; ++places) {
    if (std::popcount(places) != control) continue;
    std::vector<int> ranks;
    for (int place = 0; place < n; ++place) {
      if ((places >> place & 1U) != 0) ranks.push_back(place);
    }
    const int first = ranks[static_cast<std::size_t>(trimmed)];
    const int last = ranks[static_cast<std::size_t>(control - 1 - trimmed)];
    ++tails[static_cast<std::size_t>(last - first + 1)];
    ++all;
  }
  double upTo = 0.0;
  for (double& tail : tails) {
    upTo += tail;
    tail = upTo / all;
  }
  return tails;
}

TEST(MosesStatisticTest, TheTailIsTheShareOfAllArrangements) {
  for (const auto& [control, experimental, trimmed] :
       std::vector<std::array<int, 3>>{{5, 6, 0}, {5, 6, 1}, {5, 6, 2}, {8, 4, 1}, {1, 5, 0}}) {
    const std::vector<double> tails = CountedTails(control, experimental, trimmed);
    for (int span = control - 2 * trimmed; span <= control + experimental; ++span) {
      EXPECT_NEAR(MosesSpanTail(control, experimental, trimmed, span),
                  tails[static_cast<std::size_t>(span)], 1e-15)
          << control << ' ' << experimental << ' ' << trimmed << ' ' << span;
    }
  }
}

struct TailCase {
  const char* catches;
  std::int64_t control, experimental, trimmed, span;
  double p;
};

// p(h) in Python's fractions.
const TailCase kTails[] = {
    {"ties may leave less than the least span", 9, 10, 0, 3, 1.0 / 92378.0 * 11.0},
    {"one control unit left", 3, 4, 1, 1, 1.0},
    {"no ranks between any more", 3, 4, 1, 4, 1.0},
    {"a large sample", 1000, 1500, 50, 2250, 0.5607728183416864},
    {"its tail", 1000, 1500, 50, 2100, 9.551317552247661e-12},
    {"its far tail", 1000, 1500, 50, 1800, 1.365319626924837e-65},
};

TEST(MosesStatisticTest, TailsAgreeWithFractions) {
  for (const TailCase& row : kTails) {
    const double p = MosesSpanTail(row.control, row.experimental, row.trimmed, row.span);
    EXPECT_NEAR(p / row.p, 1.0, 1e-12) << row.catches;
  }
}

// n = 3 and h = 0 with m = 10^12: p is that of the range of 3 uniform values, 3 s^2 - 2 s^3.
TEST(MosesStatisticTest, UnitsByTheBillionAreNotCounted) {
  EXPECT_NEAR(MosesSpanTail(3, 1000000000000, 0, 500000000000), 0.5, 1e-11);
  EXPECT_NEAR(MosesSpanTail(3, 1000000000000, 0, 100000000000), 0.028, 1e-11);
}

TEST(MosesStatisticTest, GroupsOfAMillionStayBetweenZeroAndOne) {
  EXPECT_EQ(MosesSpanTail(1000000, 1000000, 50000, 900000), 0.0);
  EXPECT_NEAR(MosesSpanTail(1000000, 1000000, 50000, 1800000), 0.5, 0.01);
  EXPECT_EQ(MosesSpanTail(1000000, 1000000, 50000, 1900000), 1.0);
}

}  // namespace

#include "kit/statistics/two_row_table.h"

#include <algorithm>
#include <cmath>

#include "foundation/names.h"
#include "kit/statistics/combinations.h"
#include "kit/statistics/exact_tails.h"

void TwoRowTable::Add(std::int64_t lowerCount, std::int64_t size) {
  lower.push_back(static_cast<double>(lowerCount));
  sizes.push_back(static_cast<double>(size));
  lowerSum += lower.back();
  total += sizes.back();
}

ExpectedCounts TwoRowTable::Expected() const {
  ExpectedCounts expected;
  for (std::size_t j = 0; j < sizes.size(); ++j) {
    const Cells cells = ExpectedOf(j);
    expected.Add(cells.lower);
    expected.Add(cells.upper);
  }
  return expected;
}

ChiSquareFigures TwoRowTable::ChiSquare() const {
  if (IsOneSided()) return {};
  double x = 0.0;
  for (std::size_t j = 0; j < sizes.size(); ++j) {
    const Cells cells = ExpectedOf(j);
    const double lowerDeviation = lower[j] - cells.lower;
    const double upperDeviation = sizes[j] - lower[j] - cells.upper;
    x += lowerDeviation * lowerDeviation / cells.lower +
         upperDeviation * upperDeviation / cells.upper;
  }
  return ChiSquareOf(x, sizes.size());
}

ChiSquareFigures TwoRowTable::YatesChiSquare() const {
  const double upperSum = total - lowerSum;
  const double determinant = lower[0] * (sizes[1] - lower[1]) - lower[1] * (sizes[0] - lower[0]);
  const double corrected = std::max(0.0, std::fabs(determinant) - total / 2.0);
  return ChiSquareOf(total * corrected * corrected / (lowerSum * upperSum * sizes[0] * sizes[1]),
                     2);
}

double TwoRowTable::FisherSig() const {
  const std::int64_t first = TruncateToInt64(sizes[0]);
  const std::int64_t second = TruncateToInt64(sizes[1]);
  const std::int64_t below = TruncateToInt64(lowerSum);
  const auto waysOf = [&](std::int64_t ofFirst) {
    return Combinations(first, ofFirst) * Combinations(second, below - ofFirst);
  };
  const double observed = waysOf(TruncateToInt64(lower[0]));
  double extreme = 0.0;
  for (std::int64_t i = std::max<std::int64_t>(0, below - second); i <= std::min(below, first);
       ++i) {
    const double ways = waysOf(i);
    if (ways <= observed * (1.0 + kProbabilitySlack)) extreme += ways;
  }
  return std::min(1.0, extreme / Combinations(first + second, below));
}

#include "kit/statistics/mann_whitney.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>

std::vector<double> MannWhitneyFrequencies(std::int64_t a, std::int64_t b) {
  if (a < 1 || b < 1) return {};
  const auto smaller = static_cast<std::size_t>(std::min(a, b));
  const auto larger = static_cast<std::size_t>(std::max(a, b));
  std::vector<double> frequencies(smaller * larger + 1, smaller == 1 ? 1.0 : 0.0);
  if (smaller == 1) return frequencies;
  std::fill_n(frequencies.begin(), larger + 1, 1.0);
  std::vector<double> carried(frequencies.size(), 0.0);
  // Step j goes from groups of j and `larger` to j + 1: both halves of the symmetric distribution
  // are written at once, the lower one ascending, the upper one descending from its new end.
  std::size_t top = larger;
  for (std::size_t j = 1; j < smaller; ++j) {
    carried[j] = 0.0;
    top += larger;
    const std::size_t count = 1 + top / 2;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t mirrored = top - i;
      const double sum = frequencies[i] + carried[i];
      frequencies[i] = sum;
      carried[j + 1 + i] = sum - frequencies[mirrored];
      frequencies[mirrored] = sum;
    }
  }
  return frequencies;
}

double ExactMannWhitneyP(std::int64_t a, std::int64_t b, double u) {
  const std::vector<double> frequencies = MannWhitneyFrequencies(a, b);
  if (frequencies.empty() || u != u) return std::numeric_limits<double>::quiet_NaN();
  const double largest = static_cast<double>(frequencies.size() - 1);
  // The distribution is symmetric: the upper tail from ceil(u) is the lower one to its mirror.
  const double end = std::min(std::floor(u), largest - std::ceil(u));
  if (end < 0.0) return 0.0;
  const auto tailEnd = frequencies.begin() + static_cast<std::ptrdiff_t>(end) + 1;
  const double tail = std::accumulate(frequencies.begin(), tailEnd, 0.0);
  const double total = std::accumulate(frequencies.begin(), frequencies.end(), 0.0);
  return std::min(tail / total * 2.0, 1.0);
}

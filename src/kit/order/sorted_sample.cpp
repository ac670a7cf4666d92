#include "kit/order/sorted_sample.h"

#include <algorithm>
#include <limits>
#include <numeric>
#include <utility>

void SortedSample::Add(double x, std::int64_t weight) {
  if (weight <= 0) return;
  if (!values.empty() && values.back() == x) {
    cumulative.back() += weight;
    return;
  }
  cumulative.push_back(Total() + weight);
  values.push_back(x);
}

std::int64_t SortedSample::CountUpTo(double x) const {
  const auto above = std::upper_bound(values.begin(), values.end(), x);
  return CountBefore(static_cast<std::size_t>(above - values.begin()));
}

namespace {

/// The values of a sample that may still be the wanted unit.
struct Window {
  const SortedSample* sample;
  std::size_t begin;
  std::size_t end;
  // Where the pivot's equals lie.
  std::size_t equalBegin = 0;
  std::size_t equalEnd = 0;

  [[nodiscard]] std::size_t Size() const noexcept { return end - begin; }
  [[nodiscard]] double Middle() const { return sample->Values()[begin + Size() / 2]; }
  void Split(double pivot) {
    const auto values = sample->Values().begin();
    const auto at = [values](std::size_t place) {
      return values + static_cast<std::ptrdiff_t>(place);
    };
    equalBegin = static_cast<std::size_t>(std::lower_bound(at(begin), at(end), pivot) - values);
    equalEnd = static_cast<std::size_t>(std::upper_bound(at(equalBegin), at(end), pivot) - values);
  }
};

/// The median of the windows' middles, each counted by its window's size: a quarter of all values
/// lies on either side of it, so each look at it rules out that many.
double PivotOf(const std::vector<Window>& windows) {
  std::vector<std::pair<double, std::size_t>> middles;
  std::size_t total = 0;
  for (const Window& window : windows) {
    if (window.Size() == 0) continue;
    middles.emplace_back(window.Middle(), window.Size());
    total += window.Size();
  }
  std::sort(middles.begin(), middles.end());
  std::size_t sum = 0;
  for (const auto& [value, size] : middles) {
    sum += size;
    if (sum * 2 >= total) return value;
  }
  return middles.back().first;
}

/// The first value of the samples behind the pivot that the windows were split at.
double NextValue(const std::vector<Window>& windows) {
  double next = std::numeric_limits<double>::infinity();
  for (const Window& window : windows) {
    const std::vector<double>& values = window.sample->Values();
    if (window.equalEnd < values.size()) next = std::min(next, values[window.equalEnd]);
  }
  return next;
}

}  // namespace

double MedianOf(std::span<const SortedSample* const> samples) {
  std::vector<Window> windows;
  std::int64_t total = 0;
  for (const SortedSample* sample : samples) {
    windows.push_back({sample, 0, sample->Values().size()});
    total += sample->Total();
  }
  const std::int64_t lower = total / 2 + total % 2;
  const std::int64_t upper = total / 2 + 1;
  for (;;) {
    const double pivot = PivotOf(windows);
    std::int64_t below = 0;
    std::int64_t upTo = 0;
    for (Window& window : windows) {
      window.Split(pivot);
      below += window.sample->CountBefore(window.equalBegin);
      upTo += window.sample->CountBefore(window.equalEnd);
    }
    if (below < lower && lower <= upTo) {
      return upper <= upTo ? pivot : std::midpoint(pivot, NextValue(windows));
    }
    for (Window& window : windows) {
      if (lower <= below) {
        window.end = window.equalBegin;
      } else {
        window.begin = window.equalEnd;
      }
    }
  }
}

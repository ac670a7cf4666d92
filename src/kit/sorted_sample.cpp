#include "kit/sorted_sample.h"

#include <algorithm>
#include <numeric>

void SortedSample::Add(double x, std::int64_t weight) {
  if (weight <= 0) return;
  if (!values.empty() && values.back() == x) {
    cumulative.back() += weight;
    return;
  }
  cumulative.push_back(Total() + weight);
  values.push_back(x);
}

std::size_t SortedSample::PlaceOf(double x) const {
  return static_cast<std::size_t>(std::lower_bound(values.begin(), values.end(), x) -
                                  values.begin());
}

std::size_t SortedSample::PlaceAbove(double x) const {
  return static_cast<std::size_t>(std::upper_bound(values.begin(), values.end(), x) -
                                  values.begin());
}

namespace {

/// The values of a sample that may still be the wanted unit.
struct Window {
  const SortedSample* sample;
  std::size_t begin;
  std::size_t end;
  [[nodiscard]] std::size_t Size() const noexcept { return end - begin; }
  [[nodiscard]] double Middle() const { return sample->Values()[begin + Size() / 2]; }
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

/// The unit of that number, from 1, in the samples taken together.
double UnitAt(std::span<const SortedSample* const> samples, std::int64_t number) {
  std::vector<Window> windows;
  for (const SortedSample* sample : samples)
    windows.push_back({sample, 0, sample->Values().size()});
  for (;;) {
    const double pivot = PivotOf(windows);
    std::int64_t below = 0;
    std::int64_t upTo = 0;
    for (const SortedSample* sample : samples) {
      below += sample->CountBelow(pivot);
      upTo += sample->CountUpTo(pivot);
    }
    if (below < number && number <= upTo) return pivot;
    for (Window& window : windows) {
      if (number <= below) {
        window.end = std::clamp(window.sample->PlaceOf(pivot), window.begin, window.end);
      } else {
        window.begin = std::clamp(window.sample->PlaceAbove(pivot), window.begin, window.end);
      }
    }
  }
}

}  // namespace

double MedianOf(std::span<const SortedSample* const> samples) {
  std::int64_t total = 0;
  for (const SortedSample* sample : samples) total += sample->Total();
  const std::int64_t lower = total / 2 + total % 2;
  const std::int64_t upper = total / 2 + 1;
  const double first = UnitAt(samples, lower);
  return lower == upper ? first : std::midpoint(first, UnitAt(samples, upper));
}

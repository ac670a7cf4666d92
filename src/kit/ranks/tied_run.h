#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/ranks/rank.h"

/// The current run of tied values in an ascending stream, as sums of weights by the place of their
/// group among k.
class TiedRun {
 public:
  explicit TiedRun(std::size_t groupCount) : weights(groupCount) {}

  /// True where a value does not belong to the run, which is then to be taken and cleared.
  [[nodiscard]] bool IsEndedBy(double x) const noexcept {
    return isOpen && !(std::fabs(x - firstValue) < NPARRank::kTieTolerance);
  }
  void Add(double x, std::int64_t weight, std::size_t place) {
    if (!isOpen) firstValue = x;
    isOpen = true;
    if (weight == 0) return;
    if (weights[place] == 0) places.push_back(place);
    weights[place] += weight;
    total += weight;
  }
  void Clear() noexcept {
    for (const std::size_t place : places) weights[place] = 0;
    places.clear();
    total = 0;
    isOpen = false;
  }

  /// The places that hold weight, in the order of their arrival.
  [[nodiscard]] std::vector<std::size_t>& Places() noexcept { return places; }
  [[nodiscard]] double WeightOf(std::size_t place) const noexcept {
    return static_cast<double>(weights[place]);
  }
  [[nodiscard]] std::int64_t Total() const noexcept { return total; }

 private:
  double firstValue = 0.0;
  bool isOpen = false;
  std::int64_t total = 0;
  std::vector<std::int64_t> weights;
  std::vector<std::size_t> places;
};

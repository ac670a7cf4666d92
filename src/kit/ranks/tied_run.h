#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "kit/ranks/ties.h"

/// The current run of tied values in an ascending stream, as sums of weights by the place of their
/// group among k.
class TiedRun {
 public:
  explicit TiedRun(std::size_t groupCount) : weights(groupCount) {}

  /// Does this value begin a run, so that the one before, if any, is to be taken and cleared?
  [[nodiscard]] bool IsEndedBy(double x) noexcept { return runs.Begins(x); }
  void Add(std::int64_t weight, std::size_t place) {
    if (weight == 0) return;
    if (weights[place] == 0) places.push_back(place);
    weights[place] += weight;
    total += weight;
  }
  void Clear() noexcept {
    for (const std::size_t place : places) weights[place] = 0;
    places.clear();
    total = 0;
  }

  /// The places that hold weight, in the order of their arrival.
  [[nodiscard]] std::vector<std::size_t>& Places() noexcept { return places; }
  [[nodiscard]] double WeightOf(std::size_t place) const noexcept {
    return static_cast<double>(weights[place]);
  }
  [[nodiscard]] std::int64_t Total() const noexcept { return total; }

 private:
  TieRuns runs;
  std::int64_t total = 0;
  std::vector<std::int64_t> weights;
  std::vector<std::size_t> places;
};

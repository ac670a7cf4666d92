#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <vector>

#include "foundation/names.h"
#include "kit/statistics/reference_distribution.h"

/// The extremes of differences that were taken in the order of their values.
class ExtremeDifferences {
 public:
  void Take(double difference, double x);
  /// Takes those of the values that follow.
  void Append(const ExtremeDifferences& next);
  /// Are all differences between these inside the extremes so far?
  [[nodiscard]] bool Hold(double lowest, double highest) const noexcept;

  /// The largest size of a difference; the lowest number where all are not a number.
  [[nodiscard]] double Absolute() const noexcept { return absolute; }
  /// 0 where no difference is above, or below, 0.
  [[nodiscard]] double Positive() const noexcept { return positive; }
  [[nodiscard]] double Negative() const noexcept { return negative; }
  /// The smallest value at which a difference is the largest, but for rounding; nothing where all
  /// are 0 or not a number.
  [[nodiscard]] std::optional<double> Location() const;

  /// Shows every number to `see`, which may change it; `countPlaces` answers how many places there
  /// are, of those that it is told.
  template <typename See, typename CountPlaces>
  void Visit(See& see, CountPlaces countPlaces) {
    see(absolute);
    see(positive);
    see(negative);
    places.resize(countPlaces(places.size()));
    for (Place& place : places) {
      see(place.x);
      see(place.size);
    }
  }

 private:
  struct Place {
    double x;
    double size;
  };
  void TakeSize(const Place& place);

  double absolute = std::numeric_limits<double>::lowest();
  double positive = 0.0;
  double negative = 0.0;
  std::vector<Place> places;  // of sizes that were the largest; the last ones, but for rounding
};

/// The extreme differences between the empirical distribution function of weighted values and a
/// distribution, just before and at the step of each distinct value.
///
/// The empirical function is 0 below the distribution's minimum and 1 from its maximum on, which
/// are those of the values or hold them. The differences themselves:
/// docs/statistics/ks_one_sample.md.
class EmpiricalDifferences {
 public:
  /// `totalWeight` is that of all values; `weightBefore` that of the smaller ones, which are not to
  /// come.
  EmpiricalDifferences(const ReferenceDistribution& distribution, std::int64_t totalWeight,
                       std::int64_t weightBefore = 0);

  /// Takes values in ascending order.
  void Add(double x, std::int64_t weight) {
    if (weight < 0) hasNegativeWeight = true;
    if (previousValue == QDMV::gMissingValue) previousValue = x;
    if (previousValue == x && cumulative < totalWeight) {
      tieWeight += weight;
    } else {
      EndStep();
      tieWeight = weight;
      previousValue = x;
    }
    cumulative += weight;
  }
  /// Takes ascending values of weight 1 none of which can be an extreme; false, and none taken, for
  /// others. Not for a Poisson distribution.
  bool PassOver(const double* values, std::size_t count);
  /// After the last value.
  void Finish();

  [[nodiscard]] const ExtremeDifferences& Extremes() const noexcept { return extremes; }

 private:
  /// A distinct value and the weight up to and including it.
  struct Step {
    double x;
    std::int64_t weightUpTo;
  };
  [[nodiscard]] double EmpiricalAt(double x, std::int64_t weightUpTo) const;
  /// The last distinct value has all its ties.
  void EndStep();
  /// Takes the differences of the steps that wait, but for those that cannot be an extreme.
  void TakeSteps();
  void TakeSteps(std::size_t begin, std::size_t end);

  ReferenceDistribution distribution;
  std::int64_t totalWeight;
  ExtremeDifferences extremes;

  std::int64_t cumulative = 0;  // weight up to and including previousValue
  std::int64_t tieWeight = 0;   // weight of previousValue alone
  double previousValue = QDMV::gMissingValue;
  double previousEmpirical = 0.0;  // before the steps that wait
  double boundedValue = QDMV::gMissingValue;
  double boundedCdf = 0.0;  // rough, at boundedValue
  std::vector<Step> steps;  // that wait for their differences; a Poisson step never waits
  bool hasNegativeWeight = false;
};

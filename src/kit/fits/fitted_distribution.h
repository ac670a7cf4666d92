#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "foundation/names.h"
#include "kit/statistics/reference_distribution.h"

/// A distribution some of whose parameters are given and the others estimated from the sample that
/// it is held against.
class FittedDistribution : public ReferenceDistribution {
 public:
  /// Of the values that the distribution can take; what was not estimated is the missing value.
  struct Estimates {
    double mean = QDMV::gMissingValue;
    double stdDev = QDMV::gMissingValue;
    double minimum = QDMV::gMissingValue;
    double maximum = QDMV::gMissingValue;
  };

  /// Parameters that are the missing value are to be estimated.
  explicit FittedDistribution(const ReferenceDistribution& given);

  [[nodiscard]] bool WantsMean() const noexcept { return estimateMean; }
  [[nodiscard]] bool WantsStdDev() const noexcept { return estimateStdDev; }
  /// True unless both ends are given: the empirical distribution function needs them of any family.
  [[nodiscard]] bool WantsRange() const noexcept { return estimateRange; }

  /// Can the distribution take the value?
  [[nodiscard]] bool Takes(double x) const noexcept;
  /// Can it take all of these ascending values, as their ends tell?
  [[nodiscard]] bool TakesAll(const double* values, std::size_t count) const noexcept;

  /// A part of some values, from `begin` to before `end`.
  struct Part {
    std::size_t begin;
    std::size_t end;
  };
  /// Those of ascending values that the distribution can take, up to the first that it can't.
  [[nodiscard]] Part TakenOf(std::span<const double> values) const noexcept;

  /// The estimates take the place of what was not given; a Poisson distribution of a large mean
  /// goes over to the normal.
  void UseEstimates(const Estimates& estimates);

  /// Is everything given that a continuous distribution needs? False for a Poisson one.
  [[nodiscard]] bool IsGiven() const noexcept;
  /// Is it a normal or an exponential one of which nothing is given?
  [[nodiscard]] bool IsEstimated() const noexcept;

  // What a test has to say of it, by code.

  /// Error 220003, 220310, 220313: there is no value that the distribution can take.
  [[nodiscard]] std::int32_t CodeWithoutValues() const noexcept;
  /// Error 220312, 220313, 220315, 220316: the parameters make no distribution; none where they do.
  [[nodiscard]] std::optional<std::int32_t> CodeAgainst() const noexcept;
  /// Warning 220311, 220314: values are left out that the distribution can't take.
  [[nodiscard]] std::int32_t CodeOfExcluded() const noexcept;

  /// The condition that a test names, "NormalDistribution_O_KolmogorovSmirnov_3", and the
  /// parameters that stand in it behind the field.
  [[nodiscard]] std::string_view ConditionKey() const noexcept;
  [[nodiscard]] std::vector<double> Parameters() const;

 private:
  bool estimateRange = false;
  bool estimateMean = false;
  bool estimateStdDev = false;
};

#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/names.h"

/// The distribution that a sample is held against, with its parameters; they are the missing value
/// until they are given or estimated.
class ReferenceDistribution {
 public:
  enum class Family { Uniform, Poisson, Normal, Exponential };

  /// From this mean on, a Poisson distribution is taken as a normal one.
  static constexpr double kLargePoissonMean = 100000.0;

  Family family = Family::Normal;
  double minimum = QDMV::gMissingValue;  // uniform
  double maximum = QDMV::gMissingValue;
  double mean = QDMV::gMissingValue;    // all others
  double stdDev = QDMV::gMissingValue;  // normal

  /// "uniform", "poisson", "exponential"; any other word is the normal.
  void SetFamily(std::string_view word);
  /// Goes over to the normal of the same mean and variance; the family stays Poisson.
  void UseNormalForPoisson();
  [[nodiscard]] bool IsNormalForPoisson() const noexcept { return normalForPoisson; }
  /// The distribution function; the missing value where an exponential fails. The Poisson function
  /// continues the sum of its last call, so that ascending x cost one term for each count.
  [[nodiscard]] double Cdf(double x);
  /// The same to within 1e-13, for less time and in any order; not for a Poisson distribution.
  [[nodiscard]] double RoughCdf(double x);
  [[nodiscard]] bool IsPoisson() const noexcept { return family == Family::Poisson; }

 private:
  [[nodiscard]] double PoissonCdf(double x);

  bool normalForPoisson = false;
  double nextCount = 0.0;  // the first count whose probability is not in poissonSum
  double poissonSum = 0.0;
};

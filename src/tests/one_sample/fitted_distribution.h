#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/names.h"
#include "kit/contract/settings_reader.h"
#include "kit/records/record_batch.h"
#include "kit/statistics/reference_distribution.h"
#include "kit/summaries/univariate.h"

/// A distribution some of whose parameters are given and the others estimated from the sample that
/// it is held against.
class FittedDistribution : public ReferenceDistribution {
 public:
  /// Parameters that the settings leave out are estimated from the values of a variable.
  FittedDistribution(const SettingsReader& settings, std::int32_t variable,
                     std::int32_t weightVariable);

  /// Can the distribution take the value?
  [[nodiscard]] bool Takes(double x) const noexcept;
  /// Can it take all of these ascending values, as their ends tell?
  [[nodiscard]] bool TakesAll(const double* values, std::size_t count) const noexcept;

  void EstimateFrom(RecordBatch& batch) { estimator.ProcessBatch(batch); }
  [[nodiscard]] QDStatus EndEstimates() { return estimator.EndPass(); }
  /// The estimates take the place of what was not given.
  void UseEstimates();

  /// Is everything given that a continuous distribution needs? False for a Poisson one.
  [[nodiscard]] bool IsGiven() const noexcept;
  /// Is it a normal or an exponential one of which nothing is given?
  [[nodiscard]] bool IsEstimated() const noexcept;

 private:
  bool estimateRange = false;
  bool estimateMean = false;
  bool estimateStdDev = false;
  QDContUnivariateVariable estimator;
};

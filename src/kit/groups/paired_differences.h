#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/settings_reader.h"
#include "kit/order/infinities.h"
#include "kit/records/record_batch.h"
#include "kit/records/record_weight.h"
#include "kit/summaries/histogram.h"

/// The differences d = second - first of a pair of variables, equal infinities differing by 0: how
/// many lie on either side of zero, their range, and their histogram, which takes a pass of its own
/// once the range is known.
class PairedDifferences {
 public:
  /// Reads "variableIndex"; false, and no pair, unless it holds exactly two positions.
  bool ReadPair(const SettingsReader& settings);
  /// Positions in the record; -1 without a pair.
  [[nodiscard]] std::int32_t First() const noexcept { return first; }
  [[nodiscard]] std::int32_t Second() const noexcept { return second; }

  /// Those of the records in hand, good until the next call. Throws std::bad_alloc.
  [[nodiscard]] const double* Of(RecordBatch& batch);

  /// The differences, of which the i-th weighs weightAt(i).
  template <typename WeightAt>
  void Count(const double* differences, std::size_t count, WeightAt weightAt) noexcept {
    std::int64_t above = 0;
    std::int64_t below = 0;
    std::int64_t all = 0;
    ValueRange taken = range;
    for (std::size_t i = 0; i < count; ++i) {
      const double d = differences[i];
      const std::int64_t w = weightAt(i);
      above += d > 0.0 ? w : 0;
      below += d < 0.0 ? w : 0;
      all += w;
      taken.Take(d);
    }
    positiveCount += above;
    negativeCount += below;
    tieCount += all - above - below;
    range = taken;
  }
  /// Sums of weights.
  [[nodiscard]] std::int64_t PositiveCount() const noexcept { return WeightOrNone(positiveCount); }
  [[nodiscard]] std::int64_t NegativeCount() const noexcept { return WeightOrNone(negativeCount); }
  [[nodiscard]] std::int64_t TieCount() const noexcept { return WeightOrNone(tieCount); }
  [[nodiscard]] std::int64_t TotalN() const noexcept {
    return PositiveCount() + NegativeCount() + TieCount();
  }
  [[nodiscard]] double Minimum() const noexcept { return range.low; }

  /// After all were counted: bins over their range.
  void StartHistogram() { histogram.SetRange(range); }
  /// `weights` as Histogram::AddColumn has them.
  void AddToHistogram(const double* differences, std::size_t count, const std::int32_t* weights) {
    histogram.AddColumn(differences, count, weights);
  }
  void EndHistogram() { histogram.AddZeroBin(); }
  [[nodiscard]] const std::vector<HistogramBin>& Bins() const noexcept {
    return histogram.GetBins();
  }

 private:
  std::int32_t first = -1;
  std::int32_t second = -1;
  std::int64_t positiveCount = 0;
  std::int64_t negativeCount = 0;
  std::int64_t tieCount = 0;
  ValueRange range;
  Histogram histogram;
  std::vector<double> inHand;
};

#pragma once

#include <cstdint>
#include <initializer_list>
#include <limits>
#include <map>
#include <vector>

#include "foundation/names.h"
#include "kit/records/counted_records.h"
#include "kit/records/record_batch.h"
#include "kit/records/sorted_data.h"
#include "kit/summaries/hinges.h"
#include "kit/summaries/histogram.h"
#include "kit/summaries/moments.h"

/// Statistics that can be asked of a variable's summary.
enum class Statistic : std::int32_t {
  Mean = 0,  ///< taken as MeanStdDev
  MeanStdDev = 1,
  Minimum = 2,
  Maximum = 3,
  Median = 4,        ///< continuous: taken as Quartiles; categorical: the median category
  Quartiles = 5,     ///< median and hinges, from sorted data
  Distribution = 6,  ///< Maximum, Minimum and the binned distribution
  Mode = 7,          ///< categorical: the largest frequency
  Frequencies = 8,   ///< categorical
  All = 9
};

/// Which statistics were asked for.
class StatisticSet {
 public:
  StatisticSet() = default;
  StatisticSet(std::initializer_list<Statistic> list) noexcept {
    for (const Statistic statistic : list) bits |= BitOf(statistic);
  }
  void Insert(const StatisticSet& others) noexcept { bits |= others.bits; }
  [[nodiscard]] bool IsEmpty() const noexcept { return bits == 0; }
  [[nodiscard]] bool Contains(Statistic statistic) const noexcept {
    return (bits & BitOf(statistic)) != 0;
  }

 private:
  [[nodiscard]] static std::uint32_t BitOf(Statistic statistic) noexcept {
    return std::uint32_t{1} << static_cast<std::int32_t>(statistic);
  }
  std::uint32_t bits = 0;
};

/// Summary of one variable.
class QDUnivariateVariable {
 public:
  /// Positions in the record; weight index -1: every record weighs 1.
  QDUnivariateVariable(std::int32_t variableIndex, std::int32_t weightIndex) noexcept
      : variableIndex(variableIndex), weightIndex(weightIndex) {}
  virtual ~QDUnivariateVariable() = default;
  /// Asks for a statistic; false for one that this kind of variable refuses.
  virtual bool AddStatistic(std::int32_t statistic);
  /// The value must not be missing.
  virtual QDStatus ProcessRecord(const Record& record);
  virtual QDStatus EndPass() = 0;
  virtual std::int32_t Reserved() { return 0; }
  virtual void SetSortedData(ISortedData* data) { sortedData = data; }
  void SetCountedRecords(ICountedRecords* source) noexcept { counted = source; }
  [[nodiscard]] virtual bool NeedsPass() const { return needsPass; }
  /// Does the summary walk the records in the order of its variable?
  [[nodiscard]] bool WalksInOrder() const noexcept { return Wants(Statistic::Quartiles); }
  virtual void SetWeightVariable(std::int32_t index) { weightIndex = index; }
  /// ProcessRecord for each record in which the variable is not missing. Records that hold the same
  /// in the variable may come as one (RecordBatch::Counts).
  virtual void ProcessBatch(RecordBatch& batch) = 0;

  /// Sum of the truncated weights of the records seen.
  [[nodiscard]] std::int64_t GetTotalWeight() const noexcept { return totalWeight; }

 protected:
  /// What it collects for a statistic that is asked for; nothing where it refuses.
  [[nodiscard]] virtual StatisticSet TakenFor(Statistic statistic) const = 0;
  [[nodiscard]] bool Wants(Statistic statistic) const noexcept {
    return statistics.Contains(statistic);
  }

  bool needsPass = true;
  std::int32_t variableIndex;
  std::int32_t weightIndex;
  std::int64_t totalWeight = 0;
  ISortedData* sortedData = nullptr;
  ICountedRecords* counted = nullptr;  // in place of sorted data where they are to be had
  StatisticSet statistics;
};

/// Summary of a continuous variable: moments, extremes, hinges, and, in a second pass, a histogram.
class QDContUnivariateVariable final : public QDUnivariateVariable {
 public:
  explicit QDContUnivariateVariable(std::int32_t variableIndex, std::int32_t weightIndex = -1)
      : QDUnivariateVariable(variableIndex, weightIndex) {}

  /// Error 220005: quartiles were asked for and there is no sorted data.
  QDStatus EndPass() override;
  void ProcessBatch(RecordBatch& batch) override;

  [[nodiscard]] double GetMean() const noexcept { return moments.Mean(); }
  [[nodiscard]] double GetStdDev() const noexcept { return moments.StdDev(); }
  [[nodiscard]] double GetMinimum() const noexcept { return extremes.minimum; }
  [[nodiscard]] double GetMaximum() const noexcept { return extremes.maximum; }
  [[nodiscard]] double GetFirstQuartile() const noexcept { return hinges.FirstQuartile(); }
  [[nodiscard]] double GetMedian() const noexcept { return hinges.Median(); }
  [[nodiscard]] double GetThirdQuartile() const noexcept { return hinges.ThirdQuartile(); }
  [[nodiscard]] const std::vector<HistogramBin>& GetBins() const noexcept {
    return histogram.GetBins();
  }

 private:
  [[nodiscard]] StatisticSet TakenFor(Statistic statistic) const override;
  void Summarise(RecordBatch& batch);
  QDStatus WalkSortedValues();

  std::int32_t pass = 1;
  Moments moments;
  Extremes extremes;
  HingeWalk hinges;
  Histogram histogram;
};

/// Summary of a categorical variable.
class QDCateUnivariateVariable final : public QDUnivariateVariable {
 public:
  QDCateUnivariateVariable(std::int32_t variableIndex, std::int32_t weightIndex,
                           std::int32_t categoryCount);

  QDStatus EndPass() override;
  void ProcessBatch(RecordBatch& batch) override;

  [[nodiscard]] std::int32_t GetCategoryCount() const noexcept { return categoryCount; }
  /// Sum of weights by category code, every category included.
  [[nodiscard]] std::map<std::int32_t, std::int64_t> GetFrequencies() const;
  [[nodiscard]] std::int64_t GetLargestFrequency() const noexcept { return largestFrequency; }
  [[nodiscard]] std::int32_t GetMedianCategory() const noexcept { return medianCategory; }

 private:
  [[nodiscard]] StatisticSet TakenFor(Statistic statistic) const override;

  std::int32_t categoryCount;
  std::vector<std::int64_t> frequencies;                  // by code
  std::map<std::int32_t, std::int64_t> otherFrequencies;  // of codes that are no category
  std::int64_t largestFrequency = 0;
  std::int32_t medianCategory = 0;
};

#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <span>
#include <vector>

#include "foundation/names.h"
#include "kit/records/record_batch.h"
#include "kit/records/sorted_data.h"

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
  void Insert(Statistic statistic) noexcept { bits |= BitOf(statistic); }
  [[nodiscard]] bool Contains(Statistic statistic) const noexcept {
    return (bits & BitOf(statistic)) != 0;
  }

 private:
  [[nodiscard]] static std::uint32_t BitOf(Statistic statistic) noexcept {
    return std::uint32_t{1} << static_cast<std::int32_t>(statistic);
  }
  std::uint32_t bits = 0;
};

/// One bin: a sum of weights and the weighted mean of the values in it.
struct HistogramBin {
  std::int64_t count = 0;
  double binMean = 0.0;

  void Add(double x, std::int64_t weight) noexcept {
    if (weight == 0) return;
    count += weight;
    binMean += (x - binMean) * static_cast<double>(weight) / static_cast<double>(count);
  }
};

/// Summary of one variable.
class QDUnivariateVariable {
 public:
  virtual ~QDUnivariateVariable() = default;
  /// Asks for a statistic; false for one that this kind of variable refuses.
  virtual bool AddStatistic(std::int32_t statistic) = 0;
  virtual QDStatus ProcessRecord(const Record& record) = 0;
  virtual QDStatus EndPass() = 0;
  virtual std::int32_t Reserved() { return 0; }
  virtual void SetSortedData(ISortedData* data) { sortedData = data; }
  [[nodiscard]] virtual bool NeedsPass() const = 0;
  /// -1: every record weighs 1.
  virtual void SetWeightVariable(std::int32_t index) = 0;
  /// ProcessRecord for each record in which the variable is not missing.
  virtual void ProcessBatch(RecordBatch& batch) = 0;

  /// Sum of the truncated weights of the records seen.
  [[nodiscard]] std::int64_t GetTotalWeight() const noexcept { return totalWeight; }

 protected:
  std::int64_t totalWeight = 0;
  ISortedData* sortedData = nullptr;
  StatisticSet statistics;
};

/// Summary of a continuous variable: moments, extremes, hinges, and a histogram with a split at
/// zero. Tests use it on its own, without a variable, as a histogram or as the quartiles of a
/// group.
///
/// Bin i of the histogram holds the values above edge i - 1 up to edge i. An exact zero never
/// enters a bin: it is counted apart and joins as one more entry at the end (AddZeroBin).
class QDContUnivariateVariable final : public QDUnivariateVariable {
 public:
  static constexpr std::uint64_t kBinCount = 400;

  /// -1 for a histogram without a variable; weight index -1: every record weighs 1.
  explicit QDContUnivariateVariable(std::int32_t variableIndex = -1, std::int32_t weightIndex = -1);

  bool AddStatistic(std::int32_t statistic) override;
  /// The value must not be missing.
  QDStatus ProcessRecord(const Record& record) override;
  /// Error 220005: quartiles were asked for and there is no sorted data.
  QDStatus EndPass() override;
  bool NeedsPass() const override { return needsPass; }
  void SetWeightVariable(std::int32_t index) override { weightIndex = index; }
  void ProcessBatch(RecordBatch& batch) override;
  /// ProcessBatch of each, all in their first pass and with the same weights. An update of a mean
  /// waits for a division before the next can begin: those of several variables wait together.
  static void SummariseTogether(std::span<QDContUnivariateVariable* const> variables,
                                RecordBatch& batch);
  [[nodiscard]] bool IsInFirstPass() const noexcept { return needsPass && pass == 1; }

  /// Makes `bins` empty bins from low to high, one more where zero lies inside; the last edge is
  /// high + 1.
  void SetRange(double low, double high, std::uint64_t bins);
  /// The bin of a value, from 0.
  [[nodiscard]] std::int64_t FindBin(double x) const;
  /// Puts a value that is not 0 into its bin.
  void AddValue(double x, std::int64_t weight);
  /// The same for values in ascending order, which stay in a bin for long.
  void AddAscending(double x, std::int64_t weight);
  /// As AddValue; an exact 0 is counted apart.
  void AddValueOrZero(double x, std::int64_t weight) {
    if (x == 0.0) {
      zeroCount += weight;
    } else {
      AddValue(x, weight);
    }
  }
  /// AddValueOrZero for each of `count` values; weights null: each weighs 1.
  void AddColumn(const double* values, std::size_t count, const std::int32_t* weights);
  /// As AddAscending; an exact 0 is counted apart.
  void AddAscendingOrZero(double x, std::int64_t weight) {
    if (x == 0.0) {
      zeroCount += weight;
    } else {
      AddAscending(x, weight);
    }
  }
  /// Appends the zeros as a last entry, where there are any.
  void AddZeroBin();

  /// One step of the walk over ascending values that finds the hinges (J. W. Tukey, Exploratory
  /// Data Analysis, 1977); `totalWeight` is the sum of the truncated weights, `weight` is not
  /// truncated.
  void TrackHinges(double x, double weight, double totalWeight) {
    TakeExtremes(x);
    if (totalWeight != hingeTotal) StartHinges(totalWeight);
    const double reached = cumulativeWeight + weight;
    if (cumulativeWeight <= nextHinge && reached <= nextHinge) {
      cumulativeWeight = reached;
      previousValue = x;
    } else {
      SettleHinges(x, weight);
    }
  }
  /// The same for `count` units of weight 1 at once, of values from `lowest` up, the last of them
  /// `last`. False, and nothing done, where they may reach a hinge.
  bool TrackUnits(double count, double lowest, double last, double totalWeight) noexcept;
  /// Gives hinges that the walk did not reach the last value that it saw.
  void FinishHinges();

  [[nodiscard]] double GetMean() const noexcept { return moments.mean; }
  [[nodiscard]] double GetStdDev() const noexcept { return stdDev; }
  [[nodiscard]] double GetMinimum() const noexcept { return minimum; }
  [[nodiscard]] double GetMaximum() const noexcept { return maximum; }
  [[nodiscard]] double GetFirstQuartile() const noexcept { return hinges[0].value; }
  [[nodiscard]] double GetMedian() const noexcept { return hinges[1].value; }
  [[nodiscard]] double GetThirdQuartile() const noexcept { return hinges[2].value; }
  [[nodiscard]] const std::vector<HistogramBin>& GetBins() const noexcept { return bins; }
  [[nodiscard]] const std::vector<double>& GetBinUpperEdges() const noexcept {
    return binUpperEdges;
  }
  [[nodiscard]] std::int64_t GetZeroCount() const noexcept { return zeroCount; }

 private:
  /// The value at a position among the units in ascending order, counted from 1.
  struct Hinge {
    double position = 0.0;
    double value = QDMV::gMissingValue;
  };
  static constexpr double kNoHinge = std::numeric_limits<double>::lowest();
  /// Weighted mean and sum of squares, updated value by value (D. H. D. West, Comm. ACM 22, 1979).
  struct Moments {
    double mean = 0.0;
    double sumOfSquares = 0.0;
    std::int64_t weightedCount = 0;
    void Add(double x, std::int64_t weight);
    /// The same for a weight of 1, to the last bit.
    void Add(double x);
  };
  [[nodiscard]] bool Wants(Statistic statistic) const noexcept {
    return statistics.Contains(statistic);
  }
  void TakeExtremes(double x) noexcept {
    if (minimum == QDMV::gMissingValue || minimum > x) minimum = x;
    if (maximum == QDMV::gMissingValue || x > maximum) maximum = x;
  }
  [[nodiscard]] std::int64_t LastBin() const noexcept {
    return binUpperEdges.empty() ? 0 : static_cast<std::int64_t>(binUpperEdges.size()) - 1;
  }
  /// Where to begin the search for a value's bin, from 0 to `last`.
  [[nodiscard]] std::int32_t GuessBin(double x, double last) const noexcept {
    const double guess = (x - rangeLow) * binsPerUnit;
    const double fromFirst = guess > 0.0 ? guess : 0.0;  // not a number: the first
    return static_cast<std::int32_t>(fromFirst < last ? fromFirst : last);
  }
  /// The bin of a value, sought from `bin` on.
  [[nodiscard]] std::int64_t SeekBin(double x, std::int64_t bin, std::int64_t last) const noexcept {
    const double* edges = binUpperEdges.data();
    while (bin > 0 && !(edges[bin - 1] < x)) --bin;
    while (bin < last && edges[bin] < x) ++bin;
    return bin;
  }
  /// AddColumn, where the values are given apart from those that are missing.
  template <bool kSkipsMissing, typename WeightAt>
  void AddValues(const double* values, std::size_t count, WeightAt weightAt);
  void AddToBin(std::int64_t place, double x, std::int64_t weight);
  template <bool kIsWeighted, std::size_t kCount>
  static void Summarise(QDContUnivariateVariable* const* variables, RecordBatch& batch);
  QDStatus WalkSortedValues();
  void StartHinges(double total);
  void SettleHinges(double x, double weight);

  // The walk that finds the hinges.
  double hingeTotal = QDMV::gMissingValue;  // the total weight that `hinges` were placed by
  std::array<Hinge, 3> hinges;
  double nextHinge = kNoHinge;  // up to this weight the walk passes none
  double cumulativeWeight = 0.0;
  double previousValue = QDMV::gMissingValue;
  bool needsPass = true;
  std::int32_t variableIndex;
  std::int32_t weightIndex;
  Moments moments;
  double stdDev = 0.0;
  double minimum = QDMV::gMissingValue;
  double maximum = QDMV::gMissingValue;
  std::vector<HistogramBin> bins;
  double rangeHigh = std::numeric_limits<double>::lowest();
  double rangeLow = std::numeric_limits<double>::max();
  std::uint64_t binCount = kBinCount;
  double binsPerUnit = 0.0;  // the reciprocal of their width
  std::int64_t latestBin = 0;
  std::int64_t zeroCount = 0;
  std::vector<double> binUpperEdges;
  std::int32_t pass = 1;
};

/// Summary of a categorical variable.
class QDCateUnivariateVariable final : public QDUnivariateVariable {
 public:
  QDCateUnivariateVariable(std::int32_t variableIndex, std::int32_t weightIndex,
                           std::int32_t categoryCount);

  bool AddStatistic(std::int32_t statistic) override;
  QDStatus ProcessRecord(const Record& record) override;
  QDStatus EndPass() override;
  bool NeedsPass() const override { return needsPass; }
  void SetWeightVariable(std::int32_t index) override { weightIndex = index; }
  void ProcessBatch(RecordBatch& batch) override;

  [[nodiscard]] std::int32_t GetCategoryCount() const noexcept { return categoryCount; }
  /// Sum of weights by category code, every category included.
  [[nodiscard]] std::map<std::int32_t, std::int64_t> GetFrequencies() const;
  [[nodiscard]] std::int64_t GetLargestFrequency() const noexcept { return largestFrequency; }
  [[nodiscard]] std::int32_t GetMedianCategory() const noexcept { return medianCategory; }

 private:
  bool needsPass = true;
  std::int32_t variableIndex;
  std::int32_t weightIndex;
  std::int32_t categoryCount;
  std::vector<std::int64_t> frequencies;                  // by code
  std::map<std::int32_t, std::int64_t> otherFrequencies;  // of codes that are no category
  std::int64_t largestFrequency = 0;
  std::int32_t medianCategory = 0;
};

/// The summaries of a run, one for each variable that some test asked for.
class QDUnivariateSummaries {
 public:
  /// Neither is taken over.
  QDUnivariateSummaries(BatchSource* records, const QDVarList* variables) noexcept
      : records(records), variables(variables) {}

  /// Asks for a statistic of a variable. False for a variable of a kind that has no summary, for a
  /// hinge statistic without sorted data, and where memory ran out.
  bool Register(std::int32_t variableIndex, std::int32_t statistic) noexcept;
  /// True once a request was lost for lack of memory.
  [[nodiscard]] bool RanOutOfMemory() const noexcept { return ranOutOfMemory; }
  void SetWeightVariable(std::int32_t index);
  void SetSortedData(ISortedData* data) noexcept { sortedData = data; }
  /// Reads the records as often as the statistics need.
  ///
  /// At the end of each reading the summaries are finished in the order of the variables up to the
  /// first that had finished before: a distribution behind such a one stays without its entry of
  /// zeros.
  QDStatus Run();

  /// Null where nobody asked for the variable.
  [[nodiscard]] const QDUnivariateVariable* Find(std::int32_t variableIndex) const;
  [[nodiscard]] const QDContUnivariateVariable* FindContinuous(std::int32_t variableIndex) const;
  [[nodiscard]] const QDCateUnivariateVariable* FindCategorical(std::int32_t variableIndex) const;

 private:
  /// One walk over the records for the summaries that need it; false if there was no record.
  bool ReadRecords();

  BatchSource* records;
  const QDVarList* variables;
  ISortedData* sortedData = nullptr;
  std::int32_t weightIndex = -1;
  bool ranOutOfMemory = false;
  std::map<std::int32_t, std::unique_ptr<QDUnivariateVariable>> summaries;
};

/// What tests read of the summaries. Owns nothing.
class UnivariateResults {
 public:
  explicit UnivariateResults(const QDUnivariateSummaries* summaries) noexcept
      : summaries(summaries) {}
  virtual ~UnivariateResults() = default;

  /// -1, false, the missing value or null for a variable that has no summary of the fitting kind.
  [[nodiscard]] virtual std::int64_t GetTotalWeight(std::int32_t variable) const;
  [[nodiscard]] virtual bool HasVariable(std::int32_t variable) const;
  [[nodiscard]] virtual double GetMean(std::int32_t variable) const;
  [[nodiscard]] virtual double GetMaximum(std::int32_t variable) const;
  [[nodiscard]] virtual double GetMinimum(std::int32_t variable) const;
  [[nodiscard]] virtual double GetMedian(std::int32_t variable) const;
  [[nodiscard]] virtual double GetFirstQuartile(std::int32_t variable) const;
  [[nodiscard]] virtual double GetThirdQuartile(std::int32_t variable) const;
  [[nodiscard]] virtual double GetStdDev(std::int32_t variable) const;
  [[nodiscard]] virtual const std::vector<HistogramBin>* GetBins(std::int32_t variable) const;
  [[nodiscard]] virtual std::int32_t GetMedianCategory(std::int32_t variable) const;
  [[nodiscard]] virtual std::int64_t GetLargestFrequency(std::int32_t variable) const;
  virtual bool GetFrequencies(std::int32_t variable,
                              std::map<std::int32_t, std::int64_t>& out) const;
  [[nodiscard]] virtual std::int32_t GetCategoryCount(std::int32_t variable) const;

 private:
  const QDUnivariateSummaries* summaries;
};

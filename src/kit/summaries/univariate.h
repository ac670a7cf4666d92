#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "foundation/names.h"
#include "kit/records/counted_records.h"
#include "kit/records/sorted_data.h"
#include "kit/summaries/univariate_variable.h"

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
  /// Summaries of fields with few values are made of cells; not taken over, null for none.
  void SetCountedRecords(ICountedRecords* source) noexcept { counted = source; }
  /// Reads the records as often as the statistics need: once for all that tests read of them, and
  /// then, which may go on beside the tests, for the distributions.
  ///
  /// At the end of each reading the summaries are finished in the order of the variables up to the
  /// first that had finished before: a distribution behind such a one stays without its entry of
  /// zeros.
  QDStatus Run();
  QDStatus RunFirstPass();
  QDStatus FillDistributions();
  /// Does the summary of that variable walk the records in its order?
  [[nodiscard]] bool WalksOrderOf(std::int32_t variableIndex) const {
    const QDUnivariateVariable* summary = Find(variableIndex);
    return summary != nullptr && summary->WalksInOrder();
  }

  /// Null where nobody asked for the variable.
  [[nodiscard]] const QDUnivariateVariable* Find(std::int32_t variableIndex) const;
  [[nodiscard]] const QDContUnivariateVariable* FindContinuous(std::int32_t variableIndex) const;
  [[nodiscard]] const QDCateUnivariateVariable* FindCategorical(std::int32_t variableIndex) const;

 private:
  /// ReadRecords, and what follows from it.
  QDStatus RunPass();
  /// One walk over the records, or their cells, for the summaries that need it, or several side by
  /// side for some of them each; false if there was no record.
  bool ReadRecords();
  /// Null where they are not to be had.
  [[nodiscard]] std::unique_ptr<BatchSource> WalkCells(std::int32_t variable);

  BatchSource* records;
  const QDVarList* variables;
  ISortedData* sortedData = nullptr;
  ICountedRecords* counted = nullptr;
  std::int32_t weightIndex = -1;
  bool ranOutOfMemory = false;
  bool wantsPass = false;  // for distributions
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
  /// Has each value of the variable a bin of its own? False where that is not known.
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

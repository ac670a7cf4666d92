#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "foundation/names.h"
#include "kit/rank.h"
#include "kit/record_weight.h"
#include "kit/test.h"
#include "kit/univariate.h"

/// Errors of the groups of a two-group test.
struct TwoGroupCodes {
  std::int32_t noSummaries;       ///< the run's summaries were not handed over
  std::int32_t notTwoCategories;  ///< default groups of a variable without exactly two categories
  std::int32_t overlap;           ///< a category in both lists
  std::int32_t unpopulated;       ///< an empty list, or one without any data
};

struct TwoGroupUnits;

/// The two groups of records that a test compares: lists of category codes of the group variable,
/// given by the user or one category each.
class TwoGroups {
 public:
  enum Group : std::uint8_t { First = 0, Second = 1, Neither = 2 };

  /// Reads "variableIndex", "groupVariableIndex", "userSpecifyGroupList" and, with that flag,
  /// "group1List" and "group2List", else "groupVariableValue1" and "groupVariableValue2". A code in
  /// both lists belongs to the first group.
  void Read(const QDSettings& settings);
  /// Reports the first finding to the test. A list may name categories that have no data, provided
  /// that one of its categories has some.
  void Check(NPARTest& test, const UnivariateResults* summaries, const TwoGroupCodes& codes) const;

  /// Neither for a code of no group, also one outside the categories.
  [[nodiscard]] Group Of(std::int32_t code) const noexcept {
    const bool isKnown = code >= 0 && static_cast<std::size_t>(code) < groupOfCode.size();
    return isKnown ? groupOfCode[static_cast<std::size_t>(code)] : Neither;
  }
  /// The records of either group, with their truncated weights.
  void Select(RecordColumns& columns, const RecordWeight& weight, TwoGroupUnits& units) const;
  [[nodiscard]] std::int32_t TestVariable() const noexcept { return testVariable; }
  [[nodiscard]] std::int32_t GroupVariable() const noexcept { return groupVariable; }
  [[nodiscard]] bool AreUserSpecified() const noexcept { return areUserSpecified; }
  [[nodiscard]] const std::vector<double>& CodesOf(Group group) const { return lists[group]; }
  /// The test variable, then the group variable.
  void AppendRequired(std::vector<std::int64_t>& positions) const;

 private:
  void BuildGroupOfCode();

  std::int32_t testVariable = -1;
  std::int32_t groupVariable = -1;
  bool areUserSpecified = false;
  std::array<std::vector<double>, 2> lists;
  std::vector<Group> groupOfCode;
};

/// Records of either group side by side, in the order in which they came.
struct TwoGroupUnits {
  std::size_t count = 0;
  bool weighOne = false;  ///< every record does
  std::vector<double> values;
  std::vector<TwoGroups::Group> groups;
  std::vector<std::int64_t> weights;

  /// Ranks them by group.
  void AddTo(NPARRank& ranks) const;
};

/// A histogram of the test variable for each of two groups; a first pass finds their ranges.
class TwoGroupHistograms {
 public:
  /// First pass.
  void TakeRanges(const TwoGroupUnits& units) noexcept;
  /// Between the passes: makes the bins.
  void Start();
  /// Second pass.
  void Add(const TwoGroupUnits& units);
  /// After it: appends the zeros.
  void Finish();
  [[nodiscard]] const std::vector<HistogramBin>& Bins(TwoGroups::Group group) const {
    return histograms[group].GetBins();
  }

 private:
  std::array<double, 2> minValues{std::numeric_limits<double>::max(),
                                  std::numeric_limits<double>::max()};
  std::array<double, 2> maxValues{std::numeric_limits<double>::lowest(),
                                  std::numeric_limits<double>::lowest()};
  std::array<QDContUnivariateVariable, 2> histograms;
};

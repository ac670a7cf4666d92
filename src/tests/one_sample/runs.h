#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/column_test.h"
#include "kit/records/record_weight.h"
#include "kit/statistics/normal.h"

/// One-sample runs test: is the sequence of a field's values, split into two groups, random?
///
/// The runs are those in record order, n1 and n2 the sums of weights in the groups; the two-sided
/// normal approximation as in kit/statistics/runs.h. A continuous field is split at its median,
/// mean or a given value (below, or at and above); a categorical one by a list of categories or by
/// its two categories in the order of the data. A record of weight w counts w in its group and as
/// one step of one run. One pass.
///
/// Source: A. Wald, J. Wolfowitz, Ann. Math. Stat. 11 (1940); correction as in J. V. Bradley,
/// Distribution-Free Statistical Tests (1968).
class NPARRuns final : public NPARRecordTest {
 public:
  using NPARRecordTest::NPARRecordTest;

  void SetSharedData(UnivariateResults* data) override { sharedData = data; }
  /// Error 220110: no cut point.
  QDStatus BeginPass() override;
  QDStatus ProcessRecord(const Record& record) override;
  bool NeedsAnotherPass() override { return false; }
  /// Error 220112: a group is empty.
  QDStatus EndPass() override;
  void GetRequiredVariables(std::vector<std::int64_t>& positions) override;
  XMLElement* WriteResults() override;

 private:
  enum class Group { None, AtOrAbove, Below };
  [[nodiscard]] bool IsBelow(double x) const;

  UnivariateResults* sharedData = nullptr;
  double sigLevel = 0.05;
  std::int32_t variableIndex = -1;
  bool isContinuous = false;
  double cutPoint = QDMV::gMissingValue;
  RecordWeight weight;
  std::vector<double> group1Values;
  std::vector<double> group2Values;
  std::vector<std::string> invalidCategories;
  Group lastGroup = Group::None;
  std::int64_t runCount = 0;
  std::int64_t countAtOrAbove = 0;
  std::int64_t countBelow = 0;
  double mean = QDMV::gMissingValue;
  NormalFigures figures;
};

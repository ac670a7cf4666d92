#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "kit/contract/test.h"
#include "kit/statistics/normal.h"
#include "report/algorithm_element.h"

/// One-sample runs test: is the sequence of a field's values, split into two groups, random?
///
/// Formulas, limits, sources: docs/statistics/runs.md.
///
/// One pass in the order of the records; a record is one step of one run, whatever its weight.
class NPARRuns final : public NPARTest {
 public:
  using NPARTest::NPARTest;

  XMLElement* WriteResults() override;

 protected:
  /// Error 220110: no cut point.
  void Prepare(const SettingsReader& settings) override;
  void Take(RecordBatch& batch) override;
  /// Error 220112: a group is empty.
  void Compute() override;
  void Extend(ExtendedFigures& extended) override;

 private:
  enum class Group { None, AtOrAbove, Below };
  /// The groups of the data: the first value is the first group, the first other one the second.
  void FindGroups(const double* values, std::size_t count);
  template <typename IsBelow>
  void CountRuns(RecordBatch& batch, IsBelow isBelow);
  [[nodiscard]] Condition GetCondition() const;

  std::int32_t variableIndex = -1;
  bool isContinuous = false;
  double cutPoint = QDMV::gMissingValue;
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

#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/data/model.h"
#include "host/ranges/range_plan.h"
#include "host/requirements/requirements.h"
#include "ranges/units.h"

namespace npar_host {

/// The records of a piece as a plan wants them: which of them count, how often, in which group.
class RangeRecords {
 public:
  /// Values with their groups: the code of a category, the sign of a difference or distance, or
  /// 0 without groups.
  using Use = std::function<void(const Units& units)>;
  enum Sign : std::size_t { kNegative = 0, kPositive = 1 };

  RangeRecords(const RangePlan& plan, const AnalysisRequest& request, ModelledData data);

  [[nodiscard]] const RecordCounts& Counts() const { return prepared.counts; }
  /// The field of groups; of a plan with one.
  [[nodiscard]] const Field& GroupField() const { return prepared.model.fields[fields.back()]; }
  /// Records without a missing value, in their order, some at a time; a distance of 0 is positive.
  /// InputError for a weight that no record may have.
  void ForEach(const Use& use) const;

 private:
  struct Block;

  /// Reads the next records; how many there were.
  [[nodiscard]] std::size_t Read(std::size_t& next, Block& block) const;
  /// Puts their units side by side; how many these are.
  [[nodiscard]] std::size_t Compress(std::size_t count, Block& block) const;
  [[nodiscard]] std::size_t IndexOf(const std::string& name) const;

  RangePlan plan;
  PreparedData prepared;
  std::vector<std::size_t> fields;  // one or two of the plan, then that of groups
  std::size_t weightField = 0;
  bool isWeighted = false;
};

}  // namespace npar_host

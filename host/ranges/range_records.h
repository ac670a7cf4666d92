#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "host/data/model.h"
#include "host/ranges/range_plan.h"
#include "host/requirements/requirements.h"

namespace npar_host {

/// The records of a piece as a plan wants them: which of them count, how often, in which group.
class RangeRecords {
 public:
  /// A value with its group: the code of its category, or the sign of a difference or distance.
  using Use = std::function<void(double value, std::size_t group, std::int64_t weight)>;
  enum Sign : std::size_t { kNegative = 0, kPositive = 1 };

  RangeRecords(const RangePlan& plan, const AnalysisRequest& request, ModelledData data);

  [[nodiscard]] const RecordCounts& Counts() const { return prepared.counts; }
  /// The field of groups; of a plan with one.
  [[nodiscard]] const Field& GroupField() const { return prepared.model.fields[fields.back()]; }
  /// Records without a missing value, in their order; a distance of 0 is positive. InputError for a
  /// weight that no record may have.
  void ForEach(const Use& use) const;

 private:
  [[nodiscard]] std::size_t IndexOf(const std::string& name) const;

  RangePlan plan;
  PreparedData prepared;
  std::vector<std::size_t> fields;  // one or two of the plan, then that of groups
  std::size_t weightField = 0;
  bool isWeighted = false;
};

}  // namespace npar_host

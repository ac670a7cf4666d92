#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/request/analysis_documents.h"
#include "ranges/fitted_sums.h"

namespace npar_host {

/// What is to be summed, in which order, for the tests of a request.
struct RangePlan {
  /// What the records of a piece ascend by.
  enum class Order {
    Value,       ///< the values of a field, in groups or without
    Difference,  ///< the size of the differences between two fields
    Distance,    ///< the distance of a field's values from a given one
  };

  Order order = Order::Value;
  std::vector<std::string> fields;      ///< one, or two of which differences are taken
  double origin = 0.0;                  ///< of distances
  std::string group;                    ///< the field of groups; empty without
  std::vector<std::string> groupOrder;  ///< where one was given
  /// What tests fit to the values, in the order of these tests.
  std::vector<FittedDistribution> fits;
  bool wantsPairsInOrder = false;  ///< of groups, each pair summed on its own
  bool needsFurtherPass = false;   ///< of a test that the sums of one pass do not serve

  /// The same for pieces of one analysis alone.
  [[nodiscard]] std::string Signature() const;
};

/// UsageError for a request that sums of sorted ranges do not serve: a test that needs the records,
/// an option of a test that does, several orders at once.
[[nodiscard]] RangePlan PlanRanges(const AnalysisRequest& request);

}  // namespace npar_host

#pragma once

#include <string>
#include <vector>

#include "catalogue/card.h"
#include "host/ranges/range_piece.h"
#include "host/ranges/range_plan.h"
#include "host/render/result_model.h"
#include "host/request/analysis_documents.h"

namespace npar_host {

class RangeTestMaker;

/// A test that sums of sorted ranges serve.
struct RangeTest {
  const catalogue::Card& card;
  std::vector<std::string> options;  ///< that sums serve
  RangePlan::Order order;
  bool fits;  ///< a distribution to the values, in the first pass
  bool needsFurtherPass;
  void (*make)(RangeTestMaker& maker);
};

[[nodiscard]] const std::vector<RangeTest>& AllRangeTests();
/// Null for a test that sums do not serve.
[[nodiscard]] const RangeTest* FindRangeTest(const catalogue::Card& card);

/// All that was summed for a request.
struct SummedRanges {
  const RangePiece& whole;
  RunSums sums;
  std::vector<FittedSums> fits;  ///< as in the plan
  const RangePlan& plan;
  const AnalysisRequest& request;
};
/// The result of a test that the request asks for. UsageError for a test of two groups where the
/// field has another number of them.
[[nodiscard]] ResultTest MakeRangeTest(const SummedRanges& summed, const TestRequest& asked);

}  // namespace npar_host

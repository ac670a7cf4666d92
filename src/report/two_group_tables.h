#pragma once

#include <cstdint>
#include <optional>

#include "foundation/names.h"
#include "kit/groups/group_tally.h"
#include "kit/groups/two_groups.h"
#include "report/algorithm_element.h"

/// What a two-group test shows of one of its groups.
struct TwoGroupFigures {
  std::int64_t count;
  std::optional<double> meanRank;
};

/// The condition of a two-group test, "%0" and "%1" being the test and the group variable:
/// "DefaultAllDistinctValuesUsed_I_..._2" or, with lists of the user's, "CategoryListsAreSpecified_
/// I_..._2" around `testName`. `withMissing`: a negative index stands as "__MISSING__".
[[nodiscard]] Condition TwoGroupCondition(std::string_view testName, const TwoGroups& groups,
                                          bool withMissing = true);
/// "Group0" and "Group1": the codes, the sum of weights, the mean rank where the test has one, the
/// histogram.
void AddTwoGroupTables(XMLElement& algorithm, const TwoGroups& groups, const GroupTally& tally,
                       const TwoGroupFigures& first, const TwoGroupFigures& second);

#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "foundation/names.h"
#include "kit/contract/extended_figures.h"
#include "kit/groups/group_tally.h"
#include "kit/statistics/exact_tails.h"
#include "kit/summaries/field_quartiles.h"
#include "kit/summaries/quartiles.h"

/// Appends the table "ExtendedFigures"; nothing where there are none.
void WriteExtendedFigures(XMLElement& algorithm, const ExtendedFigures& figures);

/// Adds the one-sided and the continuity-corrected significances of a statistic that lies
/// `deviation` above its mean; none where it has no spread.
void AddNormalFigures(ExtendedFigures& figures, double deviation, double standardError);
/// Adds the exact significances given the ties.
void AddConditionalFigures(ExtendedFigures& figures, const ExactTails& tails);

/// What the table "Groups" tells of one group, and "Fields" of one continuous field.
struct SampleFigures {
  std::string label;  ///< the group's code, "Group0", or the index of the field
  std::int64_t count = 0;
  Quartiles quartiles = {};
  std::optional<double> meanRank = std::nullopt;
};
/// The table "Groups" of these; "MeanRank" is a column where the first has one.
[[nodiscard]] FigureTable GroupsTable(std::span<const SampleFigures> groups);
/// The table "Groups" of the groups with data, named by their codes; of a tally that finds
/// quartiles and whose second pass has ended. `meanRanks` by their places, empty for a test
/// without.
[[nodiscard]] FigureTable GroupsTable(const GroupTally& tally,
                                      std::span<const double> meanRanks = {});
/// The same of two groups, named "Group0" and "Group1".
[[nodiscard]] FigureTable TwoGroupsTable(const GroupTally& tally,
                                         std::span<const double> meanRanks = {});

/// The table "Fields" of related continuous fields, named by their indices; no row where the
/// quartiles were not kept.
[[nodiscard]] FigureTable FieldsTable(const FieldQuartiles& fields);
/// The table "Fields" of fields with successes among n units: share and Wilson's limits.
[[nodiscard]] FigureTable SuccessTable(std::span<const std::int32_t> fields,
                                       std::span<const std::int64_t> successes, std::int64_t n,
                                       double confidenceLevel);

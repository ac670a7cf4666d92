#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::marginal_homogeneity {

inline constexpr Fields kFields{kOrdinal, 2, 2, Groups::None, "exactly 2 ordinal fields"};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distributions over the categories are the same in {0} and {1}."}};

inline constexpr Code kNoVariableName{221703, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kNotMerged{
    221709, Kind::Error, "the categories of the two fields cannot be joined[: %*]",
    "Choose two fields that both hold numbers or both hold texts.", Meaning::Field};
inline constexpr Code kUnfitVariable{
    221710, Kind::Error, "a field is not in the data, not categorical, or without a category[: %*]",
    "Name two categorical fields that have data.", Meaning::Field};
inline constexpr Code kNotTwoVariables{221711, Kind::Error, sentences::kNotTwoFields};
inline constexpr Code kCodes[] = {kNoVariableName, kNotMerged, kUnfitVariable, kNotTwoVariables};

inline constexpr Card kCard{.name = "marginal-homogeneity",
                            .key = "RMarginalHomogeneity",
                            .entry = "RMarginalHomogeneity",
                            .element = "RMarginalHomogeneity",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Marginal homogeneity test",
                            .hypotheses = kHypotheses,
                            .fields = kFields,
                            .warningName = "MarginalHomogeneity",
                            .options = kNone,
                            .decision = options::kExactDecides,
                            .effectSize = options::EffectSizeR(EffectFormula::StandardisedByN),
                            .page = "marginal_homogeneity.md",
                            .codes = kCodes};

}  // namespace catalogue::marginal_homogeneity

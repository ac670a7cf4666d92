#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::wald_wolfowitz {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distribution of {0} is the same in both groups of {1}."}};

inline constexpr TwoGroupCodes kTwoGroupCodes{220600};
inline constexpr Code kTiesBetweenGroups{
    220616, Kind::Warning, "values are tied between the groups[, %0 of them]",
    "Look at both the smallest and the largest number of runs; the decision takes the largest."};
inline constexpr auto kCodes = Together(kTwoGroupCodes, kTiesBetweenGroups);

// With ties between the groups the number of runs is a range; its upper end decides.
inline constexpr Card kCard{.name = "wald-wolfowitz",
                            .key = "IWaldWolfowitzRuns",
                            .entry = "IWaldWolfowitzRuns",
                            .element = "IWaldWolfowitzRuns",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Wald-Wolfowitz runs test",
                            .hypotheses = kHypotheses,
                            .fields = options::kInTwoGroups,
                            .settings = settings::kTwoGroups,
                            .options = options::kTwoGroups,
                            .decision = {Decides::ExactWhereGiven, "MaximumRuns"},
                            .effectSize = options::EffectSizeR(EffectFormula::UntiedStandardised),
                            .page = "wald_wolfowitz.md",
                            .codes = kCodes};

}  // namespace catalogue::wald_wolfowitz

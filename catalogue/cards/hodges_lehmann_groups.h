#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::hodges_lehmann_groups {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "Estimated: the shift of {0} from the first to the second group of {1}."}};

inline constexpr TwoGroupCodes kTwoGroupCodes{222500};
inline constexpr auto kCodes = Together(kTwoGroupCodes);

inline constexpr Card kCard{.name = "hodges-lehmann-groups",
                            .key = "IHodgesLehmannEstimateIndependent",
                            .entry = "IHodgesLehmannEstimateGroups",
                            .element = "IHodgesLehmannEstimateGroups",
                            .family = Family::Independent,
                            .purpose = Purpose::Estimate,
                            .title = "Hodges-Lehmann estimate of the shift between two groups",
                            .hypotheses = kHypotheses,
                            .fields = options::kInTwoGroups,
                            .settings = settings::kTwoGroups,
                            .options = options::kTwoGroups,
                            .decision = options::kNothingDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "hodges_lehmann_groups.md",
                            .codes = kCodes};

}  // namespace catalogue::hodges_lehmann_groups

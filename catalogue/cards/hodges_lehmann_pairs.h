#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/shared_codes.h"

namespace catalogue::hodges_lehmann_pairs {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "Estimated: the median of the differences {1} - {0}."}};

inline constexpr ContinuousFieldsCodes kFieldsCodes{222400, sentences::kNotTwoFields, 222410};
inline constexpr auto kCodes = Together(kFieldsCodes);

inline constexpr Card kCard{.name = "hodges-lehmann-pairs",
                            .key = "RHodgesLehmannEstimatePairs",
                            .entry = "RHodgesLehmannEstimatePairs",
                            .element = "RHodgesLehmannEstimatePairs",
                            .family = Family::Related,
                            .purpose = Purpose::Estimate,
                            .title = "Hodges-Lehmann estimate of the median difference",
                            .hypotheses = kHypotheses,
                            .fields = options::kContinuousPair,
                            .warningName = "HodgesLehmannEstimatePairs",
                            .options = kNone,
                            .decision = options::kNothingDecides,
                            .effectSize = options::kNoEffectSize,
                            .page = "hodges_lehmann_pairs.md",
                            .codes = kCodes};

}  // namespace catalogue::hodges_lehmann_pairs

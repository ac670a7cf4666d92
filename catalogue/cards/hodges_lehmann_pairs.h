#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::hodges_lehmann_pairs {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "Estimated: the median of the differences {1} - {0}."}};

inline constexpr Code kUnknownVariable{222403, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{222404, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kNotTwo{222409, Kind::Error, sentences::kNotTwoFields};
inline constexpr Code kNoVariableName{222410, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kCodes[] = {kUnknownVariable, kNotContinuous, kNotTwo, kNoVariableName};

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

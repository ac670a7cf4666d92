#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"

namespace catalogue::wilcoxon_pairs {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The differences {1} - {0} are symmetric about 0."}};

inline constexpr Code kUnknownVariable{221003, Kind::Error, sentences::kUnknownField,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{221004, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kNotTwo{221009, Kind::Error, sentences::kNotTwoFields};
inline constexpr Code kNoVariableName{221010, Kind::Error, sentences::kNoFieldNamed};
inline constexpr Code kCodes[] = {kUnknownVariable, kNotContinuous, kNotTwo, kNoVariableName};

inline constexpr Card kCard{.name = "wilcoxon-pairs",
                            .key = "RWilcoxonSignedRanks",
                            .entry = "RWilcoxonSignedRanks",
                            .element = "RWilcoxonSignedRanks",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Wilcoxon matched-pairs signed-rank test",
                            .hypotheses = kHypotheses,
                            .fields = options::kContinuousPair,
                            .warningName = "WilcoxonSignedRanks",
                            .options = kNone,
                            .decision = options::kExactDecides,
                            .effectSize = options::RankBiserial(EffectFormula::PairedSignedRanks),
                            .page = "wilcoxon_pairs.md",
                            .codes = kCodes};

}  // namespace catalogue::wilcoxon_pairs

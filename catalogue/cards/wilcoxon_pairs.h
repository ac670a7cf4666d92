#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/shared_codes.h"

namespace catalogue::wilcoxon_pairs {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The differences {1} - {0} are symmetric about 0."}};

inline constexpr ContinuousFieldsCodes kFieldsCodes{221000, sentences::kNotTwoFields, 221010};
inline constexpr auto kCodes = Together(kFieldsCodes);

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

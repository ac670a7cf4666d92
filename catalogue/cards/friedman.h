#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::friedman {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {{kNone, "The distributions of {0} are the same."}};

inline constexpr RankedRecordsCodes kRankedRecordsCodes{221800};
inline constexpr auto kCodes = Together(kRankedRecordsCodes);

inline constexpr Card kCard{.name = "friedman",
                            .key = "RFriedmansTwoWayByRanks",
                            .entry = "RFriedmansTwoWayByRanks",
                            .element = "RFriedmansTwoWayByRanks",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Friedman's two-way analysis of variance by ranks",
                            .hypotheses = kHypotheses,
                            .fields = options::kSeveralContinuous,
                            .warningName = "FriedmansTwoWayByRanks",
                            .settings = kSettings,
                            .options = options::kComparisonOnly,
                            .decision = options::kExactDecides,
                            .effectSize = options::KendallsW(EffectFormula::Concordance),
                            .page = "friedman.md",
                            .codes = kCodes};

}  // namespace catalogue::friedman

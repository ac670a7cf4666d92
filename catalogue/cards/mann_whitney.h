#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::mann_whitney {

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distribution of {0} is the same in both groups of {1}."}};

inline constexpr TwoGroupCodes kTwoGroupCodes{220700};
inline constexpr auto kCodes = Together(kTwoGroupCodes);

inline constexpr Card kCard{.name = "mann-whitney",
                            .key = "IMannWhitneyU",
                            .entry = "IMannWhitneyU",
                            .element = "IMannWhitneyU",
                            .family = Family::Independent,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Mann-Whitney U test",
                            .hypotheses = kHypotheses,
                            .fields = options::kInTwoGroups,
                            .settings = settings::kTwoGroups,
                            .options = options::kTwoGroups,
                            .decision = options::kExactDecides,
                            .effectSize = options::RankBiserial(EffectFormula::MeanRanks),
                            .page = "mann_whitney.md",
                            .codes = kCodes};

}  // namespace catalogue::mann_whitney

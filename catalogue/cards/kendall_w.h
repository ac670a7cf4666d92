#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::kendall_w {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The records do not agree in how they order {0}."}};

inline constexpr RankedRecordsCodes kRankedRecordsCodes{221900};
inline constexpr auto kCodes = Together(kRankedRecordsCodes);

inline constexpr Card kCard{.name = "kendall-w",
                            .key = "RKendallsCoefficient",
                            .entry = "RKendallsCoefficient",
                            .element = "RKendallsCoefficient",
                            .family = Family::Related,
                            .purpose = Purpose::HypothesisTest,
                            .title = "Kendall's coefficient of concordance",
                            .hypotheses = kHypotheses,
                            .fields = options::kSeveralContinuous,
                            .warningName = "KendallsCoefficient",
                            .settings = kSettings,
                            .options = options::kComparisonOnly,
                            .decision = options::kExactDecides,
                            .effectSize = options::KendallsW(EffectFormula::GivenConcordance),
                            .page = "kendall_w.md",
                            .codes = kCodes};

}  // namespace catalogue::kendall_w

#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"
#include "catalogue/shared_codes.h"

namespace catalogue::kruskal_wallis {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distribution of {0} is the same in all groups of {1}."}};

inline constexpr Code kNoComparison{222101, Kind::Error, sentences::kNoComparisonNamed};
inline constexpr SeveralGroupsCodes kGroupsCodes{222100};
inline constexpr Code kAsymptotic{
    222111, Kind::Help, "the p-value is asymptotic and the statistic corrected for ties",
    "Nothing needs doing; with very small groups read the p-value with care."};
inline constexpr auto kCodes = Together(kNoComparison, kGroupsCodes, kAsymptotic);

inline constexpr Card kCard{
    .name = "kruskal-wallis",
    .key = "IKruskalWallis",
    .entry = "IKruskalWallis",
    .element = "IKruskalWallis",
    .family = Family::Independent,
    .purpose = Purpose::HypothesisTest,
    .title = "Kruskal-Wallis one-way analysis of variance by ranks",
    .hypotheses = kHypotheses,
    .fields = options::kInSeveralGroups,
    .settings = kSettings,
    .options = options::kComparisonOnly,
    .decision = options::kExactDecides,
    .effectSize = {EffectFormula::EpsilonSquared, "Epsilon squared", "\u03b5\u00b2"},
    .page = "kruskal_wallis.md",
    .codes = kCodes};

}  // namespace catalogue::kruskal_wallis

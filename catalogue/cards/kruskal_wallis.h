#pragma once

#include "catalogue/card.h"
#include "catalogue/options.h"
#include "catalogue/sentences.h"
#include "catalogue/settings.h"

namespace catalogue::kruskal_wallis {

inline constexpr const Setting* kSettings[] = {&settings::kNeededComparison};

inline constexpr Hypothesis kHypotheses[] = {
    {kNone, "The distribution of {0} is the same in all groups of {1}."}};

inline constexpr Code kNoComparison{222101, Kind::Error, sentences::kNoComparisonNamed};
inline constexpr Code kUnknownVariable{222103, Kind::Error, sentences::kUnknownPairOfFields,
                                       Meaning::Name};
inline constexpr Code kNotContinuous{222109, Kind::Error, sentences::kNotContinuous,
                                     Meaning::Field};
inline constexpr Code kNotCategorical{222110, Kind::Error, sentences::kGroupNotCategorical,
                                      Meaning::Field};
inline constexpr Code kAsymptotic{
    222111, Kind::Help, "the p-value is asymptotic and the statistic corrected for ties",
    "Nothing needs doing; with very small groups read the p-value with care."};
inline constexpr Code kTooFewGroups{222112, Kind::Error, sentences::kTooFewGroups};
inline constexpr Code kTooFewCategories{222115, Kind::Error, sentences::kTooFewCategories};
inline constexpr Code kTooFewStepwise{222116, Kind::Warning, sentences::kStepwiseTooFew};
inline constexpr Code kNotSignificantStepwise{222117, Kind::Warning,
                                              sentences::kStepwiseNotSignificant};
inline constexpr Code kTooFewPairwise{222118, Kind::Warning, sentences::kPairwiseTooFew};
inline constexpr Code kNotSignificantPairwise{222119, Kind::Warning,
                                              sentences::kPairwiseNotSignificant};
inline constexpr Code kCodes[] = {kNoComparison,
                                  kUnknownVariable,
                                  kNotContinuous,
                                  kNotCategorical,
                                  kAsymptotic,
                                  kTooFewGroups,
                                  kTooFewCategories,
                                  kTooFewStepwise,
                                  kNotSignificantStepwise,
                                  kTooFewPairwise,
                                  kNotSignificantPairwise};

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
